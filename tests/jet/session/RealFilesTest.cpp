// Copies of real databases are written to by statements: what was not spoken of stays, what was is as said,
// and neither checker finds anything that was not there before.
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "jet/session/StatementMaker.h"
#include "support/Corpus.h"

namespace tavrel::testing {
namespace {

std::vector<std::string> RealFiles() {
    std::vector<std::string> files = CorpusFiles();
    std::erase_if(files, [](const std::string& file) { return file.find("jet3") != std::string::npos; });
    return files;
}

/// The kinds of what the engine's check finds.
std::multiset<std::string> FindingsIn(const std::string& path) {
    std::multiset<std::string> lines;
    const auto database = jet::Database::Open(path, {.password = {}, .checkPassword = false});
    for (const jet::Finding& finding : jet::CheckDatabase(*database).findings) {
        lines.insert(std::string(finding.code));
    }
    return lines;
}

std::vector<std::string> ErrorsOfTool(const std::string& path) {
    std::vector<std::string> errors;
    if (HaveJetTools()) {
        std::istringstream lines(StrictFindings(path));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("error")) {
                errors.push_back(line);
            }
        }
    }
    return errors;
}

class RealFilesTest : public ::testing::Test {
  protected:
    void Open(const std::string& file) {
        session_.reset();
        path_ = folder_.File("copy.mdb");
        std::filesystem::copy_file(file, path_, std::filesystem::copy_options::overwrite_existing);
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
        Reopen();
        tables_.clear();
        for (const jet::CatalogObject& object : session_->File().Catalog().Objects()) {
            if (object.IsTable() && !object.IsSystem()) {
                tables_.push_back(object.name);
            }
        }
    }
    void Reopen() {
        session_.reset();
        session_ = jet::EditSession::Open(path_, {.password = {}, .checkPassword = false},
                                          jet::EditSession::Durability::WrittenOut);
    }

    std::int32_t Do(const std::string& statement) {
        return ErrorOf([&] { affected_ = session_->Execute(statement).affected; });
    }

    /// Every row as one text, sorted.
    std::vector<std::string> Rows(const std::string& table, const std::string& columns = "*") {
        std::vector<std::string> lines;
        const auto rows = session_->Execute("SELECT " + columns + " FROM [" + table + "]").rows;
        while (rows->Next()) {
            std::string& line = lines.emplace_back();
            for (std::size_t i = 0; i < rows->Columns().size(); ++i) {
                line += test::Shown(rows->Get(i)) + "|";
            }
        }
        std::ranges::sort(lines);
        return lines;
    }
    std::map<std::string, std::vector<std::string>> AllRows() {
        std::map<std::string, std::vector<std::string>> rows;
        for (const std::string& table : tables_) {
            rows[table] = Rows(table);
        }
        return rows;
    }

    jet::TableInfo Info(const std::string& table) {
        return session_->File().Describe(*session_->File().Catalog().FindTable(table));
    }

    void ShakeDefinition(const std::string& table);
    void ShakeRows(const std::string& table);

    TemporaryFolder folder_;
    std::string path_;
    std::unique_ptr<jet::EditSession> session_;
    std::vector<std::string> tables_;
    std::int64_t affected_ = 0;
};

/// Columns come, are filled, change their type and go; indexes are made over whatever stands there.
void RealFilesTest::ShakeDefinition(const std::string& table) {
    SCOPED_TRACE(table);
    const std::vector<std::string> before = Rows(table);
    const jet::TableInfo info = Info(table);
    const std::string name = "[" + table + "]";
    if (info.fields.size() > 240) {
        return;
    }
    ASSERT_EQ(Do("ALTER TABLE " + name + " ADD COLUMN zz_new LONG DEFAULT 3 NOT NULL"), 0);
    ASSERT_EQ(Do("ALTER TABLE " + name + " ADD COLUMN zz_memo VARCHAR(20)"), 0);
    ASSERT_EQ(Do("UPDATE " + name + " SET zz_new = 7, zz_memo = 'text'"), 0);
    EXPECT_EQ(affected_, static_cast<std::int64_t>(before.size()));
    for (const jet::FieldInfo& field : info.fields) {
        const std::int32_t error =
            Do("CREATE INDEX [zz_" + field.name.substr(0, 20) + "] ON " + name + " ([" + field.name + "])");
        const bool fine = error == 0 || error == errors::kUnknownSortWeight ||
                          error == errors::kTooManyIndexes || (error == 3409 && field.daoType == 11) ||
                          error == errors::kRecordTooLarge;
        EXPECT_TRUE(fine) << field.name << ": " << error;
    }
    ASSERT_EQ(Do("ALTER TABLE " + name + " ALTER COLUMN zz_memo MEMO"), 0);
    ASSERT_EQ(Do("ALTER TABLE " + name + " ALTER COLUMN zz_new VARCHAR(10)"), 0);
    std::vector<std::string> wanted = before;
    for (std::string& line : wanted) {
        line += "7|text|";
    }
    EXPECT_TRUE(Rows(table) == wanted);
    for (const jet::IndexInfo& index : Info(table).indexes) {
        if (index.name.starts_with("zz_")) {
            EXPECT_EQ(Do("DROP INDEX [" + index.name + "] ON " + name), 0);
        }
    }
    EXPECT_EQ(Do("ALTER TABLE " + name + " DROP COLUMN zz_memo"), 0);
    EXPECT_EQ(Do("ALTER TABLE " + name + " DROP COLUMN zz_new"), 0);
    EXPECT_TRUE(Rows(table) == before);
    EXPECT_EQ(Info(table).indexes.size(), info.indexes.size());
}

/// Texts are written anew, rows go: refusals must leave the table as it was.
void RealFilesTest::ShakeRows(const std::string& table) {
    SCOPED_TRACE(table);
    for (const jet::FieldInfo& field : Info(table).fields) {
        const std::vector<std::string> before = Rows(table);
        const std::string column = "[" + field.name + "]";
        std::int32_t error = 0;
        if (field.daoType == 10 || field.daoType == 12) {
            error = Do("UPDATE [" + table + "] SET " + column + " = LEFT(" + column + ", 3) WHERE LEN(" +
                       column + ") > 3");
        } else if (field.daoType == 4 && !field.autonumber) {
            error = Do("DELETE FROM [" + table + "] WHERE " + column + " = 2");
        }
        if (error != 0) {
            EXPECT_TRUE(Rows(table) == before) << field.name << ": " << error;
        }
    }
}

TEST_F(RealFilesTest, KeepWhatWasNotSpokenOf) {
    TAVREL_NEEDS_CORPUS();
    for (const std::string& file : RealFiles()) {
        SCOPED_TRACE(file);
        const std::multiset<std::string> findings = FindingsIn(file);
        Open(file);
        const auto before = AllRows();
        for (const std::string& table : tables_) {
            ShakeDefinition(table);
        }
        EXPECT_TRUE(AllRows() == before);
        EXPECT_EQ(Do("BEGIN TRANSACTION"), 0);
        for (const std::string& table : tables_) {
            ShakeRows(table);
        }
        EXPECT_EQ(Do("ROLLBACK"), 0);
        EXPECT_TRUE(AllRows() == before);
        for (const std::string& table : tables_) {
            ShakeRows(table);
        }
        session_.reset();
        EXPECT_TRUE(std::ranges::includes(findings, FindingsIn(path_)));
        EXPECT_EQ(ErrorsOfTool(path_), std::vector<std::string>());
    }
}

TEST_F(RealFilesTest, TakeRandomStatementsBesideTheirOwnTables) {
    TAVREL_NEEDS_CORPUS();
    const char* chosen = std::getenv("TAVREL_STATEMENTS");
    const int statements = chosen != nullptr ? std::atoi(chosen) : 150;
    unsigned seed = 7;
    for (const std::string& file : RealFiles()) {
        SCOPED_TRACE(file);
        const std::multiset<std::string> findings = FindingsIn(file);
        Open(file);
        const auto before = AllRows();
        SessionBench bench(std::move(session_), path_);
        StatementMaker maker(bench, ++seed, false);
        for (int i = 0; i < statements && !HasFailure(); ++i) {
            maker.Step();
        }
        maker.EndTransaction();
        maker.ExpectRows();
        bench.Close();
        Reopen();
        EXPECT_TRUE(AllRows() == before);
        session_.reset();
        EXPECT_TRUE(std::ranges::includes(findings, FindingsIn(path_)));
        EXPECT_EQ(ErrorsOfTool(path_), std::vector<std::string>());
    }
}

}  // namespace
}  // namespace tavrel::testing
