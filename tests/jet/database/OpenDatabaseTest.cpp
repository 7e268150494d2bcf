// Opening: what is refused, with which number, and what opening reads.
#include <filesystem>

#include <gmock/gmock.h>

#include "jet/check/SampleDatabase.h"
#include "jet/database/CountingFile.h"
#include "platform/File.h"
#include "support/DatabaseBuilder.h"

namespace tavrel::jet {
namespace {

using testing::ErrorOf;
using testing::FileBytes;
using testing::SampleDatabase;

std::unique_ptr<Database> Open(FileBytes bytes, const OpenOptions& options = {}) {
    return Database::OpenFile(std::make_unique<testing::MemoryFile>(std::move(bytes)), "a.mdb", options);
}

/// The sample with some bytes replaced.
FileBytes With(std::size_t offset, const FileBytes& bytes) {
    FileBytes file = SampleDatabase::Sound();
    std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(offset));
    return file;
}
FileBytes Cut(std::size_t size) {
    return {SampleDatabase::Sound().begin(),
            SampleDatabase::Sound().begin() + static_cast<std::ptrdiff_t>(size)};
}

TEST(OpenDatabaseTest, OtherFormatsAndDamagedFilesAreRefused) {
    const FileBytes ace = {'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'A', 'C', 'E', ' ', 'D', 'B', 0};
    const struct {
        const char* what;
        FileBytes file;
        std::int32_t number;
    } cases[] = {
        {"sound", SampleDatabase::Sound(), 0},
        {"empty", {}, errors::kUnrecognizedFormat},
        {"one byte", {0}, errors::kUnrecognizedFormat},
        {"a text", FileBytes(5000, 'x'), errors::kUnrecognizedFormat},
        {"older engine", With(0x14, {0}), errors::kOldVersion},
        {"older engine, short", Cut(0x14), errors::kUnrecognizedFormat},
        {"newer engine", With(4, ace), errors::kUnrecognizedFormat},
        {"newer version", With(0x14, {2}), errors::kUnrecognizedFormat},
        {"part of the header", Cut(2000), errors::kCannotOpen},
        {"only the header", Cut(kPageSize), errors::kCannotOpen},
        {"few pages", Cut(5 * kPageSize), errors::kCannotOpen},
        {"last page cut", Cut(SampleDatabase::Sound().size() - 100), 0},
        {"no catalog", With(2 * kPageSize, {9}), errors::kCannotOpen},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(ErrorOf([&] { Open(test.file); }), test.number) << test.what;
    }
}

TEST(OpenDatabaseTest, ATolerantOpeningTakesTruncatedFiles) {
    OpenOptions tolerant;
    tolerant.tolerant = true;
    for (const std::size_t size : {kPageSize, 5 * kPageSize, SampleDatabase::Sound().size() - 100}) {
        EXPECT_EQ(ErrorOf([&] { Open(Cut(size), tolerant); }), 0) << size;
    }
    EXPECT_EQ(ErrorOf([&] { Open(FileBytes(5000, 'x'), tolerant); }), errors::kUnrecognizedFormat);
}

class OpenDatabaseFileTest : public ::testing::Test {
  protected:
    std::string Make(const CreateOptions& options) {
        testing::DatabaseBuilder builder(folder_.File("made.mdb"), options);
        builder.Add(testing::Table("T").Long("A").Text("B"));
        builder.Rows("T", {{testing::Int(1), std::string("가나다")}});
        return builder.Finish();
    }
    static std::int32_t OpenError(const std::string& path, const std::string& password = {},
                                  bool check = true) {
        OpenOptions options;
        options.password = password;
        options.checkPassword = check;
        return ErrorOf([&] { Database::Open(path, options); });
    }

    testing::TemporaryFolder folder_;
};

TEST_F(OpenDatabaseFileTest, ThePasswordMustBeRight) {
    CreateOptions options;
    options.password = "비밀 Pass1";
    const std::string path = Make(options);
    EXPECT_EQ(OpenError(path), errors::kBadPassword);
    EXPECT_EQ(OpenError(path, "비밀 pass1"), errors::kBadPassword);
    EXPECT_EQ(OpenError(path, "비밀 Pass1 "), errors::kBadPassword);
    EXPECT_EQ(OpenError(path, "비밀 Pass1"), 0);
    EXPECT_EQ(OpenError(path, {}, false), 0);
}

TEST_F(OpenDatabaseFileTest, APasswordThatIsNotAskedForIsIgnored) {
    EXPECT_EQ(OpenError(Make({}), "whatever"), 0);
}

TEST_F(OpenDatabaseFileTest, EncipheredPagesReadLikePlainOnes) {
    CreateOptions options;
    options.pageKey = 0x12345678;
    const std::string path = Make(options);
    EXPECT_EQ(testing::ReadFile(path).at(kPageSize * 3) == kPageTypeDefinition &&
                  testing::ReadFile(path).at(kPageSize * 4) == kPageTypeDefinition,
              false);
    const auto database = Database::Open(path);
    EXPECT_EQ(testing::ReadRows(*database, "T"),
              (std::vector<std::vector<Value>>{{Value(std::int64_t{1}), Value("가나다")}}));
    EXPECT_EQ(database->Header().pageKey, options.pageKey);
}

TEST_F(OpenDatabaseFileTest, FilesThatAreNotThere) {
    EXPECT_EQ(OpenError(folder_.File("none.mdb")), errors::kDatabaseNotFound);
    EXPECT_EQ(OpenError(folder_.File("no/folder/none.mdb")), errors::kBadPath);
    EXPECT_EQ(OpenError(folder_.Path()), errors::kBadPath);
    EXPECT_FALSE(std::filesystem::exists(folder_.File("none.mdb")));
}

TEST_F(OpenDatabaseFileTest, AFileInUseIsRefusedWhileReadersShareOne) {
    const std::string path = Make({});
    {
        const auto writer = platform::OpenFile(path, platform::FileAccess::ReadWrite);
        EXPECT_EQ(OpenError(path), errors::kFileInUse);
    }
    const auto reader = Database::Open(path);
    EXPECT_EQ(OpenError(path), 0);
    EXPECT_EQ(ErrorOf([&] { platform::OpenFile(path, platform::FileAccess::ReadWrite); }),
              errors::kPermissionDenied);
}

/// A journal beside the file is the writer's own until the file is free.
TEST_F(OpenDatabaseFileTest, AFileInUseIsToldBeforeItsJournalIsLookedAt) {
    const std::string path = Make({});
    const auto writer = platform::OpenFile(path, platform::FileAccess::ReadWrite);
    const auto journal = platform::OpenFile(JournalPath(path), platform::FileAccess::CreateNew);
    EXPECT_EQ(OpenError(path), errors::kFileInUse);
    EXPECT_EQ(ErrorOf([&] { Database::OpenForChanges(path); }), errors::kFileInUse);
}

/// The journal lies beside the file itself: under another name of the file it is found all the same.
TEST_F(OpenDatabaseFileTest, AJournalIsFoundThroughALink) {
    const std::string path = Make({});
    const FileBytes before = testing::ReadFile(path);
    const std::string link = folder_.File("link.mdb");
    std::filesystem::create_symlink(path, link);
    {
        const auto file = JournalFilesFor(path).create();
        JournalWriter writer(*file, static_cast<PageNumber>(before.size() / kPageSize));
        Page page;
        std::copy_n(before.begin(), kPageSize, page.begin());
        writer.Add(0, page);
        writer.Finish();
    }
    FileBytes torn = before;
    std::fill_n(torn.begin(), kPageSize, std::uint8_t{0});
    testing::WriteFile(path, torn);
    EXPECT_EQ(OpenError(link), 0);
    EXPECT_EQ(ErrorOf([&] { Database::OpenForChanges(link); }), 0);
    EXPECT_EQ(testing::ReadFile(path), before);
    EXPECT_FALSE(std::filesystem::exists(JournalPath(path)));
}

/// Reading the structure costs the catalog and the definitions, whatever the tables hold.
TEST(OpenDatabaseTest, ReadingTheStructureTouchesNoRowsOfTables) {
    auto file = std::make_unique<testing::CountingFile>(SampleDatabase::Sound());
    testing::CountingFile& counted = *file;
    const auto database = Database::OpenFile(std::move(file), "a.mdb");
    for (const CatalogObject& object : database->Catalog().Objects()) {
        if (object.IsTable()) {
            database->Describe(object);
        }
    }
    EXPECT_EQ(database->Relations().size(), 1U);
    EXPECT_EQ(counted.writes, 0U);
    const std::set<std::uint64_t> touched = counted.touched;
    SampleDatabase sample;
    for (const char* table : {"parents", "children"}) {
        EXPECT_TRUE(touched.count(sample.Definition(table) / kPageSize) != 0);
        EXPECT_TRUE(touched.count(sample.Leaf(table, "PrimaryKey") / kPageSize) == 0) << table;
        for (const PageNumber page :
             ReadUsageMap(database->Pager(), sample.DefinitionOf(table).ownedMap).pages) {
            EXPECT_TRUE(touched.count(page) == 0) << table << " " << page;
        }
    }
}

TEST(OpenDatabaseTest, AFileThatCannotBeReadIsAReadFault) {
    auto file = std::make_unique<testing::CountingFile>(SampleDatabase::Sound());
    file->failReads = true;
    EXPECT_EQ(ErrorOf([&] { Database::OpenFile(std::move(file), "a.mdb"); }), errors::kReadFault);
}

}  // namespace
}  // namespace tavrel::jet
