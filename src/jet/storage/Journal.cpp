#include "jet/storage/Journal.h"

#include <algorithm>

#include "platform/FileSystem.h"

namespace tavrel::jet {

namespace {

constexpr std::array<std::uint8_t, 8> kMagic = {'T', 'V', 'L', 'J', 'R', 'N', 'L', '1'};
constexpr std::size_t kHeaderBytes = 24;
constexpr std::size_t kRecordBytes = 4 + kPageSize;
constexpr std::size_t kBufferBytes = 256 * kRecordBytes;
constexpr std::uint64_t kHashStart = 0xCBF29CE484222325;

/// FNV-1a, eight bytes at a step: it tells a torn file from a whole one, not a forged one.
std::uint64_t Hash(std::uint64_t hash, ByteView bytes) {
    constexpr std::uint64_t kPrime = 0x100000001B3;
    std::size_t at = 0;
    for (; at + 8 <= bytes.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, 8);
        hash = (hash ^ word) * kPrime;
    }
    for (; at < bytes.size(); ++at) {
        hash = (hash ^ bytes[at]) * kPrime;
    }
    return hash;
}

ByteVector Header(PageNumber pageCount, std::uint32_t records, std::uint64_t hash) {
    ByteVector header(kMagic.begin(), kMagic.end());
    AppendU32(header, pageCount);
    AppendU32(header, records);
    AppendU64(header, Hash(hash, header));
    return header;
}

/// The journal holds what the database holds.  Where permissions cannot be set, files have none of their own.
void LetTheSameRead(const std::string& database, const std::string& journal) {
    try {
        platform::CopyPermissions(database, journal);
    } catch (const Error&) {
        return;
    }
}

}  // namespace

std::string JournalPath(const std::string& databasePath) {
    return databasePath + "-journal";
}

JournalFiles JournalFilesFor(const std::string& databasePath) {
    const std::string path = JournalPath(databasePath);
    return {.create =
                [path, databasePath] {
                    platform::DeleteFileIfThere(path);
                    std::unique_ptr<platform::File> file =
                        platform::OpenFile(path, platform::FileAccess::CreateNew);
                    LetTheSameRead(databasePath, path);
                    return file;
                },
            .remove = [path] { platform::DeleteFileIfThere(path); },
            .syncFolder = [path] { platform::SyncFolderOf(path); }};
}

void JournalWriter::Add(PageNumber number, const Page& page) {
    AppendU32(buffer_, number);
    AppendBytes(buffer_, page);
    ++records_;
    if (buffer_.size() >= kBufferBytes) {
        WriteBuffer();
    }
}

void JournalWriter::WriteBuffer() {
    hash_ = Hash(written_ == 0 ? kHashStart : hash_, buffer_);
    file_.WriteAt(kHeaderBytes + written_, buffer_);
    written_ += buffer_.size();
    buffer_.clear();
}

void JournalWriter::Finish() {
    WriteBuffer();
    file_.WriteAt(0, Header(pageCount_, records_, hash_));
}

std::optional<OldPages> ReadJournal(platform::File& file) {
    const std::uint64_t size = file.Size();
    if (size < kHeaderBytes || (size - kHeaderBytes) % kRecordBytes != 0) {
        return std::nullopt;
    }
    ByteVector header(kHeaderBytes);
    file.ReadAt(0, header);
    const std::uint32_t records = U32(header, 12);
    if ((size - kHeaderBytes) / kRecordBytes != records) {
        return std::nullopt;
    }
    OldPages old;
    old.pageCount = U32(header, 8);
    std::uint64_t hash = kHashStart;
    ByteVector chunk;
    for (std::uint64_t at = kHeaderBytes; at < size; at += chunk.size()) {
        chunk.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBufferBytes, size - at)));
        file.ReadAt(at, chunk);
        hash = Hash(hash, chunk);
        for (std::size_t record = 0; record < chunk.size(); record += kRecordBytes) {
            auto page = std::make_shared<Page>();
            std::copy_n(chunk.begin() + static_cast<std::ptrdiff_t>(record + 4), kPageSize, page->begin());
            old.pages.try_emplace(U32(chunk, record), std::move(page));
        }
    }
    if (header != Header(old.pageCount, records, hash)) {
        return std::nullopt;
    }
    return old;
}

void PutBack(const OldPages& old, platform::File& database) {
    for (const auto& [number, page] : old.pages) {
        database.WriteAt(std::uint64_t{number} * kPageSize, *page);
    }
    database.Truncate(std::uint64_t{old.pageCount} * kPageSize);
    database.Sync();
}

}  // namespace tavrel::jet
