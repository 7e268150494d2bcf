// The update check against a real server.
#include "platform/File.h"
#include "update/Download.h"
#include "update/SelfUpdate.h"
#include "update/UpdateFixture.h"

namespace tavrel::update {
namespace {

using modAutoUpdateV1_Launcher::AutoUpdaterSelfUpdate;
using modAutoUpdateV1_Launcher::DownloadFile;
using tavrel::testing::HttpReply;
using tavrel::testing::ReplyEnd;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

constexpr const char* kNoVersion = "16 Sorvane.exe의 최신버전 정보를 읽어올 수 없습니다!";
constexpr std::chrono::milliseconds kSlow{15};

using SelfUpdate = UpdateFixture;

struct VersionCase {
    const char* what;
    HttpReply version;
    const char* localVersion;  ///< of the checker on disk; null: there is none
    bool result;
    bool downloads;
    bool message = false;
};

const VersionCase kVersionCases[] = {
    {"same", {.body = "12"}, "1.03.0012", true, false},
    {"newer", {.body = "13"}, "1.03.0012", true, true},
    {"older", {.body = "9"}, "1.03.0012", true, false},
    {"blanks around", {.body = "  13  "}, "1.03.0012", true, true},
    {"rounded up", {.body = "12.6"}, "1.03.0012", true, true},
    {"rounded down", {.body = "12.4"}, "1.03.0012", true, false},
    {"half goes to even", {.body = "12.5"}, "1.03.0012", true, false},
    {"line end behind", {.body = "13\r\n"}, "1.03.0012", true, true},
    {"slow", {.body = "13", .pause = kSlow}, "1.03.0012", true, true},
    {"twenty bytes count", {.body = "                  1399"}, "1.03.0012", true, true},
    {"behind twenty bytes", {.body = "                   1399"}, "1.03.0012", true, false},
    {"no number", {.body = "<html>"}, "1.03.0012", true, false},
    {"version without point", {.body = "6"}, "5", true, true},
    {"no checker", {.body = "1"}, nullptr, true, true},
    {"no checker, 0", {.body = "0"}, nullptr, true, false},
    {"overflow is told, and on it goes", {.body = "1e999"}, nullptr, true, true, true},
    {"empty", {.body = ""}, nullptr, false, false, true},
    {"blanks", {.body = "   "}, nullptr, false, false, true},
    {"not there", {.status = 404, .body = "99"}, nullptr, false, false, true},
    {"server error", {.status = 500, .body = "99"}, nullptr, false, false, true},
    {"cut off", {.body = "9", .announced = 3}, nullptr, false, false, true},
    {"redirection to nowhere", {.status = 302, .body = "99"}, nullptr, false, false, true},
    {"not all of it", {.status = 206, .body = "99"}, nullptr, false, false, true},
};

TEST_F(SelfUpdate, ComparesTheCheckerWithThePublishedNumber) {
    for (const VersionCase& example : kVersionCases) {
        SCOPED_TRACE(example.what);
        if (example.localVersion != nullptr && !tavrel::testing::CanMakePeFiles()) {
            continue;
        }
        std::filesystem::remove(folder.File("Sorvane.exe"));
        if (example.localVersion != nullptr) {
            tavrel::testing::MakePeFile(
                folder.File("Sorvane.exe"),
                tavrel::testing::VersionScript("VALUE \"FileVersion\", \"" +
                                               std::string(example.localVersion) + "\""));
        }
        Publish("Sorvane_lastver.txt", example.version);
        Publish("Sorvane.exe", {.body = "new checker"});
        Publish("Brixel.exe", {.body = "new replacer"});
        messages.texts.clear();
        EXPECT_EQ(AutoUpdaterSelfUpdate(Program(), messages), example.result);
        EXPECT_THAT(AskedFor(), example.downloads ? std::vector<std::string>(
                                                        {"Sorvane_lastver.txt", "Sorvane.exe", "Brixel.exe"})
                                                  : std::vector<std::string>({"Sorvane_lastver.txt"}));
        EXPECT_EQ(Read("Sorvane.exe") == "new checker", example.downloads);
        EXPECT_EQ(messages.texts.size(), example.message ? 1U : 0U);
        if (!example.result) {
            EXPECT_THAT(messages.texts, ElementsAre(kNoVersion));
        }
    }
}

TEST_F(SelfUpdate, TellsWhenNoServerAnswers) {
    RunningProgram program = Program();
    program.updateHost = "127.0.0.1:1";
    EXPECT_FALSE(AutoUpdaterSelfUpdate(program, messages));
    EXPECT_THAT(messages.texts, ElementsAre(kNoVersion));
}

TEST_F(SelfUpdate, LeavesPlacesAloneThatAWholeFileDoesNotReach) {
    Publish("Sorvane_lastver.txt", {.body = "2"});
    Write("Sorvane.exe", "old checker");
    Write("Brixel.exe", "old replacer");
    Publish("Brixel.exe", {.body = "half", .announced = 1000});

    EXPECT_FALSE(AutoUpdaterSelfUpdate(Program(), messages));  // no checker to be had
    EXPECT_THAT(AskedFor(), ElementsAre("Sorvane_lastver.txt", "Sorvane.exe"));
    EXPECT_EQ(Read("Sorvane.exe"), "old checker");

    Publish("Sorvane.exe", {.body = "new checker"});
    EXPECT_FALSE(AutoUpdaterSelfUpdate(Program(), messages));
    EXPECT_EQ(Read("Sorvane.exe"), "new checker");
    EXPECT_EQ(Read("Brixel.exe"), "old replacer");
    EXPECT_THAT(FilesThere(), UnorderedElementsAre("Sorvane.exe", "Brixel.exe"));
    EXPECT_THAT(messages.texts, IsEmpty());
}

TEST_F(SelfUpdate, TakesOnlyAWholeAnswerForAProgram) {
    const struct {
        const char* what;
        HttpReply reply;
        bool taken;
    } cases[] = {
        {"whole", {.body = "new"}, true},
        {"in pieces", {.body = "new", .end = ReplyEnd::Chunks}, false},
        {"without the last piece", {.body = "new", .end = ReplyEnd::NoChunk}, false},
        {"does not say how long it is", {.body = "new", .end = ReplyEnd::Nothing}, false},
        {"cut off", {.body = "new", .announced = 4}, false},
        {"empty", {.body = ""}, false},
        {"no content", {.status = 204}, false},
        {"a part", {.status = 206, .body = "new"}, false},
        {"redirection to nowhere", {.status = 302, .body = "new"}, false},
        {"not there", {.status = 404, .body = "new"}, false},
        {"server error", {.status = 500, .body = "new"}, false},
    };
    for (const auto& example : cases) {
        SCOPED_TRACE(example.what);
        Write("program", "old");
        server.Answer("/", example.reply);
        EXPECT_EQ(DownloadFile("http://" + server.Host() + "/", folder.File("program")), example.taken);
        EXPECT_EQ(Read("program"), example.taken ? "new" : "old");
        EXPECT_THAT(FilesThere(), ElementsAre("program"));
    }
}

TEST_F(SelfUpdate, RemovesWhatABrokenDownloadLeft) {
    Publish("Sorvane_lastver.txt", {.body = "0"});
    Write("Sorvane.exe.part", "half");
    Write("Brixel.exe.part", "half");
    Write("other.part", "mine");
    EXPECT_TRUE(AutoUpdaterSelfUpdate(Program(), messages));
    EXPECT_THAT(FilesThere(), ElementsAre("other.part"));

    Write("program.part", "another program's");
    const auto held = platform::OpenFile(folder.File("program.part"), platform::FileAccess::ReadWrite);
    server.Answer("/", {.body = "new"});
    EXPECT_FALSE(DownloadFile("http://" + server.Host() + "/", folder.File("program")));
    EXPECT_THAT(FilesThere(), UnorderedElementsAre("other.part", "program.part"));
}

TEST_F(SelfUpdate, GivesUpAServerThatHangs) {
    const std::string url = "http://" + server.Host() + "/";
    const HttpReply replies[] = {{.hangsFirst = true}, {.body = "12", .announced = 30, .hangsLater = true}};
    for (const HttpReply& reply : replies) {
        server.Answer("/", reply);
        const auto start = std::chrono::steady_clock::now();
        if (reply.hangsFirst) {
            EXPECT_EQ(modAutoUpdateV1_Launcher::OpenUrl(url), "");
        } else {
            EXPECT_FALSE(DownloadFile(url, folder.File("program")));
        }
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
        EXPECT_THAT(FilesThere(), IsEmpty());
        // It converses with one at a time.
        server.StopHanging();
    }
}

TEST_F(SelfUpdate, GoesOnBehindAnError) {
#ifdef _WIN32
    GTEST_SKIP() << "a lookup in a folder with such a name says there that there is none";
#endif
    Publish("Sorvane_lastver.txt", {.body = "2"});
    const RunningProgram program = Program(folder.File(std::string(300, 'x')));
    EXPECT_FALSE(AutoUpdaterSelfUpdate(program, messages));
    EXPECT_THAT(AskedFor(), ElementsAre("Sorvane_lastver.txt"));
    ASSERT_EQ(messages.texts.size(), 1U);
    EXPECT_TRUE(messages.texts[0].starts_with("0 Error 75 (")) << messages.texts[0];
    EXPECT_TRUE(messages.texts[0].ends_with(
        ") in procedure AutoUpdaterSelfUpdate of Module modAutoUpdateV1_Launcher"));
}

TEST_F(SelfUpdate, AsksPastCachesAndFollowsRedirections) {
    const std::string url = "http://" + server.Host();
    server.Answer("/old%20place", {.status = 302, .body = "moved", .location = "/new"});
    server.Answer("/new", {.body = std::string(3, '\0') + "1"});
    EXPECT_EQ(modAutoUpdateV1_Launcher::OpenUrl(url + "/old place"), std::string(3, '\0') + "1");
    for (const std::string& head : server.TakeRequests()) {
        EXPECT_THAT(head, ::testing::HasSubstr("User-Agent: VB OpenUrl\r\n"));
#ifndef _WIN32  // where the system asks past its cache in ways of its own
        EXPECT_THAT(head, ::testing::HasSubstr("Cache-Control: no-cache\r\n"));
#endif
    }
    server.Answer("/old%20place", {.status = 302, .body = "moved", .location = "file:///etc/hostname"});
    EXPECT_EQ(modAutoUpdateV1_Launcher::OpenUrl(url + "/old place"), "");
    EXPECT_EQ(modAutoUpdateV1_Launcher::OpenUrl("file:///etc/hostname"), "");
}

TEST_F(SelfUpdate, ReadsNoMoreThanItTakes) {
    server.Answer("/", {.body = std::string(100000, '7'), .pause = std::chrono::milliseconds(1)});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(modAutoUpdateV1_Launcher::OpenUrl("http://" + server.Host() + "/"), std::string(20, '7'));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(50));
}

TEST_F(SelfUpdate, DownloadsWholeFilesAndKeepsTheirRights) {
    const std::string url = "http://" + server.Host() + "/";
    const std::string body(3000000, 'b');
    server.Answer("/", {.body = body});
    Write("program", "old");
    std::filesystem::permissions(folder.File("program"), std::filesystem::perms::owner_all);
    const auto rights = std::filesystem::status(folder.File("program")).permissions();
    EXPECT_TRUE(modAutoUpdateV1_Launcher::DownloadFile(url, folder.File("program")));
    EXPECT_EQ(Read("program"), body);
    EXPECT_EQ(std::filesystem::status(folder.File("program")).permissions(), rights);
    EXPECT_FALSE(modAutoUpdateV1_Launcher::DownloadFile(url, folder.File("no/folder")));
}

}  // namespace
}  // namespace tavrel::update
