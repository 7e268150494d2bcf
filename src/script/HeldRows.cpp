#include "script/HeldRows.h"

#include "jet/catalog/RowCursor.h"
#include "text/Utf.h"

namespace tavrel::script {

namespace {

template <typename Test>
std::uint64_t Count(jet::Database& database, const std::string& table, const std::string& column, Test test) {
    const jet::CatalogObject* object = database.Catalog().FindTable(table);
    if (object == nullptr) {
        return 0;
    }
    const jet::TableDefinition& definition = database.Catalog().Definition(object->DefinitionPage());
    const std::size_t place = definition.FindColumnByName(column);
    if (place == jet::TableDefinition::npos) {
        return 0;
    }
    std::uint64_t count = 0;
    for (jet::RowCursor cursor(database.Pager(), definition, database.Catalog().OwnerKey()); cursor.Next();) {
        count += test(cursor, place) ? 1U : 0U;
    }
    return count;
}

}  // namespace

std::uint64_t CountHeld(jet::Database& database, const std::string& table, const std::string& column) {
    return Count(database, table, column,
                 [](jet::RowCursor& cursor, std::size_t place) { return !jet::IsNull(cursor.Get(place)); });
}

std::uint64_t CountLonger(jet::Database& database, const std::string& table, const std::string& column,
                          std::size_t size) {
    return Count(database, table, column, [size](jet::RowCursor& cursor, std::size_t place) {
        const jet::Value value = cursor.Get(place);
        const auto* text = std::get_if<std::string>(&value);
        return text != nullptr && text::Utf16Length(*text) > size;
    });
}

}  // namespace tavrel::script
