// A database and its journal in memory, and a program that is killed, torn or refused at any write of them.
#pragma once

#include <algorithm>
#include <optional>

#include "jet/storage/Journal.h"

namespace tavrel::jet {

struct Killed {};

/// Two files, and a number of writes after which the program is no more.
struct Disk {
    ByteVector database;
    std::optional<ByteVector> journal;
    int writesLeft = 1 << 30;
    bool tear = false;  ///< the last write reaches the disk in half
    int failures = 0;   ///< so many writes of the database fail with a full disk, from `failFrom` on
    int failFrom = 1 << 30;

    void CountWrite() {
        if (writesLeft-- <= 0) {
            throw Killed();
        }
    }
};

class DiskFile : public platform::File {
  public:
    DiskFile(Disk& disk, bool journal) : disk_(disk), journal_(journal) {}

    std::uint64_t Size() override { return Bytes().size(); }
    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        std::ranges::copy(Slice(Bytes(), offset, out.size()), out.begin());
    }
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        if (!journal_ && disk_.failFrom-- <= 0 && disk_.failures-- > 0) {
            throw MakeError(errors::kDiskFull);
        }
        const bool last = disk_.writesLeft == 0;
        if (last && disk_.tear) {
            bytes = bytes.first(bytes.size() / 2);
        } else {
            disk_.CountWrite();
        }
        Bytes().resize(std::max<std::size_t>(Bytes().size(), offset + bytes.size()));
        std::ranges::copy(bytes, Bytes().begin() + static_cast<std::ptrdiff_t>(offset));
        if (last && disk_.tear) {
            throw Killed();
        }
    }
    void Truncate(std::uint64_t size) override { Bytes().resize(size); }
    void Sync() override {}

  private:
    ByteVector& Bytes() { return journal_ ? *disk_.journal : disk_.database; }

    Disk& disk_;
    bool journal_;
};

inline JournalFiles FilesOf(Disk& disk) {
    return {.create =
                [&disk] {
                    disk.CountWrite();
                    disk.journal.emplace();
                    return std::make_unique<DiskFile>(disk, true);
                },
            .remove =
                [&disk] {
                    disk.CountWrite();
                    disk.journal.reset();
                }};
}

/// The database as whoever opens it next finds it: a whole journal stands for the pages it holds.
inline std::optional<OldPages> OldPagesOf(Disk& disk) {
    if (!disk.journal) {
        return std::nullopt;
    }
    DiskFile journal(disk, true);
    return ReadJournal(journal);
}

}  // namespace tavrel::jet
