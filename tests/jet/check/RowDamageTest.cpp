// Damage to definitions and rows.
#include "jet/check/DamageTest.h"

namespace tavrel::testing {
namespace {

using S = SampleDatabase;

// A child's row ends with: end of the values, offsets of values 2, 1, 0 (u16 each), their count (u16), the
// null mask (u8).
constexpr std::size_t kMask = 1;
constexpr std::size_t kCount = 3;
constexpr std::size_t kOffset1 = 7;
constexpr std::size_t kOffset2 = 9;

void ShortMemo(S& s) {
    const std::size_t end = s.RowEnd("children", 0);
    s.Put(end - kOffset2, 2, s.Get(end - kOffset1, 2) + 5);
}

// clang-format off
/// Two names of the same length together as those of the two indexes.
void NameIndexesAlike(S& s) {
    constexpr std::string_view kSame = "SameName";
    std::size_t at = s.FindText(s.Definition("parents"), "ByName") - 2;
    for (int name = 0; name < 2; ++name) {
        s.Put(at, 2, 2 * kSame.size());
        at += 2;
        for (const char c : kSame) {
            s.Put(at, 2, static_cast<std::uint8_t>(c));
            at += 2;
        }
    }
}

void AddColumns(S& s) {
    jet::TableDefinition table = s.DefinitionOf("parents");
    while (table.columns.size() <= jet::kMaxColumns) {
        jet::Column& column = table.columns.emplace_back();
        column.name = "C" + std::to_string(table.columns.size());
        column.type = jet::ColumnType::Boolean;
        column.flags = jet::columnFlags::kFixed;
        column.number = table.columnNumbers++;
        column.length = 1;
    }
    s.PutDefinition(table);
}

void AddIndexes(S& s) {
    constexpr std::size_t kTooMany = 300;
    jet::TableDefinition table = s.DefinitionOf("parents");
    table.realIndexes.resize(kTooMany, table.realIndexes.front());
    s.PutDefinition(table);
}

/// The last row of the page becomes a pointer of two bytes.
void ShortenPointer(S& s) {
    const std::size_t page = s.DataPage("parents");
    const std::size_t slot = page + 0x0E + 2 * (s.Get(page + 0x0C, 2) - 1);
    const std::uint32_t start = s.Get(slot - 2, 2) - 2;
    s.Put(page + 2, 2, s.Get(page + 2, 2) + start - s.Get(slot, 2));
    s.Put(slot, 2, start | 0x4000);
}

constexpr DamageCase kDefinitionCases[] = {
    {"definition-unreadable", "page type", [](S& s) { s.At(s.Definition("parents")) = 8; }},
    {"definition-unreadable", "circle", [](S& s) { s.Put(s.Definition("parents") + 4, 4, s.DefinitionOf("parents").page); }},
    {"definition-unreadable", "runs into another", [](S& s) { s.Put(s.Definition("parents") + 4, 4, s.DefinitionOf("children").page); }},
    {"definition-unreadable", "column type", [](S& s) { s.At(s.ColumnRecord("parents", "Note")) = 99; }},
    {"definition-length", "", [](S& s) { s.At(s.Definition("parents") + 8) ^= 1; }},
    {"definition-free", "", [](S& s) { s.At(s.Definition("parents") + 2) ^= 1; }},
    {"definition-table-kind", "", [](S& s) { s.At(s.Definition("parents") + 0x28) = 0; }},
    {"definition-constants", "head", [](S& s) { s.At(s.Definition("parents") + 0x0C) ^= 1; }},
    {"definition-constants", "column", [](S& s) { s.At(s.ColumnRecord("parents", "Note") + 1) ^= 1; }},
    {"definition-constants", "tree", [](S& s) { s.At(s.RealRecord("parents", 0)) ^= 1; }},
    {"definition-constants", "index flags", [](S& s) { s.At(s.RealRecord("parents", 0) + 0x2E) |= 0x40; }},
    {"definition-constants", "index", [](S& s) { s.At(s.LogicalRecord("parents", "ByName") + 0x15) = 1; }},
    {"autonumber-step", "", [](S& s) { s.At(s.Definition("parents") + 0x18) = 2; }},
    {"column-numbers", "beyond the last", [](S& s) { s.At(s.ColumnRecord("parents", "Note") + 5) = 50; }},
    {"column-names", "", [](S& s) { s.Rename(s.Definition("parents"), "Note", "NAME"); }},
    {"name-damaged", "column", [](S& s) { s.Rename(s.Definition("parents"), "Note", "Note", 0xD8); }},
    {"name-damaged", "index", [](S& s) { s.Rename(s.Definition("parents"), "ByName", "ByName", 0xD8); }},
    {"column-length", "Long", [](S& s) { s.At(s.ColumnRecord("children", "Id") + 0x17) = 3; }},
    {"column-length", "Text", [](S& s) { s.At(s.ColumnRecord("children", "Note") + 0x17) = 81; }},
    {"autonumber-column", "a text", [](S& s) { s.At(s.ColumnRecord("children", "Note") + 0x0F) |= 4; }},
    {"long-column-fixed", "", [](S& s) { s.At(s.ColumnRecord("children", "Memo") + 0x0F) |= 1; }},
    {"long-column-maps", "a text", [](S& s) { s.At(s.ColumnRecord("children", "Memo")) = 10; }},
    {"long-maps-column", "a text", [](S& s) { s.At(s.ColumnRecord("children", "Memo")) = 10; }},
    {"columns-overlap", "", [](S& s) { s.At(s.ColumnRecord("children", "ParentId") + 0x15) = 2; }},
    {"variable-indexes", "", [](S& s) { s.At(s.ColumnRecord("children", "Picture") + 7) = 9; }},
    {"variable-counts", "", [](S& s) { s.At(s.ColumnRecord("children", "ParentId") + 7) = 1; }},
    {"index-columns", "", [](S& s) { s.At(s.RealRecord("parents", 0) + 4) = 55; }},
    {"index-real", "", [](S& s) { s.At(s.LogicalRecord("parents", "ByName") + 8) = 9; }},
    {"index-unnamed", "", [](S& s) { s.At(s.LogicalRecord("parents", "ByName") + 8) = 0; }},
    {"index-names", "", NameIndexesAlike},
    {"index-limit", "", AddIndexes},
    {"column-limit", "", AddColumns},
    {"index-numbers", "", [](S& s) { s.At(s.LogicalRecord("parents", "ByName") + 4) = 0; }},
    {"primary-keys", "", [](S& s) { s.At(s.LogicalRecord("parents", "ByName") + 0x17) = 1; }},
    {"primary-flags", "", [](S& s) { s.At(s.RealRecord("children", 0) + 0x2E) = 0x81; }},
    {"indexes-unsorted", "", [](S& s) { s.Rename(s.Definition("parents"), "ByName", "ZyName"); }},
    {"row-count", "", [](S& s) { s.At(s.Definition("parents") + 0x10) ^= 1; }},
    {"autonumber", "", [](S& s) { s.At(s.Definition("parents") + 0x14) = 3; }},
};

constexpr DamageCase kRowCases[] = {
    {"row-column-count", "beyond the last", [](S& s) { s.At(s.Row("children", 5)) = 77; }},
    {"row-column-count", "none", [](S& s) { s.At(s.Row("children", 5)) = 0; }},
    {"row-variable-count", "", [](S& s) { s.At(s.RowEnd("children", 0) - kCount) = 9; }},
    {"row-damaged", "no room for the offsets", [](S& s) { s.At(s.RowEnd("children", 5) - kCount + 1) = 9; }},
    {"row-offsets", "", [](S& s) { s.At(s.RowEnd("children", 0) - kOffset1 + 1) = 9; }},
    {"fixed-outside", "", [](S& s) { s.At(s.ColumnRecord("children", "ParentId") + 0x15) = 200; }},
    {"value-length", "short descriptor", ShortMemo},
    {"text-too-long", "", [](S& s) { s.At(s.ColumnRecord("parents", "Note") + 0x17) = 4; }},
    {"text-compression", "not allowed", [](S& s) { s.At(s.ColumnRecord("parents", "Note") + 0x10) = 0; }},
    {"text-compression", "another way", [](S& s) { s.At(s.Value("parents", 0, "Note") + 3) = 0; }},
    {"text-not-compressed", "", [](S& s) { s.At(s.ColumnRecord("children", "Note") + 0x10) = 1; }},
    {"moved-row", "no pointer", [](S& s) { s.At(s.DataPage("parents") + 0x0F) |= 0x80; }},
    {"row-pointer-short", "", ShortenPointer},
    {"row-pointer-target", "", [](S& s) { s.At(s.DataPage("parents") + 0x0F) |= 0x40; }},
    {"null-in-required", "", [](S& s) { s.At(s.RowEnd("children", 5) - kMask) &= 0xFE; }},
    {"entry-without-row", "row deleted", [](S& s) { s.At(s.DataPage("parents") + 0x0F) |= 0xC0; }},
};
// clang-format on

TAVREL_DAMAGE_TESTS(DefinitionDamage, kDefinitionCases);
TAVREL_DAMAGE_TESTS(RowDamage, kRowCases);

}  // namespace
}  // namespace tavrel::testing
