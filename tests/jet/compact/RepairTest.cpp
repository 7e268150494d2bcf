// A damaged database gives back what can be read of it, and tells what is lost.
#include <iostream>

#include "CompactBench.h"
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
