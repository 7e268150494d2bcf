// A damaged database gives back what can be read of it, and tells what is lost.
#include <iostream>

#include "CompactBench.h"
#include "jet/check/SampleDatabase.h"
#include "jet/storage/UsageMap.h"
#include "support/Corpus.h"
#include "support/MemoryFile.h"
#include "support/Mutations.h"

namespace tavrel::testing {
namespace {

/// Lines of all rows that the engine's cursor reads, by table; a table ends where reading does.
std::map<std::string, std::multiset<std::string>> ReadableRows(jet::Database& database) {
    std::map<std::string, std::multiset<std::string>> tables;
    for (const jet::CatalogObject& object : database.Catalog().Objects()) {
        if (!object.IsTable() || object.IsSystem()) {
            continue;
        }
        try {
            const jet::TableDefinition& table = database.Catalog().Definition(object.DefinitionPage());
            for (jet::RowCursor cursor(database.Pager(), table, 0); cursor.Next();) {
                std::string line;
                for (const std::size_t place : table.ColumnsInOrder()) {
                    const auto stored = cursor.Stored(place);
                    line += stored ? "|" + std::string(stored->begin(), stored->end()) : "|-";
                }
                tables[object.name].insert(std::move(line));
            }
        } catch (const Error&) {
            continue;
        }
    }
    return tables;
}

std::size_t CountOf(const std::map<std::string, std::multiset<std::string>>& tables) {
    std::size_t rows = 0;
    for (const auto& [name, lines] : tables) {
        rows += lines.size();
    }
    return rows;
}

struct Tally {
    std::size_t before = 0;  ///< rows of the sound database
    std::size_t readable = 0;
    std::size_t after = 0;
    std::size_t refused = 0;
};

/// Compacts one damaged copy in memory.
void CompactDamaged(const FileBytes& bytes, std::size_t soundRows, Tally& tally) {
    const auto open = [](const FileBytes& content) {
        return jet::Database::OpenFile(std::make_unique<MemoryFile>(content), "damaged.mdb",
                                       {.password = {}, .checkPassword = false, .tolerant = true});
    };
    struct Kept : MemoryFile {
        explicit Kept(FileBytes& to) : to_(to) {}
        void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> data) override {
            to_.resize(std::max<std::size_t>(to_.size(), offset + data.size()));
            std::ranges::copy(data, to_.begin() + static_cast<std::ptrdiff_t>(offset));
        }
        std::uint64_t Size() override { return to_.size(); }
        void Truncate(std::uint64_t size) override { to_.resize(size); }
        void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
            if (offset + out.size() > to_.size()) {
                throw MakeError(errors::kDeviceFault);
            }
            std::copy_n(to_.begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
        }
        FileBytes& to_;
    };
    tally.before += soundRows;
    FileBytes result;
    try {
        const auto source = open(bytes);
        std::map<std::string, std::multiset<std::string>> readable;
        try {
            readable = ReadableRows(*source);
        } catch (const Error&) {
            // Not even the catalog.
        }
        const jet::CompactReport report =
            jet::CompactInto(*source,
                             [&] {
                                 result.clear();
                                 return std::make_unique<Kept>(result);
                             },
                             "new.mdb", {.password = {}, .checkPassword = false, .progress = {}});
        const auto after = ReadableRows(*open(result));
        tally.readable += CountOf(readable);
        tally.after += CountOf(after);
        // Rows that could be read and are not there any more have been told, with their table.
        for (const auto& [name, lines] : readable) {
            const auto found = after.find(name);
            std::multiset<std::string> missing = lines;
            for (const std::string& line :
                 found == after.end() ? std::multiset<std::string>() : found->second) {
                if (const auto same = missing.find(line); same != missing.end()) {
                    missing.erase(same);
                }
            }
            const auto told =
                std::ranges::count_if(report.losses, [&, table = name](const jet::CompactLoss& loss) {
                    return loss.where.starts_with("테이블 " + table);
                });
            EXPECT_TRUE(missing.empty() || told > 0) << name << ": " << missing.size() << " rows";
        }
        EXPECT_TRUE(report.losses.empty() || report.repaired);
    } catch (const Error&) {
        ++tally.refused;
    }
}

std::size_t RowsOfSound(const std::string& file) {
    return CountOf(ReadableRows(*OpenAny(file)));
}

FileBytes BytesOf(const std::string& file) {
    const std::string content = ReadWholeFile(file);
    return {content.begin(), content.end()};
}

// ---- single damages

constexpr std::int64_t kSampleRows = 300;

/// Places in a database with one table of kSampleRows rows.
struct Places {
    jet::TableDefinition table;
    std::vector<jet::PageNumber> data, longValues, objects, aces;
};

std::string MakeCustomers(const TemporaryFolder& folder, Places& places) {
    DatabaseBuilder builder(folder.File("a.mdb"));
    builder.Add(
        Table("고객").Counter("번호").Text("이름", 50).Memo("메모").Key({"번호"}).Index("이름순", {"이름"}));
    std::vector<std::vector<jet::Value>> rows;
    for (std::int64_t row = 0; row < kSampleRows; ++row) {
        rows.push_back(
            {jet::Null{}, "이름 " + std::to_string(row % 40), std::string(row == 7 ? 9000 : 500, 'm')});
    }
    builder.Rows("고객", rows);
    const std::string path = builder.Finish();
    const auto database = OpenAny(path);
    const auto pagesOf = [&](jet::RowPointer map) { return jet::ReadUsageMap(database->Pager(), map).pages; };
    places.table = database->Catalog().Definition(database->Catalog().FindTable("고객")->DefinitionPage());
    places.data = pagesOf(places.table.ownedMap);
    places.longValues = pagesOf(places.table.trailer.front().owned);
    places.objects = pagesOf(database->Catalog().Definition(jet::kObjectsPage).ownedMap);
    places.aces = pagesOf(database->Catalog().Definition(jet::kAcesPage).ownedMap);
    return path;
}

struct Damage {
    const char* name;
    std::function<jet::PageNumber(const Places&)> page;  ///< is zeroed
    std::int64_t rowsLost;
    std::int64_t memosLost;
    const char* table = "고객";
    bool told = false;
};

TEST(RepairTest, SingleDamages) {
    const TemporaryFolder folder;
    Places places;
    const FileBytes sound = BytesOf(MakeCustomers(folder, places));
    const auto rowsOn = [&](jet::PageNumber page) {
        return std::int64_t{jet::U16(jet::ByteView(sound).subspan(std::size_t{page} * jet::kPageSize), 12)};
    };
    const jet::PageNumber dataPage = places.data[1];
    const jet::PageNumber memoPage = places.longValues[2];
    const Damage damages[] = {
        {"root of the primary key", [](const Places& p) { return p.table.realIndexes[0].root; }, 0, 0},
        {"root of another index", [](const Places& p) { return p.table.realIndexes[1].root; }, 0, 0},
        {"maps of the table", [](const Places& p) { return p.table.ownedMap.page; }, 0, 0},
        {"maps of the engine's tables", [](const Places&) { return 6; }, 0, 0},
        {"global maps", [](const Places&) { return 1; }, 0, 0},
        {"definition of MSysObjects", [](const Places&) { return 2; }, 0, 0},
        {"definition of MSysACEs", [](const Places&) { return 3; }, 0, 0},
        {"permissions", [](const Places& p) { return p.aces[0]; }, 0, 0, "고객", true},
        {"objects", [](const Places& p) { return p.objects[0]; }, 0, 0, "Recovered1", true},
        {"rows", [&](const Places&) { return dataPage; }, rowsOn(dataPage), 0, "고객", true},
        {"long values", [&](const Places&) { return memoPage; }, 0, rowsOn(memoPage), "고객", true},
    };
    for (const Damage& damage : damages) {
        SCOPED_TRACE(damage.name);
        FileBytes bytes = sound;
        std::fill_n(bytes.begin() + std::ptrdiff_t{damage.page(places)} * std::ptrdiff_t{jet::kPageSize},
                    jet::kPageSize, std::uint8_t{0});
        const std::string path = folder.File("damaged.mdb");
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
        const std::string result = folder.File("repaired.mdb");
        std::filesystem::remove(result);
        const auto report = jet::CompactDatabase(path, result);
        EXPECT_TRUE(report.repaired || !damage.told);
        EXPECT_EQ(!report.losses.empty(), damage.told);
        EXPECT_EQ(FindingsOf(result), "");
        const auto rows = ReadRows(*OpenAny(result), damage.table);
        EXPECT_EQ(std::ssize(rows), kSampleRows - damage.rowsLost);
        EXPECT_EQ(
            std::ranges::count_if(rows, [](const auto& row) { return row[2] == jet::Value(jet::Null{}); }),
            damage.memosLost);
        EXPECT_GE(std::ssize(report.losses), damage.memosLost);
    }
}

// ---- damage and exactly what it costs

using S = SampleDatabase;

std::size_t RelationAt(S& s, const char* column) {
    return s.Value("MSysRelationships", 0, column);
}

/// The slot of the first row of a table gets other marks: 4 moved, 8 hidden, C deleted.
void MarkFirstRow(S& s, const char* table, std::uint8_t marks) {
    s.At(s.DataPage(table) + 0x0F) |= marks;
}

struct RepairCase {
    const char* what;
    void (*damage)(S& sample);
    const char* losses;  ///< a line each
    std::size_t parents = 20;
    std::size_t children = 2000;
};

// clang-format off
constexpr RepairCase kRepairCases[] = {
    {"tail of the relation's row", [](S& s) { std::fill_n(s.bytes.begin() + static_cast<std::ptrdiff_t>(s.RowEnd("MSysRelationships", 0) - 23), 23, std::uint8_t{0xEE}); }, "관계 family: 관계의 행을 잃음\nMSysObjects: 개체 family을(를) 옮길 수 없음\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\n테이블 MSysRelationships 행 60:0: 행의 가변 열 수가 잘못됨\n"},
    {"relation's row renamed", [](S& s) { s.Rename(RelationAt(s, "szRelationship"), "family", "fomily"); }, "관계 fomily: 행과 개체와 두 테이블의 인덱스가 서로 맞지 않음\n관계 family: 관계의 행을 잃음\nMSysObjects: 개체 family을(를) 옮길 수 없음\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysRelationships: 관계 fomily\n"},
    {"relation's object of another kind", [](S& s) { s.At(s.Value("MSysObjects", s.ObjectRow("family"), "Type")) = 9; }, "관계 family: 행과 개체와 두 테이블의 인덱스가 서로 맞지 않음\nMSysRelationships: 관계 family\n"},
    {"relation's column renamed", [](S& s) { s.Rename(RelationAt(s, "szColumn"), "ParentId", "PorentId"); }, "관계 family: 행과 개체와 두 테이블의 인덱스가 서로 맞지 않음\nMSysObjects: 개체 family을(를) 옮길 수 없음\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysRelationships: 관계 family\n"},
    {"partner of an entry", [](S& s) { s.At(s.LogicalRecord("children", "family") + 0x0D) = 99; }, "관계 family: 행과 개체와 두 테이블의 인덱스가 서로 맞지 않음\nMSysObjects: 개체 family을(를) 옮길 수 없음\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysRelationships: 관계 family\n"},
    {"definition of the parents", [](S& s) { s.At(s.Definition("parents")) = 8; }, "테이블 parents 정의: 페이지 16이(가) 테이블 정의가 아님\n테이블 parents: 테이블을 잃음 (남아 있는 행 20개)\n관계 family: 행과 개체와 두 테이블의 인덱스가 서로 맞지 않음\nMSysObjects: 개체 family을(를) 옮길 수 없음\nMSysACEs: 없는 개체 16의 행\nMSysACEs: 없는 개체 16의 행\nMSysACEs: 없는 개체 16의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysRelationships: 관계 family\n", 0},
    {"row deleted", [](S& s) { MarkFirstRow(s, "parents", 0xC0); }, "테이블 parents: 정의에 적힌 행 20개 중 19개만 있음\n", 19},
    {"row hidden", [](S& s) { MarkFirstRow(s, "parents", 0x80); }, ""},
    {"row points nowhere", [](S& s) { MarkFirstRow(s, "parents", 0x40); }, "테이블 parents 행 24:0: 옮겨진 행이 없음\n", 19},
    {"root of a key", [](S& s) { s.At(s.Leaf("parents", "PrimaryKey")) = 1; }, ""},
    {"key used twice", [](S& s) { s.At(s.Value("parents", 1, "Id")) = 1; }, "테이블 parents 행 24:1: 고유 인덱스에 같은 키의 행이 이미 있음\n", 19},
    {"required value null", [](S& s) { s.At(s.RowEnd("children", 5) - 1) &= 0xFE; }, "테이블 children 행 33:5: 필수 인덱스의 값을 읽을 수 없음\n", 20, 1999},
    {"length of a memo", [](S& s) { s.At(s.Value("children", 1, "Memo")) ^= 2; }, "테이블 children 행 33:1 필드 Memo: 긴 값의 길이가 저장된 것과 다름\n"},
    {"chain of a memo in a circle", [](S& s) { const auto at = jet::RowPointer::FromU32(s.Get(s.Value("children", 0, "Memo") + 4, 4)); s.Put(s.Target(at), 4, at.ToU32()); }, "테이블 children 행 33:0 필드 Memo: 긴 값의 사슬이 되돌아옴\n"},
    {"columns of a row", [](S& s) { s.At(s.Row("children", 5)) = 77; }, "테이블 children 행 33:5: 행의 가변 열 수가 잘못됨\n", 20, 1999},
    {"map names a page behind the end", [](S& s) { s.MapBit(s.DefinitionOf("parents").ownedMap, 500, true); }, "테이블 parents: 파일 끝 뒤의 페이지 1개와 그 행을 잃음\n"},
    {"name of an index twice", [](S& s) { s.Rename(s.Definition("children"), "family", "PRIMAR"); }, "관계 family: 행과 개체와 두 테이블의 인덱스가 서로 맞지 않음\n테이블 children: 관계 PRIMAR의 다른 쪽이 없음\nMSysObjects: 개체 family을(를) 옮길 수 없음\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysACEs: 없는 개체 -2147483648의 행\nMSysRelationships: 관계 family\n"},
};
// clang-format on

class RepairCases : public ::testing::TestWithParam<RepairCase> {};

TEST_P(RepairCases, LosesExactly) {
    const RepairCase& it = GetParam();
    const TemporaryFolder folder;
    SampleDatabase sample;
    it.damage(sample);
    ASSERT_NE(sample.bytes, SampleDatabase::Sound());
    WriteFile(folder.File("a.mdb"), sample.bytes);
    const std::string result = folder.File("b.mdb");
    const auto report = jet::CompactDatabase(folder.File("a.mdb"), result);
    EXPECT_TRUE(report.repaired);
    std::string losses;
    for (const jet::CompactLoss& loss : report.losses) {
        losses += loss.where + ": " + loss.text + "\n";
    }
    EXPECT_EQ(losses, it.losses);
    EXPECT_EQ(FindingsOf(result), "");
    const auto database = OpenAny(result);
    const auto rowsOf = [&](const char* table) {
        return database->Catalog().FindTable(table) == nullptr ? 0 : ReadRows(*database, table).size();
    };
    EXPECT_EQ(rowsOf("parents"), it.parents);
    EXPECT_EQ(rowsOf("children"), it.children);
}

INSTANTIATE_TEST_SUITE_P(Cases, RepairCases, ::testing::ValuesIn(kRepairCases), [](const auto& info) {
    std::string name = info.param.what;
    std::ranges::replace_if(
        name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return name;
});

/// Whatever page the file ends at, it is refused, or what lay behind is told.
TEST(RepairTest, CutOff) {
    const TemporaryFolder folder;
    Places places;
    const FileBytes sound = BytesOf(MakeCustomers(folder, places));
    for (std::size_t length = jet::kPageSize; length < sound.size(); length += jet::kPageSize) {
        SCOPED_TRACE(length);
        const std::string path = folder.File("cut.mdb");
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(sound.data()), static_cast<std::streamsize>(length));
        const std::string result = folder.File("repaired.mdb");
        std::filesystem::remove(result);
        try {
            EXPECT_FALSE(jet::CompactDatabase(path, result).losses.empty());
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), errors::kDamaged);
        }
    }
}

TEST(RepairTest, DamagedSamples) {
    TAVREL_NEEDS_CORPUS();
    Tally tally;
    std::uint32_t seed = 1;
    for (const char* name : {"wedding-ko", "coal-washing-1", "motel", "course-2", "jet-station-tr"}) {
        const std::string file = SharedFolder() + "/corpus/" + name + ".mdb";
        const FileBytes sound = BytesOf(file);
        const std::size_t rows = RowsOfSound(file);
        for (int copy = 0; copy < 100; ++copy, ++seed) {
            FileBytes damaged = sound;
            const std::string done = Mutator(seed).Mutate(damaged);
            SCOPED_TRACE(std::string(name) + " seed " + std::to_string(seed) + ": " + done);
            CompactDamaged(damaged, rows, tally);
        }
    }
    std::cout << "rows: " << tally.before << " in sound copies, " << tally.readable << " readable, "
              << tally.after << " recovered; " << tally.refused << " files of 500 refused\n";
    EXPECT_GE(tally.after, tally.readable);
    EXPECT_GE(tally.after * 100, tally.before * 70);
    EXPECT_LT(tally.refused, 60U);  // most of them cut off before any row
}

}  // namespace
}  // namespace tavrel::testing
