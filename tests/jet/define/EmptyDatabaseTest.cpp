// A database from nothing: the file is whole, opens again, and nothing half-made stays behind.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using namespace std::string_literals;

struct EmptyCase {
    std::string name;
    jet::CreateOptions options;
    friend void PrintTo(const EmptyCase& it, std::ostream* out) { *out << it.name; }
};

jet::CreateOptions Options(std::uint16_t sortOrder, const std::string& password, std::uint32_t pageKey = 0) {
    jet::CreateOptions options;
    options.sortOrder = sortOrder;
    options.password = password;
    options.pageKey = pageKey;
    return options;
}

std::unique_ptr<jet::Database> OpenWith(const std::string& path, const std::string& password) {
    jet::OpenOptions options;
    options.password = password;
    return jet::Database::Open(path, options);
}

class EmptyDatabase : public ::testing::TestWithParam<EmptyCase> {};

TEST_P(EmptyDatabase, IsSoundAndOpensAgain) {
    const TemporaryFolder folder;
    const jet::CreateOptions& options = GetParam().options;
    const std::string path = DatabaseBuilder(folder.File("new.mdb"), options).Finish();

    const auto database = OpenWith(path, options.password);
    EXPECT_EQ(database->Header().sortOrder, options.sortOrder);
    EXPECT_EQ(database->Header().codePage, options.sortOrder == jet::kSortKorean ? 949 : 1252);
    EXPECT_EQ(database->Header().password, options.password);
    EXPECT_EQ(database->Catalog().Objects().size(), 8U);
    EXPECT_TRUE(database->Relations().empty());
    EXPECT_EQ(std::filesystem::file_size(path), 16 * jet::kPageSize);

    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
    EXPECT_TRUE(DumpOf(path, options.password)["tables"].empty());
}

INSTANTIATE_TEST_SUITE_P(
    Create, EmptyDatabase,
    ::testing::Values(EmptyCase{"Korean", {}}, EmptyCase{"General", Options(jet::kSortGeneral, "")},
                      EmptyCase{"Password", Options(jet::kSortKorean, "비밀pw")},
                      EmptyCase{"LongestPassword", Options(jet::kSortGeneral, "abcdefghij0123456789")},
                      EmptyCase{"PageKey", Options(jet::kSortGeneral, "", 0xDEADBEEF)},
                      EmptyCase{"Everything", Options(jet::kSortKorean, "x", 1)}),
    [](const auto& info) { return info.param.name; });

TEST(EmptyDatabaseFile, SamePasswordAndDateGiveTheSameBytes) {
    const TemporaryFolder folder;
    jet::CreateOptions options = Options(jet::kSortGeneral, "p");
    options.created = 40000.5;
    const std::string first = DatabaseBuilder(folder.File("a.mdb"), options).Finish();
    const std::string second = DatabaseBuilder(folder.File("b.mdb"), options).Finish();
    EXPECT_EQ(ReadWholeFile(first), ReadWholeFile(second));
}

TEST(EmptyDatabaseFile, WithAPageKeyNoPageIsPlain) {
    const TemporaryFolder folder;
    const std::string path =
        DatabaseBuilder(folder.File("a.mdb"), Options(jet::kSortGeneral, "", 77)).Finish();
    const std::string bytes = ReadWholeFile(path);
    EXPECT_EQ(bytes.find("T\0a\0b\0l\0e\0s\0"s), std::string::npos);
    EXPECT_NE(bytes.substr(jet::kPageSize, 2), "\x01\x01"s);
}

TEST(EmptyDatabaseFile, RefusalsLeaveNothingBehind) {
    const TemporaryFolder folder;
    const std::string path = folder.File("a.mdb");
    EXPECT_EQ(ErrorOf([&] { DatabaseBuilder(path, Options(jet::kSortGeneral, std::string(21, 'x'))); }),
              errors::kBadPassword);
    EXPECT_EQ(ErrorOf([&] { DatabaseBuilder(path, Options(0x0401, "")); }), errors::kUnknownSortWeight);
    EXPECT_EQ(ErrorOf([&] { DatabaseBuilder(folder.File("no/such/folder.mdb")); }), errors::kBadPath);
    { DatabaseBuilder builder(path); }  // never finished
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(EmptyDatabaseFile, AnExistingFileIsNotTouched) {
    const TemporaryFolder folder;
    const std::string path = DatabaseBuilder(folder.File("a.mdb")).Finish();
    const std::string before = ReadWholeFile(path);
    EXPECT_EQ(ErrorOf([&] { DatabaseBuilder again(path); }), errors::kDatabaseExists);
    EXPECT_EQ(ReadWholeFile(path), before);
}

/// Until it is complete a new database has another name; what comes to have its name meanwhile stays.
TEST(EmptyDatabaseFile, GetsItsNameWhenItIsComplete) {
    const TemporaryFolder folder;
    const std::string path = folder.File("a.mdb");
    {
        const auto database = jet::Database::Create(path);
        database->CreateTable(Table("t").Long("a"));
        EXPECT_FALSE(std::filesystem::exists(path));
        database->Flush();
        EXPECT_TRUE(std::filesystem::exists(path));
        database->CreateTable(Table("u").Long("a"));
        database->Flush();
    }
    EXPECT_NE(jet::Database::Open(path)->Catalog().FindTable("u"), nullptr);
    const std::string other = folder.File("b.mdb");
    {
        const auto database = jet::Database::Create(other);
        std::ofstream(other) << "theirs";
        EXPECT_EQ(ErrorOf([&] { database->Flush(); }), errors::kDatabaseExists);
    }
    EXPECT_EQ(ReadWholeFile(other), "theirs");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2);
}

TEST(EmptyDatabaseFile, APasswordIsAskedFor) {
    const TemporaryFolder folder;
    const std::string path =
        DatabaseBuilder(folder.File("a.mdb"), Options(jet::kSortKorean, "비밀")).Finish();
    EXPECT_EQ(ErrorOf([&] { OpenWith(path, "틀림"); }), errors::kBadPassword);
    EXPECT_EQ(ErrorOf([&] { jet::Database::Open(path); }), errors::kBadPassword);
}

TEST(EmptyDatabaseFile, OpenedForReadingTakesNoChanges) {
    const TemporaryFolder folder;
    const std::string path = DatabaseBuilder(folder.File("a.mdb")).Finish();
    const auto database = jet::Database::Open(path);
    EXPECT_EQ(ErrorOf([&] { database->CreateTable(Table("t").Long("a")); }), errors::kReadOnly);
    EXPECT_EQ(ErrorOf([&] { database->Flush(); }), errors::kReadOnly);
}

}  // namespace
}  // namespace tavrel::testing
