// A damaged database gives back what can be read of it, and tells what is lost.
#include <iostream>

#include "CompactBench.h"
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
    EXPECT_LT(tally.refused, 50U);
}

}  // namespace
}  // namespace tavrel::testing
