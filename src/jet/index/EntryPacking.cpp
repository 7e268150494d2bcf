#include "jet/index/EntryPacking.h"

#include <algorithm>

#include "jet/index/IndexPage.h"

namespace tavrel::jet {

ByteVector LeafEntry(ByteView key, RowPointer row) {
    ByteVector entry;
    entry.reserve(key.size() + 4);
    AppendBytes(entry, key);
    AppendU24Be(entry, row.page);
    AppendU8(entry, row.row);
    return entry;
}

ByteVector NodeEntry(ByteView bound, PageNumber child) {
    ByteVector entry(bound.begin(), bound.end());
    AppendU32Be(entry, child);
    return entry;
}

std::vector<ByteView> EntryList::Views() const {
    std::vector<ByteView> views;
    views.reserve(ends_.size() + 1);
    std::size_t begin = 0;
    for (const std::size_t end : ends_) {
        views.push_back(ByteView(bytes_).subspan(begin, end - begin));
        begin = end;
    }
    return views;
}

std::size_t PackedSize(Entries entries, std::size_t prefix) {
    std::size_t size = 0;
    for (const ByteView entry : entries) {
        size += entry.size() - prefix;
    }
    return entries.empty() ? 0 : size + prefix;
}

std::size_t CommonPrefix(Entries entries) {
    if (entries.empty()) {
        return 0;
    }
    // The list is sorted: what the first and the last share, all share.
    const ByteView first = entries.front();
    const ByteView last = entries.back();
    constexpr std::size_t kRowBytes = 4;
    const std::size_t most = std::min(first.size(), last.size()) - kRowBytes;
    std::size_t length = 0;
    while (length < most && first[length] == last[length]) {
        ++length;
    }
    return length;
}

std::optional<std::size_t> FittingPrefix(Entries entries) {
    if (PackedSize(entries, 0) <= kIndexRoom) {
        return 0;
    }
    const std::size_t prefix = CommonPrefix(entries);
    return PackedSize(entries, prefix) <= kIndexRoom ? std::optional(prefix) : std::nullopt;
}

namespace {

/// As many of the entries from `from` on as fit a leaf.
std::size_t LongestRun(Entries entries, std::size_t from) {
    std::size_t to = from + 1;
    while (to < entries.size() && FittingPrefix(Part(entries, from, to + 1))) {
        ++to;
    }
    return to;
}

}  // namespace

std::vector<std::size_t> LeafParts(Entries entries, bool appended) {
    std::size_t middle = entries.size() - 1;
    if (!appended) {
        const std::size_t half = PackedSize(entries, 0) / 2;
        std::size_t size = 0;
        for (middle = 0; middle + 1 < entries.size() && size < half; ++middle) {
            size += entries[middle].size();
        }
    }
    if (FittingPrefix(Part(entries, 0, middle)) && FittingPrefix(Part(entries, middle, entries.size()))) {
        return {middle, entries.size()};
    }
    std::vector<std::size_t> ends;
    for (std::size_t done = 0; done < entries.size(); done = ends.back()) {
        ends.push_back(LongestRun(entries, done));
    }
    return ends;
}

std::size_t NodeSeparator(Entries entries, bool appended) {
    const std::size_t total = PackedSize(entries, 0);
    std::size_t best = 0;
    std::size_t bestSize = total + 1;
    std::size_t left = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::size_t right = total - left - entries[i].size();
        const bool leavesSome = i > 0 && i + 1 < entries.size();
        const bool fits = left <= kIndexRoom && right <= kIndexRoom;
        const std::size_t larger = appended && leavesSome ? right : std::max(left, right);
        if (fits && (leavesSome || entries.size() < 3) && larger < bestSize) {
            best = i;
            bestSize = larger;
        }
        left += entries[i].size();
    }
    return best;
}

}  // namespace tavrel::jet
