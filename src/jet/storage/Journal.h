// What makes a commit all or nothing when the program is killed: before pages of the database are
// overwritten, their old content is in a file beside it.
//
// | offset | size | content                                                    |
// |--------|------|------------------------------------------------------------|
// | 0      | 8    | "TVLJRNL1"                                                 |
// | 8      | u32  | pages of the database before the transaction               |
// | 12     | u32  | number of records                                          |
// | 16     | u64  | FNV-1a of everything else                                  |
// | 24     |      | records: u32 page number, 4096 bytes as stored in the file |
//
// Rules:
//  1. The journal is whole (and on the medium with its name in the folder, when syncing is asked for) before
//     the first page is overwritten.
//  2. It is removed only after the last page is written (and on the medium).  When syncing is asked for, the
//     transaction is done when the folder no longer names the journal on the medium either.
//  3. Whoever finds a whole journal puts the old pages back, or reads the database as if they were; a journal
//     that is not whole was never followed by a change of the database, and means nothing.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "jet/storage/Bytes.h"
#include "platform/File.h"

namespace tavrel::jet {

/// How the journal's file is made and removed; tests stand in for the disk.
struct JournalFiles {
    std::function<std::unique_ptr<platform::File>()> create;  ///< an older one is removed first
    std::function<void()> remove;                             ///< fine when there is none
    std::function<void()> syncFolder;  ///< what was made or removed stays so when the power fails
};

/// The files for a database on disk: its path with "-journal" behind it.  Only those who may read the
/// database may read the journal.  REQUIRES: no link, see platform::FollowLinks: another name is another
/// journal.
std::string JournalPath(const std::string& databasePath);
JournalFiles JournalFilesFor(const std::string& databasePath);

/// What a whole journal says.
struct OldPages {
    PageNumber pageCount = 0;
    std::unordered_map<PageNumber, std::shared_ptr<Page>> pages;  ///< as stored in the file
};

/// Nothing when the journal is not whole.
std::optional<OldPages> ReadJournal(platform::File& file);

/// Gives the database its old pages again and brings them to the medium.  The journal may go afterwards.
void PutBack(const OldPages& old, platform::File& database);

class JournalWriter {
  public:
    JournalWriter(platform::File& file, PageNumber pageCount) : file_(file), pageCount_(pageCount) {}
    void Add(PageNumber number, const Page& page);
    /// Writes the header, which makes the journal whole; bytes that the medium lacks are found by the hash.
    void Finish();

  private:
    void WriteBuffer();

    platform::File& file_;
    PageNumber pageCount_;
    std::uint32_t records_ = 0;
    std::uint64_t hash_ = 0;
    std::uint64_t written_ = 0;
    ByteVector buffer_;
};

}  // namespace tavrel::jet
