// The window's two commands on a database file: what is asked, what is said, what lies on the disk
// afterwards.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "FakeControls.h"
#include "compare/CompactSwap.h"
#include "support/DatabaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "workbench/CompactCommand.h"
#include "workbench/OpenInAccess.h"

namespace tavrel::workbench {
namespace {

using platform::MessageAnswer;
using platform::MessageButtons;
using platform::MessageIcon;
using testing::DatabaseBuilder;
using ::testing::HasSubstr;
using testing::ReadWholeFile;
using ::testing::StartsWith;
using testing::TemporaryFolder;

struct AnsweringMessages : platform::MessageBox {
    MessageAnswer answer = MessageAnswer::Yes;
    std::vector<platform::Message> shown;
    std::function<void()> whenAsked;
    MessageAnswer Show(const platform::Message& message) override {
        shown.push_back(message);
        if (message.buttons == MessageButtons::Ok) {
            return MessageAnswer::Ok;
        }
        if (whenAsked) {
            whenAsked();
        }
        return answer;
    }
};

class CompactCommandTest : public ::testing::Test {
  protected:
    std::string MakeDatabase(const std::string& name, const std::string& password = "kq5183") {
        DatabaseBuilder builder(
            folder_.File(name),
            {.sortOrder = jet::kSortKorean, .password = password, .pageKey = 0, .created = {}});
        builder.Add(testing::Table("고객").Counter("번호").Text("이름", 50).Key({"번호"}));
        builder.Rows("고객", {{jet::Null{}, std::string("홍길동")}});
        path_.text = builder.Finish();
        std::ofstream(path_.text, std::ios::app) << std::string(20 * 4096, '\0');  // room to be given up
        return path_.text;
    }

    void Click(bool valid = true) {
        cmdCompact_Click({.txtDBPath = &path_,
                          .pointer = &pointer_,
                          .messages = &messages_,
                          .validateDbPath = [&](const std::string& path) {
                              EXPECT_EQ(path, path_.text);
                              EXPECT_FALSE(pointer_.hourglass);
                              return valid;
                          }});
        EXPECT_FALSE(pointer_.hourglass);
    }

    /// Names of the files in the folder.
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder folder_;
    FakeText path_;
    FakePointer pointer_;
    AnsweringMessages messages_;
};

TEST_F(CompactCommandTest, ReplacesTheDatabase) {
    const std::string path = MakeDatabase("a.mdb");
    const auto size = std::filesystem::file_size(path);
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    const auto rights = std::filesystem::status(path).permissions();
    std::ofstream(folder_.File("a_compactTemp.mdb")) << "left over";
    Click();
    ASSERT_EQ(messages_.shown.size(), 2U);
    EXPECT_EQ(messages_.shown[0].text, "정말 압축 및 복구를 하시겠습니까?");
    EXPECT_EQ(messages_.shown[0].buttons, MessageButtons::YesNo);
    EXPECT_EQ(messages_.shown[0].defaultButton, 2);
    EXPECT_EQ(messages_.shown[0].icon, MessageIcon::None);
    EXPECT_EQ(messages_.shown[1].text, "압축 및 복구를 완료하였습니다.");
    EXPECT_EQ(messages_.shown[1].icon, MessageIcon::Information);
    EXPECT_EQ(pointer_.turnedOn, 1);
    EXPECT_EQ(Files(), std::vector<std::string>{"a.mdb"});
    EXPECT_LT(std::filesystem::file_size(path), size);
    EXPECT_EQ(std::filesystem::status(path).permissions(), rights);
    EXPECT_EQ(testing::ReadRows(*jet::Database::Open(path, {.password = "kq5183"}), "고객").size(), 1U);
}

TEST_F(CompactCommandTest, ALinkKeepsLeadingToTheDatabase) {
    const std::string path = MakeDatabase("a.mdb");
    std::error_code refused;
    std::filesystem::create_symlink(path, folder_.File("link.mdb"), refused);
    if (refused) {
        GTEST_SKIP() << "links cannot be made here: " << refused.message();
    }
    path_.text = folder_.File("link.mdb");
    Click();
    EXPECT_EQ(messages_.shown.back().text, "압축 및 복구를 완료하였습니다.");
    EXPECT_TRUE(std::filesystem::is_symlink(path_.text));
    EXPECT_EQ(Files(), (std::vector<std::string>{"a.mdb", "link.mdb"}));
}

TEST_F(CompactCommandTest, WithoutYesNothingHappens) {
    const std::string path = MakeDatabase("a.mdb");
    std::ofstream(folder_.File("a_compactTemp.mdb")) << "left over";
    const std::string content = ReadWholeFile(path);
    messages_.answer = MessageAnswer::No;
    Click();
    EXPECT_EQ(messages_.shown.size(), 1U);
    messages_.answer = MessageAnswer::Yes;
    Click(false);  // the check of the path has said why
    EXPECT_EQ(messages_.shown.size(), 2U);
    EXPECT_EQ(pointer_.turnedOn, 0);
    EXPECT_EQ(ReadWholeFile(path), content);
    EXPECT_EQ(Files().size(), 2U);
}

struct Failure {
    const char* name;
    const char* file;
    const char* password;
    std::function<std::shared_ptr<void>(const std::string& path)>
        prepare;  ///< what it returns is held meanwhile
    const char* message;
};

TEST_F(CompactCommandTest, FailuresLeaveTheDatabase) {
    const auto nothing = [](const std::string&) { return std::shared_ptr<void>(); };
    const Failure failures[] = {
        {"other password", "b.mdb", "other", nothing, "Error 3031 ("},
        {"in use", "c.mdb", "kq5183",
         [](const std::string& path) {
             return std::shared_ptr<void>(platform::OpenFile(path, platform::FileAccess::Read));
         },
         "Error 3045 ("},
        {"open in another program", "d.mdb", "kq5183",
         [](const std::string& path) {
             const std::string lock = path.substr(0, path.size() - 3) + "ldb";
             std::ofstream(lock) << std::string(64, 'x');
             return std::shared_ptr<void>(platform::OpenFile(lock, platform::FileAccess::ReadWrite));
         },
         "Error 3704 (컴퓨터 'xxxx"},
        {"no database", "e.mdb", "kq5183",
         [](const std::string& path) {
             std::ofstream(path) << "text";
             return std::shared_ptr<void>();
         },
         "Error 3343 ("},
    };
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.name);
        const std::string path = MakeDatabase(failure.file, failure.password);
        const auto held = failure.prepare(path);
        const std::string content = ReadWholeFile(path);
        messages_.shown.clear();
        Click();
        ASSERT_EQ(messages_.shown.size(), 2U);
        EXPECT_THAT(messages_.shown[1].text, StartsWith(failure.message));
        EXPECT_THAT(messages_.shown[1].text, HasSubstr(") in procedure cmdCompact_Click of Form Form1"));
        EXPECT_EQ(messages_.shown[1].icon, MessageIcon::None);
        EXPECT_EQ(ReadWholeFile(path), content);
        EXPECT_FALSE(std::filesystem::exists(compare::CompactTempName(path)));
    }
}

TEST_F(CompactCommandTest, ANameWithoutTheExtensionInLowerCase) {
    const std::string path = MakeDatabase("A.MDB");
    const std::string content = ReadWholeFile(path);
    Click();
    EXPECT_THAT(messages_.shown.back().text, HasSubstr("\r\n\r\n" + path));
    EXPECT_EQ(ReadWholeFile(path), content);
    EXPECT_EQ(Files(), std::vector<std::string>{"A.MDB"});
}

TEST(CompactSwapTest, TemporaryNames) {
    const std::pair<const char*, const char*> cases[] = {
        {"D:\\data\\dbMain.mdb", "D:\\data\\dbMain_compactTemp.mdb"},
        {"/a.mdb/b.mdb", "/a_compactTemp.mdb/b_compactTemp.mdb"},
        {".mdb.mdb.mdbx", "_compactTemp.mdb_compactTemp.mdb_compactTemp.mdbx"},
        {"DBMAIN.MDB", "DBMAIN.MDB"},
        {"mdb", "mdb"}};
    for (const auto& [path, temporary] : cases) {
        EXPECT_EQ(compare::CompactTempName(path), temporary);
    }
}

TEST(CompactSwapTest, AnEmptyOrMissingFileReplacesNothing) {
    const TemporaryFolder folder;
    std::ofstream(folder.File("a.mdb")) << "old";
    EXPECT_FALSE(compare::ReplaceByCompacted(folder.File("t.mdb"), folder.File("a.mdb")));
    std::ofstream(folder.File("t.mdb")) << "";
    EXPECT_FALSE(compare::ReplaceByCompacted(folder.File("t.mdb"), folder.File("a.mdb")));
    EXPECT_EQ(ReadWholeFile(folder.File("a.mdb")), "old");
    EXPECT_TRUE(std::filesystem::exists(folder.File("t.mdb")));
}

/// A file that may be read and not be written is told of before the work, and after it nothing stays behind.
TEST(CompactSwapTest, AFileThatMayNotBeWritten) {
    const TemporaryFolder folder;
    const std::string path = folder.File("a.mdb");
    const std::string compacted = folder.File("t.mdb");
    std::ofstream(path) << "old";
    std::ofstream(compacted) << "new";
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    if (testing::ErrorOf([&] { platform::OpenFile(path, platform::FileAccess::ReadWrite); }) == 0) {
        GTEST_SKIP() << "nothing is forbidden to this user";
    }
    EXPECT_EQ(testing::ErrorOf([&] { compare::RequireReplaceable(path); }), errors::kPermissionDenied);
    EXPECT_EQ(testing::ErrorOf([&] { compare::ReplaceByCompacted(compacted, path); }),
              errors::kPermissionDenied);
    EXPECT_FALSE(std::filesystem::exists(compacted));
    EXPECT_EQ(ReadWholeFile(path), "old");
}

TEST(OpenInAccessTest, OpensACheckedPathOnly) {
    FakeText path;
    path.text = "/data/a.mdb";
    std::vector<std::string> opened;
    for (const bool valid : {false, true}) {
        cmdAccess_Click(
            path, [&](const std::string&) { return valid; },
            [&](const std::string& file) { opened.push_back(file); });
    }
    EXPECT_EQ(opened, std::vector<std::string>{"/data/a.mdb"});
}

}  // namespace
}  // namespace tavrel::workbench
