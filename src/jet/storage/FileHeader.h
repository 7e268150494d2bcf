// Page 0.
//
// | offset | size | content                                                     |
// |--------|------|-------------------------------------------------------------|
// | 00     | 4    | 00 01 00 00                                                 |
// | 04     | 16   | "Standard Jet DB" 00                                        |
// | 14     | u32  | 1 = Jet 4 (0 = Jet 3; an ACE file has another text at 04)   |
// | 18     | 128  | RC4-enciphered under C7 DA 39 6B:                           |
// |   18   | 24   | pointers of the global maps, pages of the engine's tables   |
// |   3C   | u16  | ANSI code page                                              |
// |   3E   | u32  | page encryption key, 0 = plain                              |
// |   42   | 40   | password, UTF-16LE, masked with trunc(creation date)        |
// |   6A   | u32  | build of the engine that made the file                      |
// |   6E   | u16  | default sort order (LCID)                                   |
// |   70   | u16  | sort order version, 0                                       |
// |   72   | f64  | creation date, days since 1899-12-30                        |
// | 98     | u32  | 0x654                                                       |
// | 9C     | 4    | "4.0" 00                                                    |
// | E00    | 512  | 256 commit counters                                         |
#pragma once

#include <string>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

inline constexpr std::uint16_t kSortGeneral = 0x0409;
inline constexpr std::uint16_t kSortKorean = 0x0412;

struct FileHeader {
    std::uint16_t codePage = 1252;
    std::uint32_t pageKey = 0;
    std::string password;  ///< UTF-8; empty = none; at most 20 UTF-16 units
    std::uint32_t build = 8618;
    std::uint16_t sortOrder = kSortGeneral;
    double created = 0;          ///< days since 1899-12-30
    std::uint32_t ownerKey = 0;  ///< RC4 key of Owner and SID values; follows from the other fields
    bool constantsRight = true;  ///< the fields that are equal in every file have their values
};

/// Reads page 0.  Throws 3343 (no database, or made by a newer engine), 3041 (older engine), 3049 (too
/// short).
FileHeader ParseHeader(ByteView page, std::string_view path);

/// The page for a new file; `ownerKey` of the argument is set to the key that follows from it.
void BuildHeader(FileHeader& header, Page& page);

}  // namespace tavrel::jet
