// A table definition on its pages.
#pragma once

#include "jet/catalog/TableDefinition.h"
#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

/// Writes a definition to the pages that it has (table.pages), taking further ones when it has outgrown them
/// and giving back those that it no longer needs.  A definition without pages gets its first one at
/// table.page, or a new one when that is 0.
void StoreDefinition(Pager& pager, PageAllocator& allocator, TableDefinition& table);

}  // namespace tavrel::jet
