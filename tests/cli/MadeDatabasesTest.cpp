// create and demo, and what the other commands say about the files they make.
#include <filesystem>
#include <fstream>
#include <set>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// The demonstration databases, made once for all tests.
class Demo : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<TemporaryFolder>();
        made_ = RunCli({"demo", folder_->File("demo")});
    }
    static void TearDownTestSuite() { folder_.reset(); }

    void SetUp() override { ASSERT_EQ(made_.exitCode, 0) << made_.errors; }

    static std::string A() { return folder_->File("demo/demo-a.mdb"); }
    static std::string B() { return folder_->File("demo/demo-b.mdb"); }
    static json Compare(std::vector<std::string> options, int exitCode) {
        std::vector<std::string> arguments = {"compare", A(), B(), "--format", "json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ProgramResult result = RunCli(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << result.errors;
        return json::parse(result.output);
    }

    static std::unique_ptr<TemporaryFolder> folder_;
    static ProgramResult made_;
};

std::unique_ptr<TemporaryFolder> Demo::folder_;
ProgramResult Demo::made_;

TEST_F(Demo, ShowsEveryKindOfDifference) {
    EXPECT_TRUE(made_.output.ends_with("\n" + A() + "\n" + B() + "\n")) << made_.output;
    const json result = Compare({}, 1);
    std::set<std::string> red;
    std::set<std::string> blue;
    std::size_t marked = 0;
    for (const json& row : result["rows"]) {
        for (const json& name : row["red"]) {
            red.insert(name.get<std::string>());
        }
        blue.insert(row["blue"].get<std::string>());
        marked += row["mark"] == "!" ? 1 : 0;
    }
    EXPECT_EQ(red, (std::set<std::string>{"P", "F", "I", "type", "size", "def", "null", "zro"}));
    EXPECT_EQ(blue, (std::set<std::string>{"", "a", "b"}));
    EXPECT_EQ(result["differences"], marked);
    EXPECT_EQ(result["message"], std::to_string(marked) + "건의 다른곳이 발견 되었습니다.");
}

TEST_F(Demo, CompareOptionsDoWhatTheySay) {
    const json both = Compare({"--both-only"}, 1);
    for (const json& row : both["rows"]) {
        EXPECT_FALSE(row["a"].is_null() || row["b"].is_null()) << row;
    }
    const json different = Compare({"--only-differences"}, 1);
    for (const json& row : different["rows"]) {
        EXPECT_EQ(row["mark"], "!") << row;
    }
    const json indexes = Compare({"--index-only", "--both-only"}, 1);
    for (const json& row : indexes["rows"]) {
        for (const json& name : row["red"]) {
            EXPECT_THAT((std::set<std::string>{"P", "F", "I"}), ::testing::Contains(name)) << row;
        }
    }
    // The same table but for the letter case of its names; and one that is equal.
    EXPECT_EQ(Compare({"--table-a", "DBVERSION", "--table-b", "dbversion"}, 0)["differences"], 0);
    const json equal = Compare({"--table-a", "사원", "--table-b", "사원", "--only-differences"}, 0);
    EXPECT_EQ(equal["message"], "두 DB의 구조가 일치 합니다.");
    EXPECT_EQ(equal["rows"].size(), 4U);
}

TEST_F(Demo, EmptyValuesAreValues) {
    EXPECT_EQ(Compare({"--table-a=", "--table-b=", "--both-only", "--password-a="}, 1),
              Compare({"--both-only"}, 1));
}

TEST_F(Demo, WarnsOfTablesThatAreNowhere) {
    const ProgramResult result =
        RunCli({"compare", A(), B(), "--table-a", "사원", "--table-b", "--both-only"});
    EXPECT_EQ(result.errors, "경고: 두 데이터베이스 어느 쪽에도 '--both-only' 테이블이 없습니다.\n");
    EXPECT_EQ(RunCli({"compare", A(), B(), "--table-a", "없음", "--table-b", "없음"}).exitCode, 0);
    EXPECT_THAT(RunCli({"schema", A(), "--table", "MSysObjects"}).errors, HasSubstr("경고: 'MSysObjects'"));
    EXPECT_EQ(RunCli({"compare", A(), B(), "--table-a", "DBVERSION"}).errors, "");
}

// A CSV file is for spreadsheets, which want to be told that it is UTF-8; what goes through a pipe is for
// programs.
TEST_F(Demo, CsvFilesBeginWithAMark) {
    const std::string report = folder_->File("report.csv");
    EXPECT_EQ(RunCli({"compare", A(), B(), "--format", "csv", "-o", report}).exitCode, 1);
    EXPECT_EQ(ReadWholeFile(report),
              "\xEF\xBB\xBF" + RunCli({"compare", A(), B(), "--format", "csv"}).output);
}

TEST_F(Demo, IndexReportsNameNothingElse) {
    const std::string a = folder_->File("case-a.mdb");
    const std::string b = folder_->File("case-b.mdb");
    for (const std::string& file : {a, b}) {
        std::filesystem::remove(file);
        ASSERT_EQ(RunCli({"create", file}).exitCode, 0);
    }
    ASSERT_EQ(RunCli({"sql", a, "CREATE TABLE t (name LONG CONSTRAINT pk PRIMARY KEY)"}).exitCode, 0);
    ASSERT_EQ(RunCli({"sql", b, "CREATE TABLE t (NAME TEXT(5))"}).exitCode, 0);
    EXPECT_THAT(RunCli({"compare", a, b, "--index-only"}).output, HasSubstr("다름: P\n"));
    EXPECT_THAT(RunCli({"compare", a, b}).output, HasSubstr("다름: P, Type"));
}

TEST_F(Demo, SchemaListsTheCellsOfOneSide) {
    const ProgramResult result = RunCli({"schema", A(), "--table", "주문", "--format", "json"});
    ASSERT_EQ(result.exitCode, 0);
    const auto schema = nlohmann::ordered_json::parse(result.output);
    EXPECT_EQ(schema["file"], A());
    ASSERT_EQ(schema["rows"].size(), 5U);
    EXPECT_EQ(
        schema["rows"][1].dump(),
        R"({"table":"주문","P":"","F":"v","I":"","field":"거래처코드","type":"Text","size":"8","def":"",)"
        R"("null":"X","zro":"O"})");
    EXPECT_EQ(RunCli({"schema", A(), "--table", "사원", "--format", "csv"}).output,
              "table,P,F,I,field,type,size,def,null,zro\r\n사원,v,,,사원번호,Long,,,O,\r\n"
              "사원,,,,이름,Text,20,,X,O\r\n사원,,,,입사일,Date,,,O,\r\n사원,,,,재직,Boolean,,True,O,\r\n");
}

TEST_F(Demo, ReportFileIsWrittenWholeAndNeverOverAnInput) {
    const std::string report = folder_->File("report.html");
    EXPECT_EQ(RunCli({"compare", A(), B(), "--format", "html", "-o", report}).exitCode, 1);
    EXPECT_THAT(ReadWholeFile(report), HasSubstr("</html>\n"));
    EXPECT_EQ(RunCli({"compare", A(), A(), "-o", report}).exitCode, 0);
    EXPECT_THAT(ReadWholeFile(report), HasSubstr("두 DB의 구조가 일치 합니다.\n"));

    const std::string before = ReadWholeFile(B());
    EXPECT_EQ(RunCli({"compare", A(), B(), "-o", B()}).exitCode, 2);
    EXPECT_EQ(ReadWholeFile(B()), before);
    EXPECT_EQ(RunCli({"compare", A(), B(), "-o", folder_->File("none/report")}).exitCode, 2);
    // A failed run leaves the old report alone.
    const std::string old = ReadWholeFile(report);
    EXPECT_EQ(RunCli({"compare", A(), folder_->File("none.mdb"), "-o", report}).exitCode, 2);
    EXPECT_EQ(ReadWholeFile(report), old);
    for (const auto& entry : std::filesystem::directory_iterator(folder_->Path())) {
        EXPECT_NE(entry.path().extension(), ".new0") << "a temporary file was left behind";
    }
}

TEST_F(Demo, ReplacesItsOwnFilesButNoOthers) {
    EXPECT_EQ(RunCli({"demo", folder_->File("demo")}).exitCode, 0);
    const TemporaryFolder other;
    ASSERT_EQ(RunCli({"create", other.File("demo-b.mdb")}).exitCode, 0);
    const std::string before = ReadWholeFile(other.File("demo-b.mdb"));
    const ProgramResult refused = RunCli({"demo", other.Path()});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.errors, HasSubstr("오류 3204"));
    EXPECT_EQ(ReadWholeFile(other.File("demo-b.mdb")), before);
    EXPECT_FALSE(std::filesystem::exists(other.File("demo-a.mdb")));
}

TEST_F(Demo, IsSound) {
    for (const std::string& file : {A(), B()}) {
        const ProgramResult check = RunCli({"check", file, "--strict"});
        EXPECT_EQ(check.exitCode, 0) << check.output;
    }
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_THAT(StrictFindings(A()), IsEmpty());
    EXPECT_THAT(StrictFindings(B()), IsEmpty());
    EXPECT_EQ(json::parse(RunCli({"dump", A()}).output), DumpOf(A()));
}

TEST_F(Demo, RowsCsvTellsNullFromEmpty) {
    const ProgramResult result = RunCli({"rows", A(), "품목", "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output,
              "품목코드,품명,단가,과세,재고수량\r\nP-100,참기름 320ml,7800,true,120\r\n"
              "P-101,천일염 1kg,3200,true,45\r\nP-200,A4 용지 500매,5500,true,300\r\n");
    EXPECT_EQ(RunCli({"rows", A(), "없는 테이블"}).exitCode, 2);
}

TEST(Create, MakesADatabaseAndRefusesToReplaceOne) {
    const TemporaryFolder folder;
    const std::string file = folder.File("새 DB.mdb");
    ASSERT_EQ(RunCli({"create", file, "--password", "비밀"}).exitCode, 0);
    const json info = json::parse(RunCli({"info", file, "--format", "json"}).output);
    EXPECT_EQ(info["collation"]["lcid"], "0x0412");
    EXPECT_EQ(info["code_page"], 949);
    EXPECT_EQ(info["password"], true);
    EXPECT_EQ(info["tables"]["user"], 0);
    EXPECT_EQ(info["size"], std::filesystem::file_size(file));

    const std::string before = ReadWholeFile(file);
    const ProgramResult again = RunCli({"create", file});
    EXPECT_EQ(again.exitCode, 2);
    EXPECT_THAT(again.errors, HasSubstr("오류 3204"));
    EXPECT_EQ(ReadWholeFile(file), before);

    const std::string general = folder.File("general.mdb");
    ASSERT_EQ(RunCli({"create", general, "--sort", "general"}).exitCode, 0);
    EXPECT_THAT(RunCli({"info", general}).output, HasSubstr("0x0409"));
}

// The snapshot asks for the password; commands that look into a file's structure only refuse a wrong one.
TEST(Password, IsAskedForWhereUsersWork) {
    const TemporaryFolder folder;
    const std::string file = folder.File("a.mdb");
    ASSERT_EQ(RunCli({"create", file, "--password", "pw"}).exitCode, 0);
    EXPECT_EQ(RunCli({"schema", file}).exitCode, 2);
    EXPECT_EQ(RunCli({"schema", file, "--password", "pw"}).exitCode, 0);
    EXPECT_EQ(RunCli({"compare", file, file, "--password-a", "pw"}).exitCode, 2);
    EXPECT_EQ(RunCli({"compare", file, file, "--password-a", "pw", "--password-b", "pw"}).exitCode, 0);
    for (const char* command : {"tables", "info", "check", "dump"}) {
        EXPECT_EQ(RunCli({command, file}).exitCode, 0) << command;
        EXPECT_EQ(RunCli({command, file, "--password", "pw"}).exitCode, 0) << command;
        const ProgramResult wrong = RunCli({command, file, "--password", "PW"});
        EXPECT_EQ(wrong.exitCode, 2) << command;
        EXPECT_THAT(wrong.errors, HasSubstr("오류 3031")) << command;
    }
}

TEST(Check, EndsWithOneWhenSomethingIsBroken) {
    const TemporaryFolder folder;
    const std::string file = folder.File("a.mdb");
    ASSERT_EQ(RunCli({"create", file}).exitCode, 0);
    EXPECT_THAT(RunCli({"check", file}).output, HasSubstr("이상이 없습니다."));
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 4096);
    const ProgramResult check = RunCli({"check", file, "--format", "json"});
    EXPECT_EQ(check.exitCode, 1) << check.errors;
    const json report = json::parse(check.output);
    EXPECT_GT(report["errors"], 0);
    ASSERT_FALSE(report["findings"].empty());
    for (const char* member : {"severity", "code", "where", "text"}) {
        EXPECT_TRUE(report["findings"][0][member].is_string()) << member;
    }
}

}  // namespace
}  // namespace tavrel::testing
