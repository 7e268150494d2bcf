#include "jet/engine/compact/Compact.h"

#include "jet/engine/Check.h"
#include "jet/engine/Database.h"
#include "jet/engine/compact/SoundCopy.h"

namespace tavrel::jet {

namespace {

using namespace compact;

/// Scratch numbers begin behind anything that the new database can come to.
std::uint64_t ScratchPlace(const Database& source) {
    constexpr std::uint64_t kRoom = std::uint64_t{64} << 20;
    return 2 * source.FileBytes() + kRoom;
}

}  // namespace

CompactReport CompactInto(Database& source, std::unique_ptr<platform::File> destination,
                          const std::string& path, const CompactOptions& options) {
    CompactReport report;
    report.bytesBefore = source.FileBytes();
    const auto in = [&](CompactPhase phase) {
        return [&options, phase](std::uint64_t done, std::uint64_t total) {
            if (options.progress) {
                options.progress(phase, done, total);
            }
        };
    };
    {
        ScratchNumbers numbers(*destination, ScratchPlace(source), kResidentBlocks);
        PageOutput out(*destination, source.Header().pageKey);
        report.tables = CopySound(source, out, numbers, in(CompactPhase::Copying));
    }
    const auto result =
        Database::OpenFile(std::move(destination), path, {.password = {}, .checkPassword = false});
    const CheckReport check = CheckDatabase(*result, in(CompactPhase::Checking));
    for (const Finding& finding : check.findings) {
        if (finding.severity == Finding::Severity::Error) {
            ThrowDamaged(finding.where + ": " + finding.text);
        }
    }
    report.bytesAfter = result->FileBytes();
    return report;
}

CompactReport CompactDatabase(const std::string& source, const std::string& destination,
                              const CompactOptions& options) {
    const auto database = Database::Open(
        source, {.password = options.password, .checkPassword = options.checkPassword, .tolerant = true});
    std::unique_ptr<platform::File> file = platform::OpenFile(destination, platform::FileAccess::CreateNew);
    return CompactInto(*database, std::move(file), destination, options);
}

}  // namespace tavrel::jet
