#include "jet/engine/compact/Compact.h"

#include "jet/engine/Check.h"
#include "jet/engine/Creation.h"
#include "jet/engine/compact/LockFile.h"
#include "jet/engine/compact/SoundCopy.h"
#include "platform/FileSystem.h"

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

namespace {

/// For nobody else where that is possible.  A file that may not be written is read all the same.
std::unique_ptr<Database> OpenSource(const std::string& path, const CompactOptions& options) {
    const OpenOptions opening{
        .password = options.password, .checkPassword = options.checkPassword, .tolerant = true};
    try {
        return Database::OpenForChanges(path, opening);
    } catch (const Error& error) {
        if (error.Number() != errors::kNoFilePermission) {
            throw;
        }
        return Database::Open(path, opening);
    }
}

std::unique_ptr<platform::File> OpenDestination(const std::string& path) {
    try {
        return platform::OpenFile(path, platform::FileAccess::CreateNew);
    } catch (const Error& error) {
        switch (error.Number()) {
            case errors::kFileExists:
                throw MakeError(errors::kDatabaseExists, {}, path);
            case errors::kPathNotFound:
                throw MakeError(errors::kBadPath, {path});
            case errors::kDiskFull:
                throw MakeError(errors::kNoDiskSpace, {}, path);
            default:
                throw MakeError(errors::kNoFilePermission, {path}, error.Description());
        }
    }
}

}  // namespace

CompactReport CompactDatabase(const std::string& source, const std::string& destination,
                              const CompactOptions& options) {
    if (platform::FileExists(destination)) {
        throw MakeError(errors::kDatabaseExists, {}, destination);
    }
    RequireNobodyHasOpen(source);
    const auto database = OpenSource(source, options);
    std::unique_ptr<platform::File> file = OpenDestination(destination);
    UnfinishedFile unfinished(destination);
    CompactReport report = CompactInto(*database, std::move(file), destination, options);
    unfinished.Keep();
    return report;
}

}  // namespace tavrel::jet
