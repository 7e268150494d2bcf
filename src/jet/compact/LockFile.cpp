#include "jet/compact/LockFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "jet/storage/Bytes.h"
#include "platform/File.h"
#include "platform/FileSystem.h"
#include "text/Case.h"

namespace tavrel::jet::compact {

namespace {

constexpr std::string_view kExtension = ".ldb";
/// A record of the lock file: name of the computer, name of the user, each padded with zeros.
constexpr std::size_t kNameBytes = 32;

std::string LockPath(const std::string& database) {
    const std::size_t dot = database.size() - std::min(database.size(), kExtension.size());
    const bool hasExtension = text::Lower(database.substr(dot)) == ".mdb";
    return database.substr(0, hasExtension ? dot : database.size()).append(kExtension);
}

std::string NameAt(ByteView record, std::size_t offset) {
    const ByteView name = record.subspan(offset, kNameBytes);
    const auto end = std::ranges::find(name, std::uint8_t{0});
    std::string text(name.begin(), end);
    const bool readable = std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
    return readable ? text : std::string();
}

/// Whoever holds the file does not keep others from reading it; what cannot be read is zero.
ByteVector FirstRecord(const std::string& path) {
    ByteVector record(2 * kNameBytes, 0);
    std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
    file.read(reinterpret_cast<char*>(record.data()), std::ssize(record));
    return record;
}

}  // namespace

void RequireNobodyHasOpen(const std::string& database) {
    constexpr std::int32_t kOpenElsewhere = 3704;
    const std::string path = LockPath(database);
    if (!platform::FileExists(path)) {
        return;
    }
    try {
        platform::OpenFile(path, platform::FileAccess::ReadWrite);
        return;
    } catch (const platform::FileInUse&) {
        // Somebody holds it.
    } catch (const Error&) {
        return;  // not to be opened for other reasons, which tell nothing of the database
    }
    const ByteVector record = FirstRecord(path);
    throw MakeError(kOpenElsewhere, {NameAt(record, kNameBytes), NameAt(record, 0)}, path);
}

}  // namespace tavrel::jet::compact
