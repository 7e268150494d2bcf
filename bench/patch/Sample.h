// The rows that the migration finds.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace tavrel::bench {

/// Hands over the INSERT statements, in an order in which every foreign key finds its parent: `sales` rows of
/// sale and a fifth as many of customer (at least one), with a few of what those refer to.
void FillTables(std::uint64_t sales, const std::function<void(const std::string&)>& execute);

}  // namespace tavrel::bench
