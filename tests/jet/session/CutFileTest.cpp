// Files whose end is missing: what is there is read, what is not is told, and nothing is written.
#include <gtest/gtest.h>

#include "jet/check/SampleDatabase.h"
#include "jet/database/Database.h"
#include "jet/session/SessionBench.h"

namespace tavrel::testing {
namespace {

/// Two tables; the rows of the second one fill the last hundred pages.
FileBytes Whole() {
    SessionBench bench;
    bench.Run("CREATE TABLE small (a LONG)");
    bench.Run("CREATE TABLE large (a LONG, b TEXT(255), c TEXT(255), d TEXT(255))");
    bench.Run("INSERT INTO small VALUES (1)");
    bench.Run("BEGIN TRANSACTION");
    const std::string text = "'" + std::string(250, 'x') + "'";
    for (int row = 0; row < 500; ++row) {
        bench.Run("INSERT INTO large VALUES (1, " + text + ", " + text + ", " + text + ")");
    }
    bench.Run("COMMIT");
    bench.Close();
    return ReadFile(bench.Path());
}

TEST(CutFile, IsReadAsFarAsItGoesAndNeverWritten) {
    const FileBytes whole = Whole();
    const TemporaryFolder folder;
    const std::string path = folder.File("cut.mdb");
    for (const std::size_t missing : {std::size_t{100}, std::size_t{4096}, std::size_t{5 * 4096 + 1},
                                      std::size_t{30 * 4096}, std::size_t{82 * 4096}}) {
        SCOPED_TRACE(missing);
        const FileBytes cut(whole.begin(), whole.end() - static_cast<std::ptrdiff_t>(missing));
        WriteFile(path, cut);
        {
            const auto database = jet::Database::Open(path);
            for (const char* table : {"small", "large"}) {
                const auto info = database->Describe(*database->Catalog().FindTable(table));
                EXPECT_EQ(info.fields.size(), info.name == "small" ? 1U : 4U);
            }
            EXPECT_EQ(ReadRows(*database, "small").size(), 1U);
            EXPECT_EQ(ErrorOf([&] { ReadRows(*database, "large"); }), errors::kDamaged);
        }
        {
            SessionBench session(jet::EditSession::Open(path), path);
            EXPECT_EQ(session.Run("SELECT a FROM small"), "1");
            EXPECT_EQ(session.Failure("SELECT COUNT(*) FROM large"), errors::kDamaged);
            for (const char* change : {"CREATE TABLE x (a LONG)", "INSERT INTO small VALUES (2)",
                                       "DELETE FROM small", "DROP TABLE large"}) {
                EXPECT_EQ(session.Failure(change), errors::kDamaged) << change;
            }
        }
        EXPECT_EQ(ReadFile(path), cut);
    }
}

/// Pages that the free map alone calls taken are lost to nobody.
TEST(CutFile, PagesTakenInAGroupAndNeverWrittenComeIntoUse) {
    SessionBench bench;
    const jet::PageNumber end = bench.File().Pager().PageCount();
    bench.Close();
    {
        const auto database = jet::Database::OpenForChanges(bench.Path());
        database->Pager().BeginTransaction();
        for (jet::PageNumber page = 0; page < end + 8; ++page) {
            jet::PageAllocator(database->Pager()).Remove({1, 0}, page);  // no free page before them either
        }
        database->Pager().CommitTransaction(false);
    }
    bench.Reopen();
    bench.Run("CREATE TABLE t (a LONG CONSTRAINT k PRIMARY KEY, b MEMO)");
    bench.Run("INSERT INTO t VALUES (1, '" + std::string(9000, 'm') + "')");
    EXPECT_GT(bench.File().Pager().PageCount(), end + 8);
    bench.Close();
    bench.Reopen();
    const std::string findings = bench.AllFindings();
    EXPECT_EQ(findings, "");
}

}  // namespace
}  // namespace tavrel::testing
