// A compacted database holds what the old one held, in less room.
#include <random>

#include "CompactBench.h"
#include "jet/check/SampleDatabase.h"
#include "jet/compact/RowMap.h"
#include "jet/index/IndexReader.h"
#include "jet/storage/UsageMap.h"
#include "support/Corpus.h"
#include "support/EditBench.h"
#include "support/JetTools.h"
#include "support/MemoryFile.h"

namespace tavrel::testing {
namespace {

using jet::Null;
using namespace std::string_literals;

const jet::CompactOptions kAnyPassword{.password = {}, .checkPassword = false, .progress = {}};

TEST(CompactTest, SampleDatabases) {
    TAVREL_NEEDS_CORPUS();
    int compacted = 0;
    for (const std::string& file : CorpusFiles()) {
        SCOPED_TRACE(file);
        if (ErrorOf([&] { OpenAny(file); }) != 0) {
            continue;  // of another format
        }
        const TemporaryFolder folder;
        const std::string result = ExpectSameContent(folder, file);
        if (HaveJetTools()) {
            EXPECT_EQ(StrictFindings(result), "");
        }
        ++compacted;
    }
    EXPECT_GT(compacted, 10);
}

// ---- databases with a past

constexpr int kOrders = 4000;

std::vector<jet::Value> Order(std::int64_t number) {
    const std::size_t longBytes = number % 500 == 0 ? 30'000 : number % 7 == 0 ? 900 : 20;
    return {Int(number),
            "주문 " + std::to_string(number % 50),
            number % 3 == 0 ? jet::Value{Null{}} : Int(number % 11),
            number % 2 == 0,
            std::string(longBytes, 'm'),
            jet::ByteVector(longBytes, static_cast<std::uint8_t>(number))};
}

/// Rows put in at random, changed so that they move, taken out; a column dropped and another added.
std::string DatabaseWithAPast(const TemporaryFolder& folder, const jet::CreateOptions& options) {
    DatabaseBuilder builder(folder.File("past.mdb"), options);
    builder.Add(Table("주문")
                    .Long("번호")
                    .Text("이름", 200)
                    .Long("값")
                    .Column("표시", jet::ColumnType::Boolean)
                    .Memo("메모")
                    .Column("그림", jet::ColumnType::Ole)
                    .Key({"번호"})
                    .Index("이름순", {"이름", "값"})
                    .Descending()
                    .Index("값순", {"값"})
                    .IgnoreNulls()
                    .Index("표시순", {"표시"}));
    builder.Add(Table("내역").Counter("번호").Long("주문번호").Key({"번호"}));
    std::vector<std::vector<jet::Value>> rows;
    for (std::int64_t number = 0; number < kOrders; ++number) {
        rows.push_back(Order(number));
    }
    std::ranges::shuffle(rows, std::mt19937(1));
    builder.Rows("주문", rows);
    rows.clear();
    for (std::int64_t number = 0; number < kOrders; ++number) {
        rows.push_back({Null{}, Int(number * 7 % kOrders)});
    }
    builder.Rows("내역", rows);
    builder.Relate({"주문내역", "내역", "주문", {"주문번호"}, {"번호"}, false, true, true, false});
    const std::string path = builder.Finish();
    EditBench bench(path);
    jet::sql::ColumnDefinition added;
    added.column.name = "새것";
    added.column.type = jet::ColumnType::Text;
    added.column.size = 100;
    EXPECT_EQ(bench.Change([&] { bench.schema.AddColumn("주문", added); }), 0);
    const auto all = ReadRows(*bench.database, "주문");
    std::vector<jet::RowPointer> places;
    {
        const auto& definition = bench.Table("주문").Definition();
        for (jet::RowCursor cursor(bench.database->Pager(), definition, 0); cursor.Next();) {
            places.push_back(cursor.At());
        }
    }
    EXPECT_EQ(bench.Change([&] {
        jet::EditedTable& orders = bench.Table("주문");
        const std::size_t name = orders.Definition().FindColumnByName("이름");
        const std::size_t fresh = orders.Definition().FindColumnByName("새것");
        for (std::size_t i = 0; i < places.size(); i += 3) {
            const auto number = std::get<std::int64_t>(all[i][0]);
            orders.Update(places[i],
                          std::vector{orders.Encode(name, std::string(150, 'n') + std::to_string(number)),
                                      orders.Encode(fresh, "새 값"s)});
        }
    }),
              0)
        << bench.lastError;
    EXPECT_EQ(bench.Change([&] {
        for (std::size_t i = 0; i < places.size(); i += 4) {
            bench.Table("주문").Delete(places[i]);
        }
    }),
              0);
    EXPECT_EQ(bench.Change([&] {
        bench.schema.DropIndex("주문", "값순");
        bench.schema.DropColumn("주문", "메모");
    }),
              0)
        << bench.lastError;
    EXPECT_EQ(bench.Findings(), "");
    return path;
}

/// Rows stand in the order of the primary key, pages of the table side by side.
void ExpectTidy(const std::string& path, const std::string& table) {
    const auto database = OpenAny(path);
    const auto& definition =
        database->Catalog().Definition(database->Catalog().FindTable(table)->DefinitionPage());
    std::vector<jet::PageNumber> pages = jet::ReadUsageMap(database->Pager(), definition.ownedMap).pages;
    for (const jet::LongValueMaps& maps : definition.trailer) {
        const auto more = jet::ReadUsageMap(database->Pager(), maps.owned).pages;
        pages.insert(pages.end(), more.begin(), more.end());
    }
    ASSERT_FALSE(pages.empty());
    const auto [first, last] = std::ranges::minmax(pages);
    EXPECT_EQ(last - first + 1, pages.size());
    EXPECT_EQ(definition.columnNumbers, definition.columns.size());
    const auto primary =
        std::ranges::find(definition.logicalIndexes, jet::LogicalKind::Primary, &jet::LogicalIndex::kind);
    jet::IndexReader reader(database->Pager(), definition.realIndexes[primary->real].root, definition.page);
    jet::RowPointer before{};
    for (bool found = reader.First(); found; found = reader.Next()) {
        EXPECT_LT(before, reader.Row());
        before = reader.Row();
    }
}

TEST(CompactTest, DatabasesWithAPast) {
    const jet::CreateOptions cases[] = {
        {.sortOrder = jet::kSortKorean, .password = "비밀", .pageKey = 0, .created = {}},
        {.sortOrder = jet::kSortKorean, .password = {}, .pageKey = 0xABCD1234, .created = {}}};
    for (const jet::CreateOptions& options : cases) {
        const TemporaryFolder folder;
        const std::string path = DatabaseWithAPast(folder, options);
        const std::string result = ExpectSameContent(folder, path);
        ExpectTidy(result, "주문");
        ExpectTidy(result, "내역");
        EXPECT_LT(std::filesystem::file_size(result), std::filesystem::file_size(path) * 9 / 10);
        const auto before = OpenAny(path);
        const auto after = OpenAny(result);
        EXPECT_EQ(after->Header().password, options.password);
        EXPECT_EQ(after->Header().pageKey, options.pageKey);
        EXPECT_EQ(after->Header().created, before->Header().created);
        const auto numberOf = [](jet::Database& database) {
            return database.Catalog()
                .Definition(database.Catalog().FindTable("내역")->DefinitionPage())
                .lastAutonumber;
        };
        EXPECT_EQ(numberOf(*after), numberOf(*before));
        if (HaveJetTools() && options.pageKey == 0) {
            EXPECT_EQ(StrictFindings(result), "");
        }
    }
}

/// More pages than an inline map can name, index trees of several levels, more equal keys than are listed.
TEST(CompactTest, ALargeDatabase) {
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("large.mdb"));
    builder.Add(Table("큰것").Long("번호").Text("이름", 255).Key({"이름", "번호"}).Index("번호순", {"번호"}));
    std::vector<std::vector<jet::Value>> rows;
    for (std::int64_t number = 0; number < 30'000; ++number) {
        rows.push_back({Int(number % 2), std::string(200, 'x') + std::to_string(number)});
    }
    builder.Rows("큰것", rows);
    const std::string result = ExpectSameContent(folder, builder.Finish());
    ExpectTidy(result, "큰것");
    EXPECT_GT(std::filesystem::file_size(result), 6U << 20);
    if (HaveJetTools()) {
        EXPECT_EQ(StrictFindings(result), "");
    }
}

/// Numbers that do not fit into memory come back from the file.
TEST(CompactTest, ScratchNumbersSpill) {
    MemoryFile file;
    jet::compact::ScratchNumbers numbers(file, 4096, 3);
    for (int round = 0; round < 2; ++round) {
        numbers.Clear();
        numbers.Append(50'000);
        std::mt19937 random(7);
        std::vector<std::uint32_t> expected(50'000);
        for (int i = 0; i < 20'000; ++i) {
            const std::size_t at = random() % expected.size();
            expected[at] = static_cast<std::uint32_t>(random());
            numbers.Set(at, expected[at]);
        }
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(numbers.Get(i), expected[i]);
        }
    }
    EXPECT_GT(file.Size(), 100'000U);
}

/// Accounts of a workgroup and rows that were brought in with their numbers are no damage.
TEST(CompactTest, NotesAreNoLossesAndAutonumbersAreRaised) {
    const TemporaryFolder folder;
    SampleDatabase sample;
    sample.At(sample.Value("MSysObjects", sample.ObjectRow("Tables"), "Owner")) ^= 1;
    sample.Put(sample.Definition("parents") + 0x14, 4, 3);
    WriteFile(folder.File("a.mdb"), sample.bytes);
    const auto report = jet::CompactDatabase(folder.File("a.mdb"), folder.File("b.mdb"));
    EXPECT_FALSE(report.repaired);
    EXPECT_TRUE(report.losses.empty());
    EXPECT_EQ(FindingsOf(folder.File("b.mdb")), "MSysObjects: Tables의 소유자가 엔진이 아님\n");
    const auto database = OpenAny(folder.File("b.mdb"));
    const auto* parents = database->Catalog().FindTable("parents");
    EXPECT_EQ(database->Catalog().Definition(parents->DefinitionPage()).lastAutonumber, 20U);
}

// ---- refusals

TEST(CompactTest, RefusalsLeaveEverythingAsItWas) {
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"),
                            {.sortOrder = jet::kSortKorean, .password = "kq", .pageKey = 0, .created = {}});
    const std::string path = builder.Finish();
    const std::string content = ReadWholeFile(path);
    const std::string other = folder.File("b.mdb");
    const auto compact = [&](const std::string& to, const std::string& password) {
        return ErrorOf([&] {
            jet::CompactDatabase(path, to, {.password = password, .checkPassword = true, .progress = {}});
        });
    };
    EXPECT_EQ(compact(other, "KQ"), errors::kBadPassword);
    EXPECT_EQ(compact(path, "kq"), errors::kDatabaseExists);
    EXPECT_EQ(compact(folder.File("missing/b.mdb"), "kq"), errors::kBadPath);
    {
        const auto reader = jet::Database::Open(path, {.password = "kq"});
        EXPECT_EQ(compact(other, "kq"), errors::kFileInUse);
    }
    std::ofstream(folder.File("a.ldb"))
        << std::string("PC-1") + std::string(28, '\0') + "Admin" + std::string(27, '\0');
    {
        const auto live = platform::OpenFile(folder.File("a.ldb"), platform::FileAccess::Read);
        EXPECT_EQ(compact(other, "kq"), 3704);
    }
    EXPECT_FALSE(std::filesystem::exists(other));
    EXPECT_EQ(ReadWholeFile(path), content);
    EXPECT_EQ(compact(other, "kq"), 0);  // nobody holds the lock file any more
    EXPECT_EQ(compact(other, "kq"), errors::kDatabaseExists);
}

/// A disk on which the n-th writing operation fails, or on which nothing is done from there on.
class FailingFile : public platform::File {
  public:
    FailingFile(std::unique_ptr<platform::File> file, int& operations, std::int32_t number)
        : file_(std::move(file)), operations_(operations), number_(number) {}
    std::uint64_t Size() override { return file_->Size(); }
    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override { file_->ReadAt(offset, out); }
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        Count();
        file_->WriteAt(offset, bytes);
    }
    void Truncate(std::uint64_t size) override {
        Count();
        file_->Truncate(size);
    }
    void Sync() override {
        Count();
        file_->Sync();
    }

  private:
    void Count() {
        if (operations_-- == 0) {
            throw MakeError(number_);
        }
    }

    std::unique_ptr<platform::File> file_;
    int& operations_;
    std::int32_t number_;
};

TEST(CompactTest, EachWriteFailingInTurnIsTold) {
    const TemporaryFolder folder;
    const std::string path = DatabaseWithAPast(
        folder, {.sortOrder = jet::kSortKorean, .password = {}, .pageKey = 0, .created = {}});
    const auto source = OpenAny(path);
    const std::pair<std::int32_t, std::int32_t> failures[] = {{errors::kDiskFull, errors::kNoDiskSpace},
                                                              {errors::kDeviceFault, errors::kNetworkError}};
    for (const auto& [fails, told] : failures) {
        for (int n = 0;; ++n) {
            int operations = n;
            const auto make = [&, number = fails] {
                return std::make_unique<FailingFile>(std::make_unique<MemoryFile>(), operations, number);
            };
            const std::int32_t error =
                ErrorOf([&] { jet::CompactInto(*source, make, "new.mdb", kAnyPassword); });
            if (error == 0) {
                EXPECT_GT(n, 5);
                break;
            }
            ASSERT_EQ(error, told) << n;
        }
    }
}

/// A file of which the n-th read ends early, once.
class EndingFile : public MemoryFile {
  public:
    EndingFile(FileBytes bytes, int& reads) : MemoryFile(std::move(bytes)), reads_(reads) {}
    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        if (reads_-- == 0) {
            throw MakeError(errors::kDeviceFault, {}, "파일의 끝");
        }
        MemoryFile::ReadAt(offset, out);
    }

  private:
    int& reads_;
};

/// What the system does not give is not damage: nothing may be given up for it.
TEST(CompactTest, EachReadThatEndsEarlyIsTold) {
    SampleDatabase damaged;
    damaged.At(damaged.Definition("parents")) = 8;
    damaged.At(damaged.DataPage("children") + 2) ^= 1;
    for (const FileBytes& bytes : {SampleDatabase::Sound(), damaged.bytes}) {
        for (int n = 0;; ++n) {
            int reads = n;
            const auto compact = [&] {
                const auto source =
                    jet::Database::OpenFile(std::make_unique<EndingFile>(bytes, reads), "a.mdb",
                                            {.password = {}, .checkPassword = true, .tolerant = true});
                jet::CompactInto(
                    *source, [] { return std::make_unique<MemoryFile>(); }, "new.mdb", kAnyPassword);
            };
            const std::int32_t error = ErrorOf(compact);
            if (reads >= 0) {  // there were no more of them
                EXPECT_GT(n, 30);
                break;
            }
            ASSERT_EQ(error, errors::kReadFault) << n;
        }
    }
}

}  // namespace
}  // namespace tavrel::testing
