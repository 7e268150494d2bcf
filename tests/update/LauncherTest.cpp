// The start-up update with companions that are real processes.
#include <cstdlib>

#include "platform/ProgramFile.h"
#include "update/ExecuteAndWait.h"
#include "update/Launcher.h"
#include "update/StartUp.h"
#include "update/UpdateFixture.h"

namespace tavrel::update {
namespace {

using platform::ShowCommand;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kSuffix(platform::kExecutableSuffix);
const std::string kProgram = "Tavrel" + kSuffix;
const std::string kNewProgram = "New_" + kProgram;

// The checker takes its time, so that not waiting for it would be seen.
const std::string kChecker = "wait\nwrite checked '%n|%1|%d'\n";
const std::string kCheckerWithNews = "wait\nwrite " + kNewProgram + " new\nwrite checked '%1'\n";
const std::string kReplacer = "home\nwrite replaced '%n|%1'\n";

class Launcher : public UpdateFixture {
  protected:
    void SetUp() override {
        Write(kProgram, "the program");
        WriteProgram("Sorvane.exe", kChecker);
        Publish("Sorvane_lastver.txt", {.body = "0"});
    }
    bool EndsProgram(bool skip = false) { return EndsProgram(Program(), skip); }
    bool EndsProgram(const RunningProgram& program, bool skip = false) {
        int ends = 0;
        modAutoUpdateV1_Launcher::RunAutoUpdate(skip, program, messages, [&] { ++ends; });
        EXPECT_LE(ends, 1);
        return ends == 1;
    }
};

TEST_F(Launcher, GoesOnWhenTheCheckerLeavesNothing) {
    EXPECT_FALSE(EndsProgram());
    EXPECT_EQ(Read("checked"), "1|30;" + kProgram + "|" + std::filesystem::canonical(folder.Path()).string());
    EXPECT_THAT(messages.texts, IsEmpty());
}

TEST_F(Launcher, HandsOverToTheReplacer) {
    WriteProgram("Sorvane.exe", kCheckerWithNews);
    WriteProgram("Brixel.exe", kReplacer);
    EXPECT_TRUE(EndsProgram());
    EXPECT_EQ(Read("checked"), "30;" + kProgram);
    EXPECT_EQ(AwaitFile("replaced"), "1|" + kProgram + ";" + kNewProgram);
    EXPECT_THAT(messages.texts, IsEmpty());
}

#ifndef _WIN32  // where the file manager is the system's own
TEST_F(Launcher, ShowsTheFolderWhereTheReplacerIsMissing) {
    const std::string path = std::getenv("PATH");
    const auto scoped = [](const std::string& value) { ::setenv("PATH", value.c_str(), 1); };
    WriteProgram("xdg-open", "home\nwrite shown '%1'\n");
    Write(kNewProgram, "new");
    const std::string told = "0 파일교체 프로그램을 찾을 수 없습니다.\r\n\r\n" + folder.File("Brixel.exe");
    scoped(folder.Path() + ":" + path);
    EXPECT_TRUE(EndsProgram());
    scoped("/nowhere");
    EXPECT_TRUE(EndsProgram(/*skip=*/true));  // no file manager either
    scoped(path);
    EXPECT_EQ(AwaitFile("shown"), folder.Path());
    ASSERT_EQ(messages.texts.size(), 3U);
    EXPECT_EQ(messages.texts[0], told);
    EXPECT_EQ(messages.texts[1], told);
    EXPECT_TRUE(messages.texts[2].starts_with("0 Error 53 (")) << messages.texts[2];
}
#endif

TEST_F(Launcher, TellsOfAReplacerThatCannotBeStartedAndEnds) {
    std::filesystem::remove(folder.File("Sorvane.exe"));  // nor can the checker, of which nothing is told
    Write(kNewProgram, "new");
    Write("Brixel.exe", "no program");
    EXPECT_TRUE(EndsProgram());
    ASSERT_EQ(messages.texts.size(), 1U);
    EXPECT_TRUE(messages.texts[0].starts_with(kSuffix.empty() ? "0 Error 70 (" : "0 Error 5 ("))
        << messages.texts[0];
    EXPECT_TRUE(
        messages.texts[0].ends_with(") in procedure RunAutoUpdate of Module modAutoUpdateV1_Launcher"));
}

TEST_F(Launcher, StopsWhereItIsToldTo) {
    Write(kNewProgram, "new");
    WriteProgram("Brixel.exe", kReplacer);

    Publish("Sorvane_lastver.txt", {.status = 404});
    EXPECT_FALSE(EndsProgram());
    EXPECT_EQ(messages.texts.size(), 1U);

    EXPECT_TRUE(EndsProgram(/*skip=*/true));
    EXPECT_EQ(AwaitFile("replaced"), "1|" + kProgram + ";" + kNewProgram);
    EXPECT_THAT(AskedFor(), ElementsAre("Sorvane_lastver.txt"));
    std::filesystem::remove(folder.File("checked"));

    RunningProgram program = Program();
    program.baseName = "Other";
    EXPECT_FALSE(EndsProgram(program, /*skip=*/true));
    program = Program();
    program.updateHost.clear();
    EXPECT_FALSE(EndsProgram(program));
    EXPECT_FALSE(EndsProgram(program, /*skip=*/true));
    EXPECT_FALSE(std::filesystem::exists(folder.File("checked")));
    EXPECT_EQ(messages.texts.size(), 1U);
}

TEST_F(Launcher, BelongsToNoServerAsItIsBuilt) {
    EXPECT_TRUE(RunStartUpUpdate(messages));
    EXPECT_THAT(messages.texts, IsEmpty());
    EXPECT_EQ(ThisProgram().updateHost, "");
    EXPECT_EQ(ThisProgram().baseName, "tavrel-test-update");
    EXPECT_EQ(ThisProgram().revision.find_first_not_of("0123456789"), std::string::npos);
}

TEST(ExecuteAndWait, HiddenGoesBeforeMinimized) {
    const auto show = [](bool hidden, bool minimized) {
        return static_cast<int>(modWaitProc::ExecutionOf("f", 0, "p", "d", hidden, minimized).show);
    };
    EXPECT_EQ(show(true, true), 0);
    EXPECT_EQ(show(true, false), 0);
    EXPECT_EQ(show(false, true), 7);
    EXPECT_EQ(show(false, false), 5);
}

}  // namespace
}  // namespace tavrel::update
