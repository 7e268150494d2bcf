// The pages that every new database begins with:
//
// | page   | content                                                               |
// |--------|-----------------------------------------------------------------------|
// | 0      | header                                                                |
// | 1      | global maps: row 0 free pages, row 1 pages being freed (empty)        |
// | 2..5   | definitions of MSysObjects, MSysACEs, MSysQueries, MSysRelationships  |
// | 6      | 31 usage-map rows, those of the four tables                           |
// | 7..13  | their index roots, empty leaves                                       |
#pragma once

#include "jet/storage/FileHeader.h"
#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

/// Lays out the pages above in an empty file; `header.ownerKey` is set.  The tables hold no rows yet.
void LayOutNewDatabase(Pager& pager, PageAllocator& allocator, FileHeader& header);

/// The ANSI code page that goes with a sort order; throws 3990 for a sort order whose weights are not known.
std::uint16_t CodePageOf(std::uint16_t sortOrder);

}  // namespace tavrel::jet
