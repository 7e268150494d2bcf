// Which columns stand elsewhere.
#pragma once

#include <cstddef>
#include <vector>

namespace tavrel::details {

/// `places[i]`: where the i-th thing stands in the other order.  The fewest things that would have to be
/// moved to make both orders the same, as indices into `places`, ascending.
std::vector<std::size_t> Moved(const std::vector<std::size_t>& places);

}  // namespace tavrel::details
