#include "jet/compact/Compact.h"

#include <algorithm>
#include <optional>

#include "jet/check/Check.h"
#include "jet/compact/DatabaseCopy.h"
#include "jet/compact/LockFile.h"
#include "jet/define/Creation.h"
#include "platform/FileSystem.h"

namespace tavrel::jet {

namespace {

using namespace compact;

/// Scratch numbers begin behind anything that the new database can come to.
std::uint64_t ScratchPlace(const Database& source) {
    constexpr std::uint64_t kRoom = std::uint64_t{64} << 20;
    return 2 * source.FileBytes() + kRoom;
}

std::function<void(std::uint64_t, std::uint64_t)> Progress(const CompactOptions& options,
                                                           CompactPhase phase) {
    return [&options, phase](std::uint64_t done, std::uint64_t total) {
        if (options.progress) {
            options.progress(phase, done, total);
        }
    };
}

/// What the catalog of a damaged database may keep of its faults, told: objects that have lost others. Pages,
/// rows, indexes and long values of the new database must be right whatever the old one was.
bool MayStay(std::string_view code) {
    constexpr std::string_view kCatalogFaults[] = {"object-", "engine-object", "property-", "owner-",
                                                   "ace-",    "query-",        "relation-"};
    return std::ranges::any_of(kCatalogFaults,
                               [&](std::string_view front) { return code.starts_with(front); });
}

/// Checks the new database.  False: another attempt may do better.  Throws when there is none.
bool IsSound(Database& database, CopyResult& copied, bool lastAttempt, const CompactOptions& options) {
    const CheckReport check = CheckDatabase(database, Progress(options, CompactPhase::Checking));
    for (const Finding& finding : check.findings) {
        if (finding.severity == Finding::Severity::Note && finding.code != "row-count") {
            continue;
        }
        if (!lastAttempt && !(copied.repaired && MayStay(finding.code))) {
            return false;
        }
        if (!MayStay(finding.code)) {
            ThrowDamaged(finding.where + ": " + finding.text);
        }
        copied.losses.push_back({finding.where, "남은 문제: " + finding.text});
    }
    return true;
}

/// One attempt; `destination` is empty afterwards when it has failed.
CopyResult Copy(Database& source, platform::File& destination, bool salvageAll,
                const CompactOptions& options) {
    ScratchNumbers numbers(destination, ScratchPlace(source), kResidentBlocks);
    PageOutput out(destination, source.Header().pageKey);
    const CompactPhase phase = salvageAll ? CompactPhase::Repairing : CompactPhase::Copying;
    try {
        return CopyDatabase(source, out, numbers,
                            {.salvageAll = salvageAll, .progress = Progress(options, phase)});
    } catch (const Error& error) {
        if (salvageAll || !IsDamage(error)) {
            throw;
        }
        return {};
    }
}

}  // namespace

CompactReport CompactInto(Database& source, const FileMaker& destination, const std::string& path,
                          const CompactOptions& options) {
    for (const bool salvageAll : {false, true}) {
        std::unique_ptr<platform::File> file = destination();
        CopyResult copied = Copy(source, *file, salvageAll, options);
        if (copied.tables.empty()) {
            continue;
        }
        const auto result =
            Database::OpenFile(std::move(file), path, {.password = {}, .checkPassword = false});
        if (!IsSound(*result, copied, salvageAll, options)) {
            continue;
        }
        return {.repaired = copied.repaired,
                .losses = std::move(copied.losses),
                .tables = std::move(copied.tables),
                .bytesBefore = source.FileBytes(),
                .bytesAfter = result->FileBytes()};
    }
    throw MakeError(errors::kDamaged);
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
    RequireNobodyHasOpen(source);
    const auto database = OpenSource(source, options);
    if (platform::FileExists(destination)) {
        throw MakeError(errors::kDatabaseExists, {}, destination);
    }
    std::optional<UnfinishedFile> unfinished;
    const auto make = [&] {
        unfinished.reset();              // what an attempt before has left
        std::string name = destination;  // before the file is there: without memory nobody would remove it
        std::unique_ptr<platform::File> file = OpenDestination(destination);
        unfinished.emplace(std::move(name));
        return file;
    };
    CompactReport report = CompactInto(*database, make, destination, options);
    unfinished->Keep();
    return report;
}

}  // namespace tavrel::jet
