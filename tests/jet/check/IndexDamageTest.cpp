// Damage to index pages and entries.
#include "jet/check/DamageTest.h"

namespace tavrel::testing {
namespace {

using S = SampleDatabase;

constexpr const char* kKey = "PrimaryKey";
constexpr std::size_t kEntries = jet::kIndexEntries;
constexpr std::size_t kEntryBytes = 9;  // of a Long key in a leaf
constexpr std::size_t kParents = 20;    // of the parents

/// Of the leaf of the parents' primary key, the only page of its tree.
std::size_t Leaf(S& s) {
    return s.Leaf("parents", kKey);
}

void RemoveLastEntry(S& s) {
    constexpr std::size_t kUsed = kEntryBytes * kParents;
    s.At(Leaf(s) + 0x1B + kUsed / 8) &= static_cast<std::uint8_t>(~(1U << kUsed % 8));
    s.Put(Leaf(s) + 2, 2, s.Get(Leaf(s) + 2, 2) + kEntryBytes);
}

void SwapEntries(S& s) {
    const auto first = s.bytes.begin() + static_cast<std::ptrdiff_t>(Leaf(s) + kEntries);
    std::swap_ranges(first, first + kEntryBytes, first + kEntryBytes);
}

/// The key of the second entry becomes that of the first.
void RepeatKey(S& s) {
    s.At(Leaf(s) + kEntries + kEntryBytes + 4) = s.At(Leaf(s) + kEntries + 4);
}

void RepeatEntry(S& s) {
    const auto first = s.bytes.begin() + static_cast<std::ptrdiff_t>(Leaf(s) + kEntries);
    std::copy(first, first + kEntryBytes, first + kEntryBytes);
}

/// The last leaf goes one level down: a node without entries takes its place.
void LowerLastLeaf(S& s) {
    const jet::PageNumber last = s.Get(s.Root("children", kKey) + 0x14, 4);
    const jet::PageNumber lowered = s.AddPage();
    const auto page = s.bytes.begin() + static_cast<std::ptrdiff_t>(S::Page(last));
    std::copy_n(page, jet::kPageSize, s.bytes.begin() + static_cast<std::ptrdiff_t>(S::Page(lowered)));
    std::fill(page + 0x0C, page + jet::kPageSize, std::uint8_t{0});
    s.At(S::Page(last)) = jet::kPageTypeNode;
    s.Put(S::Page(last) + 2, 2, jet::kPageSize - kEntries);
    s.Put(S::Page(last) + 0x14, 4, lowered);
}

jet::PageNumber RootPage(S& s, const std::string& table) {
    return s.Real(table, kKey).root;
}

// clang-format off
constexpr DamageCase kIndexCases[] = {
    {"index-unreadable", "root is no index page", [](S& s) { s.At(Leaf(s)) = 1; }},
    {"index-unreadable", "root outside the file", [](S& s) { s.Put(s.RealRecord("parents", 0) + 0x26, 4, 5000); }},
    {"index-unreadable", "two trees share a page", [](S& s) { s.Put(s.RealRecord("parents", 0) + 0x26, 4, s.Get(s.RealRecord("parents", 1) + 0x26, 4)); }},
    {"index-unreadable", "child is the root", [](S& s) { s.Put(s.Root("children", kKey) + 0x14, 4, RootPage(s, "children")); }},
    {"index-page-owner", "", [](S& s) { s.At(Leaf(s) + 4) ^= 1; }},
    {"index-page-free", "", [](S& s) { s.At(Leaf(s) + 2) ^= 1; }},
    {"index-page-reserved", "", [](S& s) { s.At(Leaf(s) + 8) = 1; }},
    {"index-tail", "of a leaf", [](S& s) { s.At(Leaf(s) + 0x14) = 3; }},
    {"index-tail", "none in a node", [](S& s) { s.Put(s.Root("children", kKey) + 0x14, 4, 0); }},
    {"index-level", "leaf", [](S& s) { s.At(Leaf(s) + 0x1A) = 1; }},
    {"index-level", "root", [](S& s) { s.At(s.Root("children", kKey) + 0x1A) = 2; }},
    {"index-node-links", "", [](S& s) { s.Put(s.Root("children", kKey) + 0x10, 4, 2); }},
    {"index-leaf-links", "next", [](S& s) { s.Put(s.Leaf("children", kKey) + 0x10, 4, 0); }},
    {"index-leaf-links", "previous", [](S& s) { s.At(s.Leaf("children", kKey, 1) + 0x0C) ^= 1; }},
    {"index-leaf-links", "behind the last", [](S& s) { s.At(Leaf(s) + 0x10) = 5; }},
    {"index-range", "bound", [](S& s) { s.At(s.Root("children", kKey) + kEntries + 3) = 0; }},
    {"index-map", "page missing in the map", [](S& s) { s.MapBit(s.Real("parents", kKey).map, RootPage(s, "parents"), false); }},
    {"index-depth", "", LowerLastLeaf},
    {"index-order", "", SwapEntries},
    {"entry-without-row", "", [](S& s) { s.At(Leaf(s) + kEntries + 8) = 200; }},
    {"row-without-entry", "", RemoveLastEntry},
    {"row-two-entries", "", RepeatEntry},
    {"duplicate-key", "", RepeatKey},
    {"key-differs", "a number", [](S& s) { s.At(Leaf(s) + kEntries + 4) = 0; }},
    {"key-differs", "a text", [](S& s) { s.At(s.Leaf("parents", "ByName") + kEntries + 2) ^= 1; }},
    {"key-differs", "the value changed", [](S& s) { s.At(s.Value("children", 7, "ParentId")) ^= 1; }},
};
// clang-format on

TAVREL_DAMAGE_TESTS(IndexDamage, kIndexCases);

}  // namespace
}  // namespace tavrel::testing
