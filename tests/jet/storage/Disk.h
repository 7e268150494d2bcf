// A database and its journal in memory, and a program that is killed, torn or refused at any call it makes to
// them.
#pragma once

#include <algorithm>
#include <optional>

#include "jet/storage/Journal.h"

namespace tavrel::jet {

struct Killed {};

/// What a program asks of the disk.
enum class DiskCall { Size, Read, Write, Resize, Sync, Make, Remove, SyncFolder };

/// One that has changed something, or made sure of it.
struct DiskStep {
    DiskCall call{};
    bool journal = false;
    std::uint64_t at = 0;  ///< offset, or the new size
    ByteVector bytes;
};

/// Two files in a folder.
struct Disk {
    static constexpr int kNever = 1 << 30;

    ByteVector database;
    std::optional<ByteVector> journal;
    int writesLeft = kNever;  ///< after so many calls that change something the program is no more
    bool tear = false;        ///< the last write reaches the disk in half
    int failFrom = kNever;    ///< from this call of any kind on,
    int failures = 0;         ///< so many calls fail, writes after their first half
    bool record = false;
    std::vector<DiskStep> steps;  ///< when they are recorded

    void FailNever() {
        failFrom = kNever;
        failures = 0;
    }
    bool Fails() { return failFrom-- <= 0 && failures-- > 0; }
    void Refuse() {
        if (Fails()) {
            throw MakeError(errors::kDeviceFault);
        }
    }
    void CountWrite() {
        if (writesLeft-- <= 0) {
            throw Killed();
        }
    }
    void Record(DiskCall call, bool ofJournal, std::uint64_t at = 0, ByteView bytes = {}) {
        if (record) {
            steps.push_back({call, ofJournal, at, ByteVector(bytes.begin(), bytes.end())});
        }
    }
};

inline void WriteInto(ByteVector& file, std::uint64_t offset, ByteView bytes) {
    file.resize(std::max<std::size_t>(file.size(), offset + bytes.size()));
    std::ranges::copy(bytes, file.begin() + static_cast<std::ptrdiff_t>(offset));
}

class DiskFile : public platform::File {
  public:
    DiskFile(Disk& disk, bool journal) : disk_(disk), journal_(journal) {}

    std::uint64_t Size() override {
        disk_.Refuse();
        return Bytes().size();
    }
    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        disk_.Refuse();
        std::ranges::copy(Slice(Bytes(), offset, out.size()), out.begin());
    }
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        const bool fails = disk_.Fails();
        const bool torn = disk_.tear && disk_.writesLeft == 0;
        if (!torn) {
            disk_.CountWrite();
        }
        if (torn || fails) {
            bytes = bytes.first(bytes.size() / 2);
        }
        WriteInto(Bytes(), offset, bytes);
        disk_.Record(DiskCall::Write, journal_, offset, bytes);
        if (torn) {
            disk_.CountWrite();
        }
        if (fails) {
            throw MakeError(errors::kDiskFull);
        }
    }
    void Truncate(std::uint64_t size) override {
        disk_.Refuse();
        disk_.CountWrite();
        Bytes().resize(size);
        disk_.Record(DiskCall::Resize, journal_, size);
    }
    void Sync() override {
        disk_.Refuse();
        disk_.Record(DiskCall::Sync, journal_);
    }

  private:
    ByteVector& Bytes() { return journal_ ? *disk_.journal : disk_.database; }

    Disk& disk_;
    bool journal_;
};

inline JournalFiles FilesOf(Disk& disk) {
    const auto remove = [&disk] {
        disk.Refuse();
        disk.CountWrite();
        disk.journal.reset();
        disk.Record(DiskCall::Remove, true);
    };
    const auto create = [&disk, remove] {
        remove();
        disk.Refuse();
        disk.CountWrite();
        disk.journal.emplace();
        disk.Record(DiskCall::Make, true);
        return std::make_unique<DiskFile>(disk, true);
    };
    const auto syncFolder = [&disk] {
        disk.Refuse();
        disk.Record(DiskCall::SyncFolder, true);
    };
    return {.create = create, .remove = remove, .syncFolder = syncFolder};
}

/// The database as whoever opens it next finds it: a whole journal stands for the pages it holds.
inline std::optional<OldPages> OldPagesOf(Disk& disk) {
    if (!disk.journal) {
        return std::nullopt;
    }
    DiskFile journal(disk, true);
    return ReadJournal(journal);
}

/// What the next program does that opens it for changing.
inline void Recover(Disk& disk) {
    const std::optional<OldPages> old = OldPagesOf(disk);
    const JournalFiles files = FilesOf(disk);
    if (old) {
        DiskFile database(disk, false);
        PutBack(*old, database);
    }
    files.remove();
    files.syncFolder();
}

}  // namespace tavrel::jet
