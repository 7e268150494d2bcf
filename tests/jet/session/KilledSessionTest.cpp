// A session whose program is killed at any write of any statement: what is found afterwards is sound, and as
// it was before the statement or after it.
#include <gtest/gtest.h>

#include "jet/session/SessionBench.h"
#include "jet/storage/Disk.h"
#include "support/MemoryFile.h"

namespace tavrel::testing {
namespace {

using jet::Disk;
using jet::DiskFile;

constexpr const char* kSetup[] = {
    "CREATE TABLE p (id LONG CONSTRAINT pk PRIMARY KEY, name TEXT(40), memo MEMO)",
    "CREATE TABLE c (no COUNTER CONSTRAINT ck PRIMARY KEY, pid LONG, t TEXT(60))",
    "CREATE INDEX it ON c (t)",
    "ALTER TABLE c ADD CONSTRAINT r FOREIGN KEY (pid) REFERENCES p (id) ON DELETE CASCADE ON UPDATE CASCADE",
};
constexpr const char* kStatements[] = {
    "INSERT INTO p VALUES (1000, 'new', 'memo text')",
    "UPDATE p SET memo = name & memo & memo & memo & memo & memo WHERE id < 20",
    "UPDATE c SET t = t & 'longer than it was before by far'",
    "UPDATE p SET id = id + 5000 WHERE id > 30",
    "DELETE FROM p WHERE id > 20",
    "ALTER TABLE p ADD COLUMN extra MEMO DEFAULT 'x' NOT NULL",
    "ALTER TABLE c ALTER COLUMN t MEMO",
    "ALTER TABLE c ALTER COLUMN t TEXT(30)",
    "CREATE UNIQUE INDEX iu ON p (id, name DESC)",
    "DROP INDEX it ON c",
    "ALTER TABLE c DROP CONSTRAINT r",
    "ALTER TABLE c DROP COLUMN t",
    "CREATE TABLE x (a COUNTER CONSTRAINT xk PRIMARY KEY, b LONG, CONSTRAINT xr FOREIGN KEY (b) REFERENCES p "
    "(id))",
    "DROP TABLE x",
    "DROP TABLE c",
};

std::unique_ptr<jet::EditSession> SessionOn(Disk& disk) {
    auto database = jet::Database::OpenFile(std::make_unique<DiskFile>(disk, false), "disk");
    database->Pager().SetJournal(jet::FilesOf(disk));
    return jet::EditSession::On(std::move(database), jet::EditSession::Durability::OnMedium);
}

std::string Shown(const jet::TableInfo& table) {
    std::string text = table.name + ":";
    for (const jet::FieldInfo& field : table.fields) {
        text += " " + field.name + "/" + std::to_string(field.daoType) + field.defaultValue;
    }
    for (const jet::IndexInfo& index : table.indexes) {
        text += " [" + index.name + "]";
    }
    return text + "\n";
}

/// All that the database says, which must be sound.
std::string Content(Disk& disk) {
    const auto database =
        jet::Database::OpenFile(std::make_unique<DiskFile>(disk, false), "disk", {}, jet::OldPagesOf(disk));
    EXPECT_EQ(SessionBench::FindingsOf(*database), "");
    std::string text;
    for (const jet::CatalogObject& object : database->Catalog().Objects()) {
        if (object.IsTable() && !object.IsSystem()) {
            text += Shown(database->Describe(object));
            for (const auto& row : ReadRows(*database, object.name)) {
                for (const jet::Value& value : row) {
                    text += test::Shown(value) + "|";
                }
                text += "\n";
            }
        }
    }
    return text;
}

Disk FilledDisk() {
    SessionBench bench;
    for (const char* statement : kSetup) {
        bench.Run(statement);
    }
    bench.Run("BEGIN TRANSACTION");
    for (int i = 0; i < 40; ++i) {
        const std::string n = std::to_string(i);
        bench.Run("INSERT INTO p VALUES (" + n + ", 'name " + n + "', '" + std::string(30 * (i % 7), 'm') +
                  "')");
        bench.Run("INSERT INTO c (pid, t) VALUES (" + n + ", 'text " + n + "')");
    }
    bench.Run("COMMIT");
    bench.Close();
    const std::string bytes = ReadWholeFile(bench.Path());
    Disk disk;
    disk.database.assign(bytes.begin(), bytes.end());
    return disk;
}

TEST(KilledSession, LeavesEveryStatementWholeOrUndone) {
    Disk disk = FilledDisk();
    std::size_t kills = 0;
    std::size_t undone = 0;
    for (const char* statement : kStatements) {
        SCOPED_TRACE(statement);
        Disk done = disk;
        SessionOn(done)->Execute(statement);
        const std::string before = Content(disk);
        const std::string after = Content(done);
        ASSERT_NE(before, after);
        for (int writes = 0;; ++writes) {
            SCOPED_TRACE(writes);
            Disk killed = disk;
            killed.writesLeft = writes;
            killed.tear = writes % 2 == 1;
            bool ended = true;
            try {
                SessionOn(killed)->Execute(statement);
            } catch (const jet::Killed&) {
                ended = false;
            }
            killed.writesLeft = 1 << 30;
            const std::string found = Content(killed);
            ASSERT_TRUE(found == before || found == after);
            if (ended) {
                EXPECT_EQ(found, after);
                break;
            }
            ++kills;
            undone += found == before ? 1U : 0U;
        }
        disk = std::move(done);
    }
    EXPECT_GT(kills, 100U);
    EXPECT_GT(undone, kills / 2);
}

/// The disk is full in the middle of the pages: the statement fails, the session goes on with what was
/// before.
TEST(KilledSession, GoesOnAfterAFullDisk) {
    for (int from = 0; from < 6; ++from) {
        Disk disk = FilledDisk();
        const std::string before = Content(disk);
        const auto session = SessionOn(disk);
        disk.failFrom = from;
        disk.failures = 1;
        EXPECT_EQ(ErrorOf([&] { session->Execute(kStatements[4]); }), errors::kNoDiskSpace);
        EXPECT_EQ(Content(disk), before);
        disk.failures = 0;
        EXPECT_EQ(session->Execute(kStatements[4]).affected, 19);
        EXPECT_NE(Content(disk), before);
    }
}

}  // namespace
}  // namespace tavrel::testing
