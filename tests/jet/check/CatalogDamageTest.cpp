// Damage to the catalog: objects, permissions, properties, relations.
#include "jet/check/DamageTest.h"
#include "jet/storage/DataPage.h"
#include "jet/table/RowKeys.h"

namespace tavrel::testing {
namespace {

using S = SampleDatabase;

std::size_t Object(S& s, const char* name, const char* column) {
    return s.Value("MSysObjects", s.ObjectRow(name), column);
}
std::size_t Relation(S& s, const char* column) {
    return s.Value("MSysRelationships", 0, column);
}

/// Where the property blob of the parents begins.
std::size_t Properties(S& s) {
    return s.Target(jet::RowPointer::FromU32(s.Get(Object(s, "parents", "LvProp") + 4, 4)));
}

/// The permissions of the parents become those of another object.
void TakePermissions(S& s) {
    for (std::size_t row = 0; row < s.DefinitionOf("MSysACEs").rowCount; ++row) {
        const std::size_t id = s.Value("MSysACEs", row, "ObjectId");
        if (s.Get(id, 4) == s.DefinitionOf("parents").page) {
            s.Put(id, 4, 2);
        }
    }
}

/// A row of a query that nobody has.
void AddQueryRow(S& s) {
    const jet::TableDefinition& queries = s.DefinitionOf("MSysQueries");
    jet::StoredFields fields(queries.columns.size());
    fields[queries.FindColumnByName("ObjectId")] = jet::ByteVector{0x77, 0x77, 0, 0};
    const jet::PageNumber page = s.AddPage();
    jet::Page content;
    jet::DataPageEditor editor(content);
    editor.Format(jet::kQueriesPage);
    editor.Append(jet::BuildRow(queries.Shape(), fields));
    std::ranges::copy(content, s.bytes.begin() + static_cast<std::ptrdiff_t>(S::Page(page)));
    s.MapBit(queries.ownedMap, page, true);
}

// clang-format off
constexpr DamageCase kCatalogCases[] = {
    {"object-id", "", [](S& s) { s.Put(Object(s, "Databases", "Id"), 4, 0x0F000001); }},
    {"object-name", "", [](S& s) { s.Rename(Object(s, "children", "Name"), "children", "msysaces"); }},
    {"object-parent", "", [](S& s) { s.At(Object(s, "parents", "ParentId")) = 0x77; }},
    {"table-container", "", [](S& s) { s.At(Object(s, "parents", "ParentId")) = 2; }},
    {"engine-object", "", [](S& s) { s.Rename(Object(s, "Databases", "Name"), "Databases", "databases"); }},
    {"table-kind-flags", "", [](S& s) { s.At(s.Definition("parents") + 0x28) = 'S'; }},
    {"owner-engine", "", [](S& s) { s.At(Object(s, "MSysACEs", "Owner")) ^= 1; }},
    {"owner-foreign", "", [](S& s) { s.At(Object(s, "parents", "Owner")) ^= 1; }},
    {"ace-object", "", [](S& s) { s.Put(s.Value("MSysACEs", 0, "ObjectId"), 4, 0x7777); }},
    {"ace-account", "", [](S& s) { s.At(s.Value("MSysACEs", 0, "SID")) ^= 0x40; }},
    {"ace-missing", "", TakePermissions},
    {"query-object", "", AddQueryRow},
    {"property-blob", "magic", [](S& s) { s.At(Properties(s)) ^= 1; }},
    {"property-blob", "cut", [](S& s) { s.Put(Properties(s) + 4, 4, 0x7FFF); }},
    {"property-blob", "half a pair in a text", [](S& s) { s.Rename(Properties(s), "none", "none", 0xD8); }},
    {"property-column", "", [](S& s) { s.Rename(Properties(s), "Name", "Nome"); }},

    {"relation-object", "", [](S& s) { s.At(Object(s, "family", "Type")) = 6; }},
    {"relation-no-rows", "", [](S& s) { s.Rename(Relation(s, "szRelationship"), "family", "fomily"); }},
    {"relation-rows-differ", "", [](S& s) { s.At(Relation(s, "ccolumn")) = 2; }},
    {"relation-table", "", [](S& s) { s.Rename(Relation(s, "szObject"), "children", "chaldren"); }},
    {"relation-column", "", [](S& s) { s.Rename(Relation(s, "szColumn"), "ParentId", "PorentId"); }},
    {"relation-not-enforced", "", [](S& s) { s.At(Relation(s, "grbit")) |= 2; }},
    {"relation-cascade", "", [](S& s) { s.At(Relation(s, "grbit") + 1) ^= 1; }},
    {"relation-child", "", [](S& s) { s.Rename(s.Definition("children"), "family", "fomily"); }},
    {"relation-partner", "", [](S& s) { s.At(s.LogicalRecord("children", "family") + 0x0D) = 99; }},
    {"relation-orphan", "", [](S& s) { s.At(s.LogicalRecord("children", "family") + 0x0D) = 99; }},
    {"relation-unique", "", [](S& s) { s.At(s.RealRecord("parents", 0) + 0x2E) &= 0xFE; }},
    {"relation-index", "", [](S& s) { s.Rename(Relation(s, "szColumn"), "ParentId", "Note\0\0\0\0"); }},
};
// clang-format on

TAVREL_DAMAGE_TESTS(CatalogDamage, kCatalogCases);

}  // namespace
}  // namespace tavrel::testing
