// Property blobs: their layout, the lengths of their values, the columns they name.
#pragma once

#include <vector>

#include "jet/check/CatalogCheck.h"

namespace tavrel::jet::check {

/// `tables`: those among the objects whose definitions could be read.
void CheckProperties(Context& context, const std::vector<CatalogObject>& objects,
                     const std::vector<CheckedTable>& tables);

}  // namespace tavrel::jet::check
