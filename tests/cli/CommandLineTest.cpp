// The program as scripts see it: exit codes, where messages go, what is refused.
#include <fstream>

#include <gmock/gmock.h>

#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

struct UsageCase {
    const char* name;
    std::vector<std::string> arguments;
    const char* message;
};

TEST(CommandLine, ExplainsWrongUseInKorean) {
    const UsageCase cases[] = {
        {"no command", {}, "명령을 지정하십시오."},
        {"unknown command", {"foo"}, "모르는 명령입니다: foo"},
        {"no file", {"schema"}, "FILE 인수가 필요합니다."},
        {"one file of two", {"compare", "a.mdb"}, "B 인수가 필요합니다."},
        {"too many", {"info", "a", "b"}, "모르는 인수입니다: b"},
        {"unknown option", {"info", "a", "--what"}, "모르는 인수입니다: --what"},
        {"file like an option", {"compare", "-x.mdb", "a.mdb"}, "모르는 인수입니다: -x.mdb"},
        {"empty product",
         {"compare", "a", "b", "--product=", "--both-only"},
         "--product: ''은(는) 없는 제품"},
        {"switch with a value",
         {"compare", "a", "b", "--both-only=x"},
         "both-only: 값을 받지 않는 옵션입니다."},
        {"format", {"schema", "a", "--format", "html"}, "--format: 'html'은(는) 쓸 수 없는 값입니다."},
        {"no value", {"schema", "a", "--table"}, "--table: 값이 필요합니다."},
        {"twice",
         {"schema", "a", "--format", "csv", "--format", "json"},
         "--format: 한 번만 쓸 수 있습니다."},
        {"sort order", {"create", "a", "--sort", "german"}, "korean|general"}};
    for (const UsageCase& c : cases) {
        const ProgramResult result = RunCli(c.arguments);
        EXPECT_EQ(result.exitCode, 2) << c.name;
        EXPECT_THAT(result.errors, HasSubstr(c.message)) << c.name;
        EXPECT_THAT(result.output, IsEmpty()) << c.name;
    }
}

TEST(CommandLine, HelpAndVersionGoToStandardOutput) {
    const ProgramResult version = RunCli({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.output, "tavrel-cli " TAVREL_VERSION "\n");
    const ProgramResult help = RunCli({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.errors, IsEmpty());
    for (const char* command :
         {"schema", "compare", "tables", "rows", "info", "check", "dump", "create", "demo"}) {
        EXPECT_THAT(help.output, HasSubstr(command));
        const ProgramResult ofCommand = RunCli({command, "--help"});
        EXPECT_EQ(ofCommand.exitCode, 0) << command;
        EXPECT_THAT(ofCommand.output, HasSubstr(std::string("사용법: tavrel-cli ") + command));
        EXPECT_THAT(ofCommand.output, Not(HasSubstr("Options:"))) << command;
    }
}

TEST(CommandLine, SaysNumberAndDescriptionOfAFailure) {
    const TemporaryFolder folder;
    std::ofstream(folder.File("text.mdb")) << std::string(20'000, 'x');
    const UsageCase cases[] = {{"missing", {"info", folder.File("none.mdb")}, "오류 3024: "},
                               {"schema of missing", {"schema", folder.File("none.mdb")}, "Error 3024 ("},
                               {"compare with missing",
                                {"compare", folder.File("text.mdb"), folder.File("none.mdb")},
                                "파일을 찾을 수 없습니다.\n"},
                               {"no database", {"dump", folder.File("text.mdb")}, "오류 3343: "},
                               {"file called like a command", {"rows", "tables", "rows"}, "오류 3024: "}};
    for (const UsageCase& c : cases) {
        const ProgramResult result = RunCli(c.arguments);
        EXPECT_EQ(result.exitCode, 2) << c.name;
        EXPECT_THAT(result.errors, HasSubstr(c.message)) << c.name;
        EXPECT_THAT(result.output, IsEmpty()) << c.name;
    }
}

}  // namespace
}  // namespace tavrel::testing
