// Takes any bytes as a database file and compacts it: an error, or a database that is sound but for what was
// told, with as many rows as the report says.
//
//   fuzz-compact -max_len=300000 -rss_limit_mb=1024 -timeout=20 FOLDER_WITH_DATABASES
#include <cstdlib>

#include "jet/check/Check.h"
#include "jet/compact/Compact.h"
#include "jet/database/Database.h"
#include "support/MemoryFile.h"

using tavrel::Error;
using tavrel::testing::MemoryFile;
namespace jet = tavrel::jet;

namespace {

constexpr jet::OpenOptions Tolerant() {
    return {.password = {}, .checkPassword = false, .tolerant = true};
}

/// Bytes that outlive the file that compaction closes.
class KeptFile : public tavrel::platform::File {
  public:
    explicit KeptFile(MemoryFile& to) : to_(to) {}
    std::uint64_t Size() override { return to_.Size(); }
    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override { to_.ReadAt(offset, out); }
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        to_.WriteAt(offset, bytes);
    }
    void Truncate(std::uint64_t size) override { to_.Truncate(size); }
    void Sync() override {}

  private:
    MemoryFile& to_;
};

std::uint64_t RowsIn(const jet::CompactReport& report) {
    std::uint64_t rows = 0;
    for (const jet::CompactedTable& table : report.tables) {
        rows += table.rowsAfter;
    }
    return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFile result;
    jet::CompactReport report;
    try {
        const auto source = jet::Database::OpenFile(
            std::make_unique<MemoryFile>(std::vector<std::uint8_t>(data, data + size)), "memory", Tolerant());
        const auto make = [&] {
            result.Truncate(0);
            return std::make_unique<KeptFile>(result);
        };
        report =
            jet::CompactInto(*source, make, "new", {.password = {}, .checkPassword = false, .progress = {}});
    } catch (const Error&) {
        return 0;
    }
    const auto database = jet::Database::OpenFile(std::make_unique<KeptFile>(result), "new", Tolerant());
    const jet::CheckReport check = jet::CheckDatabase(*database);
    const bool told = !report.losses.empty();
    if ((check.Count(jet::Finding::Severity::Error) != 0 && !told) ||
        check.counts.at("rows") != RowsIn(report)) {
        std::abort();
    }
    return 0;
}
