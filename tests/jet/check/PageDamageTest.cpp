// Damage to the header, usage maps, data pages and long values.
#include "jet/check/DamageTest.h"

namespace tavrel::testing {
namespace {

using S = SampleDatabase;
constexpr jet::RowPointer kFree{1, 0};
constexpr jet::RowPointer kPending{1, 1};

/// Of the descriptor of a child's memo: row 0 a chain, 1 a row of its own, 2 in the row.
std::size_t Memo(S& s, std::size_t row) {
    return s.Value("children", row, "Memo");
}
jet::RowPointer MemoStart(S& s, std::size_t row) {
    return jet::RowPointer::FromU32(s.Get(Memo(s, row) + 4, 4));
}
jet::PageNumber PageCount(S& s) {
    return static_cast<jet::PageNumber>(s.bytes.size() / jet::kPageSize);
}

/// The free map is cut to no pages at all.
void CutFreeMap(S& s) {
    s.Put(S::SlotOf(kFree), 2, 0xFFB);
    s.Put(S::Page(1) + 0xFFB, 4, 0);
    s.At(S::Page(1) + 0xFFF) = 0;
}

void EmptyPage(S& s) {
    const std::size_t page = s.DataPage("parents");
    s.Put(page + 0x0C, 2, 0);
    s.Put(page + 2, 2, jet::kPageSize - jet::kDataHeader);
    s.MapBit(s.DefinitionOf("parents").freeMap, static_cast<jet::PageNumber>(page / jet::kPageSize), false);
}

// clang-format off
void LeakMapPage(S& s) {
    s.Put(S::Page(s.AddPage()), 2, 0x0101);
}

std::size_t Picture(S& s, std::size_t row) {
    return s.Value("children", row, "Picture");
}

/// The last page of a chain gets a second slot, of a deleted row.
void AddRowToChain(S& s) {
    auto at = jet::RowPointer::FromU32(s.Get(Picture(s, 0) + 4, 4));
    while (const std::uint32_t next = s.Get(s.Target(at), 4)) {
        at = jet::RowPointer::FromU32(next);
    }
    const std::size_t page = S::Page(at.page);
    s.Put(page + 0x0C, 2, 2);
    s.Put(page + 0x10, 2, s.Get(page + 0x0E, 2) | 0xC000);
    s.Put(page + 2, 2, s.Get(page + 2, 2) - 2);
}

/// A value of 200 bytes outside the row becomes one of 64.
void ShortenPicture(S& s) {
    constexpr std::uint32_t kShorter = 200 - 64;
    const auto at = jet::RowPointer::FromU32(s.Get(Picture(s, 1) + 4, 4));
    s.At(Picture(s, 1)) -= kShorter;
    s.Put(S::SlotOf(at), 2, s.Get(S::SlotOf(at), 2) + kShorter);
    s.Put(S::Page(at.page) + 2, 2, s.Get(S::Page(at.page) + 2, 2) + kShorter);
}

constexpr DamageCase kPageCases[] = {
    {"header-constants", "engine mark", [](S& s) { s.At(0x98) ^= 1; }},
    {"header-constants", "catalog page", [](S& s) { s.At(0x20) ^= 8; }},
    {"file-length", "a part of a page more", [](S& s) { s.bytes.resize(s.bytes.size() + 100); }},
    {"unreadable", "no definition of objects", [](S& s) { s.At(S::Page(2)) = 8; }},
    {"unreadable", "truncated", [](S& s) { s.bytes.resize(S::Page(6)); }},

    {"map-unreadable", "type", [](S& s) { s.At(s.Target(s.DefinitionOf("parents").ownedMap)) = 7; }},
    {"map-unreadable", "pointer", [](S& s) { s.Put(s.Definition("parents") + 0x37, 4, 0x900); }},
    {"map-row-flags", "moved", [](S& s) { s.At(S::SlotOf(s.DefinitionOf("parents").ownedMap) + 1) |= 0x40; }},
    {"map-row-shared", "free map is the owned map", [](S& s) { s.Put(s.Definition("parents") + 0x3B, 4, s.DefinitionOf("parents").ownedMap.ToU32()); }},
    {"map-row-unused", "free map is the owned map", [](S& s) { s.Put(s.Definition("parents") + 0x3B, 4, s.DefinitionOf("parents").ownedMap.ToU32()); }},
    {"map-page-owner", "", [](S& s) { s.At(S::Page(s.DefinitionOf("parents").ownedMap.page) + 4) = 7; }},
    {"map-outside-file", "", [](S& s) { s.MapBit(s.DefinitionOf("parents").ownedMap, 500, true); }},
    {"page-owned-twice", "engine page", [](S& s) { s.MapBit(s.DefinitionOf("parents").ownedMap, 3, true); }},
    {"leaked-page", "owned bit lost", [](S& s) { s.MapBit(s.DefinitionOf("parents").ownedMap, static_cast<jet::PageNumber>(s.DataPage("parents") / jet::kPageSize), false); }},
    {"leaked-page", "behind the last page", [](S& s) { s.MapBit(kFree, PageCount(s), false); s.bytes.resize(s.bytes.size() + jet::kPageSize); }},
    {"leaked-map-page", "", LeakMapPage},
    {"free-space-not-owned", "", [](S& s) { s.MapBit(s.DefinitionOf("parents").freeMap, 3, true); }},
    {"empty-page-not-free", "", EmptyPage},
    {"page-used-and-free", "", [](S& s) { s.MapBit(kFree, 2, true); }},
    {"page-used-and-pending", "", [](S& s) { s.MapBit(kPending, 2, true); }},
    {"free-map-tail", "", [](S& s) { s.MapBit(kFree, PageCount(s) + 3, false); }},
    {"free-map-short", "", CutFreeMap},

    {"data-page-type", "", [](S& s) { s.At(s.DataPage("parents")) = 9; }},
    {"data-page-owner", "", [](S& s) { s.At(s.DataPage("parents") + 4) ^= 1; }},
    {"data-page-reserved", "", [](S& s) { s.At(s.DataPage("parents") + 8) = 1; }},
    {"data-page-slots", "", [](S& s) { s.Put(s.DataPage("parents") + 0x0C, 2, 300); }},
    {"data-page-free", "", [](S& s) { s.At(s.DataPage("parents") + 2) ^= 1; }},
    {"slot-start", "ascends", [](S& s) { s.Put(s.DataPage("parents") + 0x10, 2, 0x0FFF); }},
    {"slot-start", "in the row table", [](S& s) { s.Put(s.DataPage("parents") + 0x10, 2, 3); }},
    {"slot-flags", "", [](S& s) { s.At(s.DataPage("parents") + 0x0F) |= 0x20; }},
    {"slot-empty", "", [](S& s) { s.Put(s.DataPage("parents") + 0x10, 2, s.Get(s.DataPage("parents") + 0x0E, 2)); }},

    {"long-value-page", "", [](S& s) { s.At(S::Page(MemoStart(s, 1).page) + 4) ^= 1; }},
    {"long-chain-mark", "descriptor", [](S& s) { s.At(Memo(s, 0) + 8) ^= 1; }},
    {"long-chain-mark", "page", [](S& s) { s.At(S::Page(MemoStart(s, 0).page) + 8) ^= 1; }},
    {"long-length", "too short", [](S& s) { s.At(Memo(s, 1)) ^= 2; }},
    {"long-length", "chain cut", [](S& s) { s.Put(s.Target(MemoStart(s, 0)), 4, 0); }},
    {"long-use", "chain cut", [](S& s) { s.Put(s.Target(MemoStart(s, 0)), 4, 0); }},
    {"long-chain-rows", "", AddRowToChain},
    {"long-place", "", ShortenPicture},
    {"long-use", "circle", [](S& s) { s.Put(s.Target(MemoStart(s, 0)), 4, MemoStart(s, 0).ToU32()); }},
    {"long-use", "shared", [](S& s) { s.Put(Memo(s, 1) + 4, 4, MemoStart(s, 0).ToU32()); }},
    {"long-outside-map", "", [](S& s) { s.Put(Memo(s, 1) + 4, 4, 0x200); }},
    {"long-row", "missing", [](S& s) { s.At(Memo(s, 1) + 4) = 9; }},
    {"long-row", "deleted", [](S& s) { s.At(S::SlotOf(MemoStart(s, 1)) + 1) |= 0xC0; }},
    {"long-descriptor", "kind", [](S& s) { s.At(Memo(s, 1) + 3) = 0xC0; }},
    {"long-descriptor", "length in the row", [](S& s) { s.At(Memo(s, 2)) ^= 1; }},
    {"long-descriptor", "mark of one row", [](S& s) { s.At(Memo(s, 1) + 8) = 1; }},
    {"text-compression", "memo chain", [](S& s) { s.Put(s.Target(MemoStart(s, 0)) + 4, 2, 0xFEFF); }},
};
// clang-format on

TAVREL_DAMAGE_TESTS(PageDamage, kPageCases);

}  // namespace
}  // namespace tavrel::testing
