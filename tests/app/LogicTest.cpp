// What the window decides without a toolkit: products, caption, paths.
#include <gtest/gtest.h>

#include "app/logic/Caption.h"
#include "app/logic/DatabasePath.h"
#include "app/logic/Products.h"
#include "support/TemporaryFolder.h"

namespace tavrel::app {
namespace {

TEST(ProductOfPath, TakesTheFirstPatternThatFits) {
    const std::pair<const char*, std::optional<int>> cases[] = {
        {R"(C:\DalvorII\DBS\dbMain.mdb)", 1},
        {"/srv/DalvorII/DBS/dbMain.mdb", 1},
        {R"(C:\VintrelII\DBS\dbMain.mdb)", 2},
        {R"(D:\approve\db.mdb)", 3},
        {R"(C:\VintrelPro\DBS\dbMain.mdb)", std::nullopt},
        {R"(D:\pro\DalvorII\x.mdb)", 1},
        {R"(D:\pro\VintrelII\x.mdb)", 2},
        {"Pellam", 4},
        {"Pellam pro", 3},
        {R"(C:\dalvorii\x.mdb)", std::nullopt},
        {"DalvorII", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [path, item] : cases) {
        EXPECT_EQ(ProductOfPath(path), item) << path;
    }
}

TEST(WindowCaption, ShowsTheFirstSecondAndFourthNumber) {
    const std::pair<const char*, const char*> cases[] = {
        {"1.7.0.30", "Tavrel v1.7.30 (Made by Ardel)"},
        {"01.07.99.0030", "Tavrel v1.7.30 (Made by Ardel)"},
        {"2.0", "Tavrel v2.0.0 (Made by Ardel)"},
    };
    for (const auto& [version, caption] : cases) {
        EXPECT_EQ(WindowCaption(version), caption);
    }
}

struct Field : platform::TextField {
    int focused = 0;
    [[nodiscard]] std::string Text() const override { return {}; }
    void SetFocus() override { ++focused; }
};

struct Messages : platform::MessageBox {
    std::string last;
    platform::MessageAnswer Show(const platform::Message& message) override {
        last = message.text;
        return platform::MessageAnswer::Ok;
    }
};

TEST(ValidateDbPath, AcceptsExistingDatabasesOnly) {
    const testing::TemporaryFolder folder;
    for (const char* name : {"X.MDB", "x.mdb", "x.mdb.bak", "db"}) {
        std::fclose(std::fopen(folder.File(name).c_str(), "w"));
    }
    std::filesystem::create_directory(folder.File("folder.mdb"));
    const std::string missing = "파일을 찾을 수 없습니다.\r\n\r\n";
    const std::string foreign = "mdb파일이 아닙니다.\r\n\r\n";
    const std::pair<std::string, std::string> cases[] = {
        {folder.File("X.MDB"), ""},
        {folder.File("x.mdb"), ""},
        {folder.File("x.mdb.bak"), foreign + folder.File("x.mdb.bak")},
        {folder.File("db"), foreign + folder.File("db")},
        {folder.File("folder.mdb"), missing + folder.File("folder.mdb")},
        {folder.File("none.mdb"), missing + folder.File("none.mdb")},
        {"", "DB경로가 입력되지 않았습니다."},
        {"   ", "DB경로가 입력되지 않았습니다."},
    };
    for (const auto& [path, text] : cases) {
        Field field;
        Messages messages;
        EXPECT_EQ(ValidateDbPath(path, field, messages), text.empty()) << path;
        EXPECT_EQ(messages.last, text);
        EXPECT_EQ(field.focused, text.empty() ? 0 : 1);
    }
}

TEST(ValidateDbPath, TellsThatTheLookupFailed) {
    Field field;
    Messages messages;
    EXPECT_FALSE(ValidateDbPath(std::string(5000, 'x') + ".mdb", field, messages));
    EXPECT_TRUE(messages.last.starts_with("Error ")) << messages.last;
    EXPECT_TRUE(messages.last.ends_with(") in procedure ValidateDbPath of Form Form1")) << messages.last;
    EXPECT_EQ(field.focused, 1);
}

}  // namespace
}  // namespace tavrel::app
