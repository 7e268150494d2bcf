// tavrel-cli compact: in place and as a new file, and killed at any moment.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include <gmock/gmock.h>

#include "jet/check/Check.h"
#include "support/DatabaseBuilder.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

#if __has_include(<spawn.h>)
#include <spawn.h>
#include <sys/wait.h>
extern char** environ;
#endif

namespace tavrel::testing {
namespace {

using ::testing::HasSubstr;

std::string MakeDatabase(const std::string& path, std::int64_t rows) {
    DatabaseBuilder builder(path,
                            {.sortOrder = jet::kSortKorean, .password = "암호", .pageKey = 0, .created = {}});
    builder.Add(
        Table("고객").Counter("번호").Text("이름", 200).Memo("메모").Key({"번호"}).Index("이름순", {"이름"}));
    std::vector<std::vector<jet::Value>> lines;
    for (std::int64_t row = 0; row < rows; ++row) {
        lines.push_back({jet::Null{}, "이름 " + std::to_string(row * 7919 % rows), std::string(100, 'm')});
    }
    builder.Rows("고객", lines);
    return builder.Finish();
}

std::vector<std::string> FilesIn(const TemporaryFolder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

TEST(CompactCommand, InPlaceAndAsANewFile) {
    const TemporaryFolder folder;
    const std::string path = MakeDatabase(folder.File("a.mdb"), 500);
    const std::string dump = RunCli({"dump", path}).output;
    EXPECT_EQ(RunCli({"compact", path, "--password", "암호", "-o", folder.File("b.mdb")}).exitCode, 0);
    EXPECT_EQ(RunCli({"compact", path, "--password", "암호"}).exitCode, 0);
    EXPECT_EQ(FilesIn(folder), (std::vector<std::string>{"a.mdb", "b.mdb"}));
    EXPECT_EQ(RunCli({"dump", path}).output, dump);
    EXPECT_EQ(ReadWholeFile(path), ReadWholeFile(folder.File("b.mdb")));
}

TEST(CompactCommand, Refusals) {
    const TemporaryFolder folder;
    const std::string path = MakeDatabase(folder.File("a.mdb"), 10);
    std::filesystem::copy(path, folder.File("B.MDB"));
    const std::string content = ReadWholeFile(path);
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{path, "--password", "x"}, "오류 3031"},
        {{path}, "오류 3031"},
        {{path, "--password", "암호", "-o", path}, "오류 3204"},
        {{path, "--password", "암호", "-o", folder.File("B.MDB")}, "오류 3204"},
        {{folder.File("B.MDB"), "--password", "암호"}, "오류 52"},
        {{folder.File("none.mdb")}, "오류 3024"}};
    for (const auto& [arguments, message] : cases) {
        std::vector<std::string> all{"compact"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ProgramResult result = RunCli(all);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.errors, HasSubstr(message));
    }
    EXPECT_EQ(ReadWholeFile(path), content);
    EXPECT_EQ(ReadWholeFile(folder.File("B.MDB")), content);
    EXPECT_EQ(FilesIn(folder), (std::vector<std::string>{"B.MDB", "a.mdb"}));
}

TEST(CompactCommand, ADamagedFileIsRepairedAndTheLossesAreTold) {
    const TemporaryFolder folder;
    const std::string path = MakeDatabase(folder.File("a.mdb"), 500);
    jet::PageNumber page = 0;
    {
        const auto database = jet::Database::Open(path, {.password = {}, .checkPassword = false});
        page = static_cast<jet::PageNumber>(database->Catalog().FindTable("고객")->DefinitionPage() + 5);
    }
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary)
        .seekp(std::streamoff{page} * 4096)
        .write(std::string(4096, '\0').data(), 4096);
    const ProgramResult result = RunCli({"compact", path, "--password", "암호"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("복구했습니다"));
    EXPECT_THAT(result.output, HasSubstr("잃음: 테이블 고객 페이지 " + std::to_string(page)));
    EXPECT_EQ(RunCli({"check", path}).exitCode, 0);
    EXPECT_EQ(RunCli({"compact", path, "--password", "암호"}).exitCode, 0);
}

#if __has_include(<spawn.h>)
/// At whatever moment: one of the two is there, whole, under its name.
TEST(CompactCommand, KilledAtAnyMoment) {
    const TemporaryFolder folder;
    const std::string original = MakeDatabase(folder.File("original"), 3000);
    const std::string path = folder.File("a.mdb");
    const std::string program = ProgramFolder() + "/tavrel-cli";
    const std::string content = ReadWholeFile(original);
    std::string finished;
    std::mt19937 random(1);
    std::int64_t duration = 200'000;  // microseconds
    for (int round = 0; round < 200; ++round) {
        std::filesystem::copy_file(original, path, std::filesystem::copy_options::overwrite_existing);
        const auto start = std::chrono::steady_clock::now();
        const char* arguments[] = {program.c_str(), "compact", path.c_str(), "--password", "암호", nullptr};
        pid_t child = 0;
        posix_spawn_file_actions_t silent;
        posix_spawn_file_actions_init(&silent);
        posix_spawn_file_actions_addopen(&silent, 1, "/dev/null", 1, 0);
        ASSERT_EQ(
            posix_spawn(&child, program.c_str(), &silent, nullptr, const_cast<char**>(arguments), environ),
            0);
        posix_spawn_file_actions_destroy(&silent);
        if (round > 0) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % duration));
            kill(child, SIGKILL);
        }
        int status = 0;
        waitpid(child, &status, 0);
        const std::string found = ReadWholeFile(path);
        if (round == 0) {
            finished = found;
            duration = std::chrono::duration_cast<std::chrono::microseconds>(
                           std::chrono::steady_clock::now() - start)
                           .count();
            ASSERT_EQ(status, 0);
            ASSERT_NE(finished, content);
        }
        EXPECT_TRUE(found == content || found == finished) << round;
        for (const std::string& name : FilesIn(folder)) {
            EXPECT_TRUE(name == "a.mdb" || name == "original" || name == "a_compactTemp.mdb") << name;
        }
    }
    EXPECT_EQ(RunCli({"check", path}).exitCode, 0);
}
#endif

}  // namespace
}  // namespace tavrel::testing
