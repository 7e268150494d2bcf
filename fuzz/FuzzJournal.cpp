// Takes any bytes as what an unfinished transaction has left, and reads a database back to before it.  The
// first byte tells whether they are the journal as it lies on the disk, or what it says: then its sums are
// made right, without which no change would get further.
//
//   fuzz-journal -max_len=60000 -rss_limit_mb=1024 -timeout=20 FOLDER
#include <cstdlib>
#include <filesystem>

#include "jet/check/Check.h"
#include "jet/database/Database.h"
#include "jet/storage/Journal.h"
#include "platform/FileSystem.h"
#include "support/MemoryFile.h"

using tavrel::Error;
using tavrel::testing::MemoryFile;
namespace jet = tavrel::jet;

namespace {

constexpr jet::PageNumber kMostPages = 100;

const std::vector<std::uint8_t>& EmptyDatabase() {
    static const std::vector<std::uint8_t> bytes = [] {
        const std::string path =
            (std::filesystem::temp_directory_path() / ("fuzz-journal-" + std::to_string(std::rand())))
                .string();
        jet::Database::Create(path)->Flush();
        const auto file = tavrel::platform::OpenFile(path, tavrel::platform::FileAccess::Read);
        std::vector<std::uint8_t> all(static_cast<std::size_t>(file->Size()));
        file->ReadAt(0, all);
        tavrel::platform::DeleteFileIfThere(path);
        return all;
    }();
    return bytes;
}

/// Number of pages, then a page number and the bytes of a page again and again, the last ones cut off.
void WriteJournal(MemoryFile& file, jet::ByteView says) {
    jet::JournalWriter writer(file, says.empty() ? 0 : says[0] % kMostPages);
    for (says = says.subspan(std::min<std::size_t>(1, says.size())); !says.empty();) {
        jet::Page page{};
        const jet::PageNumber number = says[0] % kMostPages;
        says = says.subspan(1);
        const jet::ByteView part = says.first(std::min(says.size(), page.size()));
        std::ranges::copy(part, page.begin());
        writer.Add(number, page);
        says = says.subspan(part.size());
    }
    writer.Finish(false);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const jet::ByteView rest(data + 1, size - 1);
    MemoryFile journal;
    if (data[0] % 2 == 0) {
        journal.WriteAt(0, rest);
    } else {
        WriteJournal(journal, rest);
    }
    try {
        std::optional<jet::OldPages> old = jet::ReadJournal(journal);
        if (!old && data[0] % 2 != 0) {
            std::abort();  // a whole one is taken for a torn one
        }
        const auto database = jet::Database::OpenFile(
            std::make_unique<MemoryFile>(EmptyDatabase()), "memory",
            {.password = {}, .checkPassword = false, .tolerant = true}, std::move(old));
        jet::CheckDatabase(*database);
    } catch (const Error&) {
        // What it was before cannot be read.
    }
    return 0;
}
