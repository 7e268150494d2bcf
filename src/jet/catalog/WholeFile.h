// Whether the end of a file is there: a copy that was cut off may still be read in part, and must not grow.
#pragma once

#include "jet/catalog/Catalog.h"

namespace tavrel::jet {

/// Throws 3428 when the definition of a table, or a map of one, names a page behind the end of the file: were
/// the file to grow, empty pages would stand for what is lost.  Pages that the free map alone calls taken are
/// no loss: programs take them in groups and may end before they write them.
void RequireWholeFile(Pager& pager, Catalog& catalog);

}  // namespace tavrel::jet
