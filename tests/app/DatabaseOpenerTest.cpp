// Opening a database where the desktop has a program for it, where it has none, and where it has no opener.
#include <chrono>
#include <fstream>

#include "app/DatabaseOpener.h"
#include "app/FormFixture.h"
#include "support/TemporaryFolder.h"

namespace tavrel::app {
namespace {

class OpenDatabase : public ::testing::Test {
  protected:
    void SetUp() override {
        path_ = qgetenv("PATH");
        qputenv("PATH", folder.Path().c_str());
    }
    void TearDown() override { qputenv("PATH", path_); }

    /// Stands in for the desktop's opener, which leaves what it was asked to open in the file "asked".
    void InstallOpener(int exitCode) {
        const std::string file = folder.File("xdg-open");
        std::ofstream(file) << "#!/bin/sh\necho \"$1\" >" << folder.File("asked") << "\nexit " << exitCode
                            << "\n";
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
    std::string Asked() const {
        std::string asked;
        std::getline(std::ifstream(folder.File("asked")), asked);
        return asked;
    }
    static constexpr const char* kNoProgram = "이 데이터베이스를 열 수 있는 프로그램이 없습니다.\r\n\r\n";

    testing::TemporaryFolder folder;
    HeardMessages messages;

  private:
    QByteArray path_;
};

TEST_F(OpenDatabase, SaysWhenNothingOpensIt) {
    DatabaseOpener opener(messages);
    const std::string path = folder.File("데이터 a.mdb");
    for (const int missing : {3, 4}) {
        InstallOpener(missing);
        opener.Open(path);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !messages.heard.empty(); }));
        EXPECT_EQ(messages.Texts(), std::vector<std::string>{kNoProgram + path});
        EXPECT_EQ(Asked(), path);
    }
    std::filesystem::remove(folder.File("xdg-open"));
    opener.Open(path);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !messages.heard.empty(); }));
    EXPECT_EQ(messages.Texts(), std::vector<std::string>{kNoProgram + path});
}

TEST_F(OpenDatabase, SaysNothingWhenSomethingDoes) {
    InstallOpener(0);
    DatabaseOpener opener(messages);
    opener.Open(folder.File("a.mdb"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Asked().empty(); }));
    QTest::qWait(200);
    EXPECT_TRUE(messages.heard.empty());
}

}  // namespace
}  // namespace tavrel::app
