// Statements from the command line: what is shown, what is changed, how it ends.
#include <filesystem>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Sql : public ::testing::Test {
  protected:
    Sql() {
        DatabaseBuilder builder(path);
        builder.Add(Table("고객").Long("id").Key({"id"}).Text("이름", 50).Memo("memo"));
        builder.Rows("고객", {{Int(1), "홍길동", jet::Null{}}, {Int(2), "", "a;b"}});
        builder.Finish();
    }
    ~Sql() override {
        EXPECT_EQ(RunCli({"check", path}).exitCode, 0);
        if (HaveJetTools()) {
            EXPECT_EQ(StrictFindings(path), "");
        }
    }

    ProgramResult Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"sql", path});
        return RunCli(arguments);
    }
    /// The statements come through a pipe.
    ProgramResult Pipe(const std::string& statements, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"sql", path});
        return RunProgram(ProgramFolder() + "/tavrel-cli", options, {}, statements);
    }
    std::int32_t Count() const {
        const auto database = jet::Database::Open(path);
        return static_cast<std::int32_t>(ReadRows(*database, "고객").size());
    }

    TemporaryFolder folder;
    std::string path = folder.File("a.mdb");
};

TEST_F(Sql, ShowsRowsInEveryFormat) {
    const std::string query = "SELECT id, 이름, memo FROM 고객 ORDER BY id";
    EXPECT_EQ(Run({query}).output,
              "id  이름    memo\n"
              "--  ------  ----\n"
              "1   홍길동  NULL\n"
              "2           a;b\n"
              "(2개 행)\n");
    EXPECT_EQ(Run({query, "--format", "csv"}).output, "id,이름,memo\r\n1,홍길동,\r\n2,\"\",a;b\r\n");
    EXPECT_EQ(
        nlohmann::json::parse(Run({query, "--format", "json"}).output),
        nlohmann::json::parse(
            R"({"rows": [{"id": 1, "이름": "홍길동", "memo": null}, {"id": 2, "이름": "", "memo": "a;b"}]})"));
}

TEST_F(Sql, TellsHowManyRowsChanged) {
    const std::string changes = "UPDATE 고객 SET memo = 'x' WHERE id > 0; CREATE TABLE t (i LONG)";
    const ProgramResult text = Run({changes, "DELETE FROM 고객 WHERE id = 2;"});
    EXPECT_EQ(text.output, "2개 행을 변경했습니다.\n완료했습니다.\n1개 행을 변경했습니다.\n");
    EXPECT_EQ(text.exitCode, 0);
    const ProgramResult json = Run({"INSERT INTO t VALUES (1);DROP TABLE t", "--format", "json"});
    EXPECT_EQ(json.output, "{\"affected\": 1}\n{}\n");
    const ProgramResult csv = Run({"DELETE FROM 고객", "SELECT 1 AS a", "SELECT 2 AS b", "--format", "csv"});
    EXPECT_EQ(csv.output, "a\r\n1\r\n\r\nb\r\n2\r\n");
    EXPECT_EQ(csv.errors, "1개 행을 변경했습니다.\n");
    EXPECT_EQ(Count(), 0);
}

TEST_F(Sql, SplitsThePipeAtSemicolonsThatCount) {
    const ProgramResult result = Pipe(
        "\xEF\xBB\xBF"
        "INSERT INTO 고객 VALUES (3, 'x;''y', NULL)\n;; \n"
        "-- a comment; with its own ';\n"
        "INSERT INTO 고객 VALUES (4, /* one; 'over\ntwo lines */ \"it's;\", 'a--b')\r\n;"
        "SELECT [이름] AS `a;b`, 3--1 AS n\nFROM 고객 WHERE id > 2 ORDER BY id",
        {"--format", "json"});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output,
              "{\"affected\": 1}\n{\"affected\": 1}\n"
              "{\"rows\": [{\"a;b\": \"x;'y\", \"n\": 4}, {\"a;b\": \"it's;\", \"n\": 4}]}\n");
    EXPECT_EQ(Pipe("").output + Pipe(" ;\n-- nothing\n").output, "");
}

TEST_F(Sql, StopsAtTheFirstFailure) {
    struct Case {
        const char* statements;
        const char* error;
        const char* culprit;
    };
    const Case cases[] = {
        {"SELECT id FROM nowhere", "오류 -2147217865 (엔진 3078): ", "문장: SELECT id FROM nowhere\n"},
        {"SELECT nothing FROM 고객", "오류 -2147217904 (엔진 3061): ", "문장: SELECT nothing"},
        {"TRUNCATE 고객", "오류 -2147217900 (엔진 3129): ", "문장: TRUNCATE"},
        {"INSERT INTO 고객 (id) VALUES (1)", "오류 -2147467259 (엔진 3022): ", "문장: INSERT"},
        {"INSERT INTO 고객 (id) VALUES ('x')", "오류 -2147217913 (엔진 3464): ", "문장: INSERT"}};
    for (const Case& c : cases) {
        const std::string all = std::string("SELECT 1 AS a;\n") + c.statements + "; DELETE FROM 고객";
        for (const ProgramResult& result : {Run({all}), Pipe(all)}) {
            EXPECT_EQ(result.exitCode, 2) << c.statements;
            EXPECT_EQ(result.output, "a\n-\n1\n(1개 행)\n");
            EXPECT_THAT(result.errors, HasSubstr(c.error));
            EXPECT_THAT(result.errors, HasSubstr(c.culprit));
        }
    }
    EXPECT_EQ(Count(), 2) << "nothing behind the failure was run";
}

TEST_F(Sql, UndoesATransactionThatIsNotCommitted) {
    const ProgramResult open = Run({"BEGIN TRANSACTION; DELETE FROM 고객"});
    EXPECT_EQ(open.exitCode, 2);
    EXPECT_THAT(open.errors, HasSubstr("끝나지 않은 트랜잭션을 되돌렸습니다."));
    EXPECT_EQ(Count(), 2);
    EXPECT_EQ(Pipe("BEGIN TRANSACTION; DELETE FROM 고객 WHERE id = 1; COMMIT;").exitCode, 0);
    EXPECT_EQ(Count(), 1);
}

// An inner COMMIT ends the inner transaction alone, and what fails or ends inside one keeps nothing of it.
TEST_F(Sql, TellsOfEveryTransactionThatIsLeftOpen) {
    const std::string begin = "BEGIN TRANSACTION; DELETE FROM 고객 WHERE id = 1; ";
    for (const std::string& end :
         {std::string("BEGIN TRANSACTION; DELETE FROM 고객; COMMIT"), std::string("SELECT * FROM nowhere"),
          std::string("BEGIN TRANSACTION; COMMIT; BEGIN TRANSACTION; ROLLBACK")}) {
        for (const ProgramResult& result : {Run({begin + end}), Run({begin, end}), Pipe(begin + end)}) {
            EXPECT_EQ(result.exitCode, 2) << end;
            EXPECT_THAT(result.errors, HasSubstr("끝나지 않은 트랜잭션을 되돌렸습니다.")) << end;
        }
    }
    EXPECT_EQ(Count(), 2);
    EXPECT_EQ(Run({begin + "BEGIN TRANSACTION; DELETE FROM 고객; ROLLBACK; COMMIT"}).errors, "");
    EXPECT_EQ(Count(), 1);
}

TEST_F(Sql, RefusesWhatIsNotUtf8) {
    const std::string cp949 = "INSERT INTO 고객 (id, 이름) VALUES (8, '\xB0\xA1');";
    const ProgramResult piped = Pipe("INSERT INTO 고객 (id)\nVALUES (7);\n" + cp949 + "\nDELETE FROM 고객;");
    EXPECT_EQ(piped.exitCode, 2);
    EXPECT_THAT(piped.errors, HasSubstr("오류 5: "));
    EXPECT_THAT(piped.errors, HasSubstr("(표준 입력 3번째 줄이 UTF-8이 아님)\n"));
    const ProgramResult given = Run({"DELETE FROM 고객 WHERE id = 7", cp949});
    EXPECT_EQ(given.exitCode, 2);
    EXPECT_THAT(given.errors, HasSubstr("(2번째 SQL 문이 UTF-8이 아님)\n"));
    EXPECT_EQ(Count(), 2) << "what came before was run, nothing behind it";
    // The replacement character is a character like others.
    EXPECT_EQ(Pipe("SELECT '\xEF\xBF\xBD' AS a", {"--format", "csv"}).output, "a\r\n\xEF\xBF\xBD\r\n");
}

TEST_F(Sql, TellsWhyItsInputEndsEarly) {
    const ProgramResult folder =
        RunProgram("sh", {"-c", ProgramFolder() + "/tavrel-cli sql \"$1\" </", "sh", path});
    EXPECT_EQ(folder.exitCode, 2);
    EXPECT_THAT(folder.errors, HasSubstr("오류 57: "));
#ifndef __SANITIZE_ADDRESS__
    // A line for which there is no memory.
    const ProgramResult line =
        RunProgram("sh", {"-c",
                          "ulimit -v 150000; head -c 200000000 /dev/zero | tr '\\0' x | " + ProgramFolder() +
                              "/tavrel-cli sql \"$1\"",
                          "sh", path});
    EXPECT_EQ(line.exitCode, 2);
    EXPECT_EQ(line.errors, "오류 7: 메모리가 부족합니다.\n");
#endif
}

TEST_F(Sql, ReadsWithoutTouchingTheFile) {
    const std::string before = ReadWholeFile(path);
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    EXPECT_EQ(Run({"SELECT COUNT(*) AS n FROM 고객"}).output, "n\n-\n2\n(1개 행)\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    EXPECT_EQ(ReadWholeFile(path), before);
    // Somebody who is reading does not stand in the way of a question, but of a change.
    const auto reader = jet::Database::Open(path);
    EXPECT_EQ(Run({"SELECT 1"}).exitCode, 0);
    const ProgramResult change = Run({"DELETE FROM 고객"});
    EXPECT_EQ(change.exitCode, 2);
    EXPECT_THAT(change.errors, HasSubstr("(엔진 3045)"));
}

TEST_F(Sql, AsksForThePassword) {
    jet::CreateOptions options;
    options.password = "p;w";
    const std::string file = DatabaseBuilder(folder.File("b.mdb"), options).Finish();
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"sql", file, "SELECT 1"},
                                                  {"sql", file, "SELECT 1", "--password", "P;w"}}) {
        const ProgramResult result = RunCli(wrong);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.errors, HasSubstr("오류 -2147217843 (엔진 3031): "));
    }
    EXPECT_EQ(RunCli({"sql", "--password", "p;w", file, "CREATE TABLE t (i LONG)"}).exitCode, 0);
    const ProgramResult missing = RunCli({"sql", folder.File("none.mdb"), "SELECT 1"});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_THAT(missing.errors, HasSubstr("(엔진 3024): "));
}

/// A person at a terminal: editing, history, the prompt's own commands.
TEST_F(Sql, TalksAtATerminal) {
    if (RunProgram("script", {"--version"}).exitCode != 0) {
        GTEST_SKIP() << "no program that makes a terminal";
    }
    const std::string line = "(sleep 1; printf '%b' \"$1\"; sleep 1) | NO_COLOR=1 TERM=xterm script -qec \"" +
                             ProgramFolder() + "/tavrel-cli sql $2\" /dev/null";
    const std::string keys =
        ".tables\\r"
        "SELECT 'one\\r"  // goes on in the next line
        "two' AS spread;\\r"
        "elect 5 AS five\\001S\\005;x\\0177\\r"  // home, end, backspace
        "bad;\\r"
        "\\033[A\\033[A\\033[D, 6 AS six\\r"  // two statements up, before the semicolon
        "dropped 한글\\003"                   // cancelled
        "INSERT INTO 고객 (id) VALUES (9);\\r"
        ".schema 고객\\r.what\\r.help\\r.quit\\r";
    const ProgramResult result = RunProgram("sh", {"-c", line, "sh", keys, path});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* shown :
         {"\n고객\r\n", "one␊two\r\n", "five\r\n----\r\n5\r\n", "(엔진 3129)", "five  six\r\n",
          "1개 행을 변경했습니다.", "이름", "모르는 명령입니다: .what", ".schema 테이블"}) {
        EXPECT_THAT(result.output, HasSubstr(shown));
    }
    EXPECT_EQ(Count(), 3);
}

}  // namespace
}  // namespace tavrel::testing
