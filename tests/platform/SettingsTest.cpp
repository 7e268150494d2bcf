// The settings store: round trips, one key at a time, owner only, whole or not at all.
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "platform/Settings.h"
#include "support/TemporaryFolder.h"
#include "text/Error.h"

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>

namespace tavrel::platform {
namespace {

namespace fs = std::filesystem;

class Settings : public ::testing::Test {
  protected:
    Settings() { ::setenv("XDG_CONFIG_HOME", folder.File("config").c_str(), 1); }
    ~Settings() override { ::unsetenv("XDG_CONFIG_HOME"); }
    void TearDown() override { UserSettings().Sync(); }  // while the folder is there

    static std::string Get(const std::string& key, const std::string& section = "환경설정") {
        return UserSettings().GetSetting("Tavrel", section, key);
    }
    static void Save(const std::string& key, const std::string& value,
                     const std::string& section = "환경설정") {
        UserSettings().SaveSetting("Tavrel", section, key, value);
    }
    [[nodiscard]] std::string File() const { return folder.File("config/Tavrel/Tavrel.ini"); }
    [[nodiscard]] std::string Content() const {
        std::ifstream in(File());
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    void Put(const std::string& text) const {
        fs::create_directories(fs::path(File()).parent_path());
        std::ofstream(File()) << text;
    }

    testing::TemporaryFolder folder;
};

TEST_F(Settings, ReturnWhatWasSaved) {
    EXPECT_EQ(Get("최근DB_A"), "");
    const char* const values[] = {"C:\\DalvorII\\DBS\\dbMain.mdb",
                                  "  빈칸  ",
                                  " ",
                                  "",
                                  "a=b;c#d",
                                  "\\n\\",
                                  "[x]",
                                  "\"q\"",
                                  "한글 😀",
                                  "1\r\n2",
                                  "\xED\xA0\x80"};
    const char* const keys[] = {"최근DB_A", "체크박스옵션_0", "a=b", "#c", "[k]", " k ", "\\", "k"};
    for (const char* value : values) {
        for (const char* key : keys) {
            Save(key, std::string(value) + key);
        }
        for (const char* key : keys) {
            EXPECT_EQ(Get(key), std::string(value) + key);
        }
        Save("x", value);
        EXPECT_EQ(Get("x"), value);
    }
    EXPECT_EQ(Get("최근DB_A", "other"), "");
    EXPECT_EQ(UserSettings().GetSetting("Other", "환경설정", "x"), "");
}

TEST_F(Settings, ArePlainToRead) {
    Save("최근DB_A", "/데이터/a.mdb");
    Save("체크박스옵션_0", "1");
    Save("k", "v", "다른");
    Save("최근DB_A", "/b.mdb");
    EXPECT_EQ(Content(), "[환경설정]\n최근DB_A=/b.mdb\n체크박스옵션_0=1\n\n[다른]\nk=v\n");
}

TEST_F(Settings, LeaveForeignLinesAlone) {
    Put("# mine\n\n[other]\nk=1\n[환경설정]\r\n; note\r\nk=2\nnonsense\n\n[last]\nk=3");
    EXPECT_EQ(Get("k"), "2");
    Save("k", "4");
    Save("new", "5");
    EXPECT_EQ(Content(), "# mine\n\n[other]\nk=1\n[환경설정]\n; note\nk=4\nnonsense\nnew=5\n\n[last]\nk=3\n");
}

TEST_F(Settings, AreTheOwnersAlone) {
    Put("[환경설정]\n");
    fs::permissions(File(), fs::perms::all);
    Save("최근DB_A암호", "비밀");
    struct stat status = {};
    ASSERT_EQ(::stat(File().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(Settings, AreWrittenWholeOrNotAtAll) {
    Save("k", "1");
    if (::geteuid() == 0) {
        // Rights do not stop root: a folder in the way of the new file does.
        const std::string aside = File() + "." + std::to_string(::getpid()) + ".new";
        fs::create_directory(aside);
        EXPECT_THROW(Save("k", "2"), Error);
    } else {
        fs::permissions(fs::path(File()).parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
        EXPECT_THROW(Save("k", "2"), Error);
        fs::permissions(fs::path(File()).parent_path(), fs::perms::owner_all);
    }
    EXPECT_EQ(Content(), "[환경설정]\nk=1\n");
}

TEST_F(Settings, AreSyncedOnceAndTellWhenTheyCannotBe) {
    Save("k", "1");
    UserSettings().Sync();
    fs::remove_all(folder.File("config"));
    UserSettings().Sync();
    Save("k", "2");
    fs::remove_all(folder.File("config"));
    EXPECT_THROW(UserSettings().Sync(), Error);
}

TEST_F(Settings, FailWhereThereIsNoFolder) {
    std::ofstream(folder.File("config")) << "a file";
    EXPECT_THROW(Save("k", "1"), Error);
}

}  // namespace
}  // namespace tavrel::platform
#endif
