#include "details/ColumnOrder.h"

#include <algorithm>

namespace tavrel::details {

/// What stays is a longest ascending run of places.
std::vector<std::size_t> Moved(const std::vector<std::size_t>& places) {
    constexpr auto kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> ends;  ///< ends[n]: where the run of n + 1 with the lowest last place ends
    std::vector<std::size_t> before(places.size(), kNone);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto at =
            std::ranges::lower_bound(ends, places[i], {}, [&](std::size_t end) { return places[end]; });
        before[i] = at == ends.begin() ? kNone : *(at - 1);
        if (at == ends.end()) {
            ends.push_back(i);
        } else {
            *at = i;
        }
    }
    std::vector<bool> stays(places.size());
    for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = before[i]) {
        stays[i] = true;
    }
    std::vector<std::size_t> moved;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (!stays[i]) {
            moved.push_back(i);
        }
    }
    return moved;
}

}  // namespace tavrel::details
