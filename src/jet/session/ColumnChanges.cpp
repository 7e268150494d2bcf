#include "jet/session/ColumnChanges.h"

#include <algorithm>

#include "jet/catalog/RowCursor.h"
#include "jet/define/CreateDefinition.h"
#include "jet/define/CreateNames.h"
#include "jet/session/SchemaErrors.h"
#include "jet/sql/expression/Assignment.h"
#include "jet/storage/TextCoding.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

NewTable NewTableOf(const NewColumn& column) {
    return {.name = "t", .columns = {column}, .indexes = {}};
}

/// The column's record as a new table would have it; its number and places are still to be given.
Column RecordOf(const NewColumn& column, std::uint16_t sortOrder) {
    return NewTableDefinition(NewTableOf(column), sortOrder).columns.front();
}

void SetProperties(ChangedTable& table, const std::string& column, const NewColumn& wanted) {
    const PropertyBlob made = NewTableProperties(NewTableOf(wanted));
    for (const PropertyOwner& owner : made.Owners()) {
        for (const Property& property : owner.properties) {
            table.properties.Set(column, property);
        }
    }
}

/// The first gap among the fixed columns that holds a value of that length: the room of dropped ones is used
/// again.
std::uint16_t FixedOffsetFor(const TableDefinition& table, const Column& column) {
    std::vector<std::pair<unsigned, unsigned>> taken;
    for (const Column& other : table.columns) {
        if (other.Fixed() && other.type != ColumnType::Boolean) {
            taken.emplace_back(other.fixedOffset, other.fixedOffset + unsigned{other.length});
        }
    }
    std::ranges::sort(taken);
    unsigned offset = 0;
    const unsigned length = column.type == ColumnType::Boolean ? 0 : column.length;
    for (const auto& [start, end] : taken) {
        if (length > 0 && offset + length <= start) {
            break;
        }
        offset = std::max(offset, end);
    }
    if (offset + length > kMaxFixedBytes) {
        throw MakeError(errors::kRecordTooLarge);
    }
    return static_cast<std::uint16_t>(offset);
}

/// Gives a column its number, its place in rows and the maps of its long values, and puts it into the
/// definition.
void Place(SchemaContext& context, TableDefinition& table, Column column) {
    if (table.columnNumbers >= kMaxColumns || table.columns.size() >= kMaxColumns) {
        throw MakeError(errors::kTooManyFields);
    }
    column.number = table.columnNumbers++;
    column.variableIndex = table.variableNumbers;
    column.position = 0;
    for (const Column& other : table.columns) {
        column.position =
            std::max<std::uint16_t>(column.position, static_cast<std::uint16_t>(other.position + 1));
    }
    if (column.Fixed()) {
        column.fixedOffset = FixedOffsetFor(table, column);
    } else {
        ++table.variableNumbers;
    }
    if (IsLong(column.type)) {
        column.ownedMap = context.NewMap(table);
        column.freeMap = context.NewMap(table);
        column.hasMaps = true;
        table.trailer.push_back({column.number, column.ownedMap, column.freeMap});
    }
    table.columns.push_back(std::move(column));
}

std::vector<RowPointer> RowsOf(SchemaContext& context, const TableDefinition& table) {
    std::vector<RowPointer> rows;
    for (RowCursor cursor(context.Pages(), table, 0); cursor.Next();) {
        rows.push_back(cursor.At());
    }
    return rows;
}

void NumberRows(SchemaContext& context, PageNumber page, std::size_t place,
                const sql::ColumnDefinition& definition) {
    EditedTable& table = context.Edits().Edit(page);
    std::int64_t next = definition.seedGiven ? definition.seed : 1;
    for (const RowPointer row : RowsOf(context, table.Definition())) {
        const FieldChange change = table.Encode(place, Value{next});
        table.Update(row, {&change, 1});
        next += definition.seedGiven ? definition.increment : 1;
    }
    context.Edits().Save();
    context.Edits().Forget();
}

bool HasCounter(const TableDefinition& table) {
    return std::ranges::any_of(table.columns, [](const Column& column) {
        return column.type == ColumnType::Long && column.Autonumber();
    });
}

}  // namespace

void AddColumnTo(SchemaContext& context, ChangedTable& table, const sql::ColumnDefinition& definition) {
    const NewColumn& wanted = definition.column;
    if (table.definition.FindColumnByName(wanted.name) != TableDefinition::npos) {
        throw MakeError(schemaErrors::kColumnExists, {wanted.name, table.object.name});
    }
    Column column = RecordOf(wanted, context.SortOrder());
    const bool counter = column.type == ColumnType::Long && column.Autonumber();
    if (counter && HasCounter(table.definition)) {
        throw MakeError(definitionErrors::kTooManyAutonumbers);
    }
    Place(context, table.definition, std::move(column));
    const std::size_t place = table.definition.columns.size() - 1;
    std::size_t rows = 0;
    if (counter) {
        rows = RowsOf(context, table.definition).size();
        table.definition.lastAutonumber = static_cast<std::uint32_t>(
            definition.seedGiven
                ? definition.seed - 1 + static_cast<std::int64_t>(rows) * definition.increment
                : static_cast<std::int64_t>(rows));
        table.definition.autonumberStep =
            definition.seedGiven ? static_cast<std::uint32_t>(definition.increment) : 1;
    }
    context.Store(table);
    const PropertyBlob before = table.properties;
    SetProperties(table, wanted.name, wanted);
    if (table.properties.Build() != before.Build()) {
        context.StoreProperties(table);
    }
    if (rows > 0) {
        NumberRows(context, table.definition.page, place, definition);
    }
}

namespace {

sql::TableColumn TargetOf(const Column& column) {
    return {.name = column.name,
            .type = column.type,
            .size = column.DaoSize(),
            .precision = column.precision,
            .scale = column.scale,
            .autonumber = false,
            .required = false,
            .refusesEmptyText = false,
            .defaultValue = {}};
}

/// A value for the new type: cut when it is too long, Null when it cannot be had.
Value Convert(const sql::TableColumn& target, const Value& value) {
    Value converted;
    try {
        sql::ConvertFor(target, value, converted);
        return converted;
    } catch (const Error& error) {
        if (error.Number() != errors::kFieldTooSmall || target.type != ColumnType::Text) {
            return Null{};
        }
    }
    sql::TableColumn memo = target;
    memo.type = ColumnType::Memo;
    sql::ConvertFor(memo, value, converted);
    const std::u16string units = text::Utf16FromUtf8(std::get<std::string>(converted));
    return text::Utf8FromUtf16(std::u16string_view(units).substr(0, target.size));
}

/// Gives every row the converted value in the new column and Null in the old one.  The indexes, which are
/// built anew afterwards, know nothing of it.
void ConvertRows(SchemaContext& context, const ChangedTable& table, std::size_t from, std::size_t to) {
    TableDefinition bare = table.definition;
    bare.realIndexes.clear();
    bare.logicalIndexes.clear();
    EditedTable edited(context.Edits().Context(), table.object.name, bare, {});
    const sql::TableColumn target = TargetOf(bare.columns[to]);
    RowCursor cursor(context.Pages(), bare, 0);
    for (const RowPointer row : RowsOf(context, bare)) {
        cursor.GoTo(row);
        const Value value = cursor.Get(from);
        if (!IsNull(value)) {
            const FieldChange changes[] = {edited.Encode(to, Convert(target, value)),
                                           edited.Encode(from, Null{})};
            edited.Update(row, changes);
        }
    }
    context.Edits().Forget();
}

void FreeLongValues(SchemaContext& context, TableDefinition& table, const Column& column) {
    if (!column.hasMaps) {
        return;
    }
    context.FreeMapped(column.ownedMap);
    context.DropMap(column.freeMap);
    std::erase_if(table.trailer, [&](const LongValueMaps& maps) { return maps.column == column.number; });
}

/// The column at `to` takes the place of the one at `from` in everything.
void Replace(SchemaContext& context, ChangedTable& table, std::size_t from, std::size_t to) {
    TableDefinition& definition = table.definition;
    const Column old = definition.columns[from];
    Column& fresh = definition.columns[to];
    fresh.name = old.name;
    fresh.position = old.position;
    std::vector<std::size_t> touched;
    for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
        for (IndexColumn& column : definition.realIndexes[i].columns) {
            if (column.number == old.number) {
                column.number = fresh.number;
                touched.push_back(i);
            }
        }
    }
    FreeLongValues(context, definition, old);
    definition.columns.erase(definition.columns.begin() + static_cast<std::ptrdiff_t>(from));
    for (const std::size_t i : touched) {
        context.BuildTree(table, definition.realIndexes[i]);
    }
    context.Store(table);
}

/// The same bytes serve the new definition: the record alone changes.
bool SameBytes(const Column& old, const Column& fresh) {
    if (old.type != fresh.type || old.Fixed() != fresh.Fixed()) {
        return false;
    }
    switch (old.type) {
        case ColumnType::Text:
        case ColumnType::Binary:
            // What lies in the fixed part of a row has its neighbour right behind it.
            return fresh.Fixed() ? fresh.length == old.length : fresh.length >= old.length;
        case ColumnType::Numeric:
            return old.scale == fresh.scale && fresh.precision >= old.precision;
        default:
            return true;
    }
}

void AlterCounter(ChangedTable& table, Column& old, const Column& fresh,
                  const sql::ColumnDefinition& definition) {
    const bool newCounter = fresh.Autonumber() && !old.Autonumber();
    if (newCounter && table.definition.rowCount > 0) {
        throw MakeError(schemaErrors::kTableHoldsData);
    }
    if (newCounter && HasCounter(table.definition)) {
        throw MakeError(definitionErrors::kTooManyAutonumbers);
    }
    old.flags = static_cast<std::uint8_t>(fresh.Autonumber() ? old.flags | columnFlags::kAutonumber
                                                             : old.flags & ~columnFlags::kAutonumber);
    if (!fresh.Autonumber()) {
        table.definition.autonumberStep = 1;
    } else if (definition.seedGiven || newCounter) {
        table.definition.lastAutonumber = static_cast<std::uint32_t>(definition.seed - definition.increment);
        table.definition.autonumberStep = static_cast<std::uint32_t>(definition.increment);
    }
}

}  // namespace

void AlterColumnOf(SchemaContext& context, ChangedTable& table, const sql::ColumnDefinition& definition) {
    const std::size_t place = table.definition.FindColumnByName(definition.column.name);
    if (place == TableDefinition::npos) {
        throw MakeError(schemaErrors::kNoSuchColumn, {definition.column.name, table.object.name});
    }
    Column& old = table.definition.columns[place];
    Column fresh = RecordOf(definition.column, context.SortOrder());
    const bool changes =
        old.type != fresh.type || old.DaoSize() != fresh.DaoSize() || old.scale != fresh.scale;
    if (changes && IsInRelation(table.definition, old.number)) {
        throw MakeError(schemaErrors::kCannotChangeColumn, {old.name});
    }
    const std::string name = old.name;
    if (SameBytes(old, fresh)) {
        old.length = fresh.length;
        old.precision = fresh.precision;
        if (old.type == ColumnType::Long) {
            AlterCounter(table, old, fresh, definition);
        }
        context.Store(table);
    } else {
        if (fresh.Autonumber()) {
            AlterCounter(table, old, fresh, definition);
        }
        fresh.name = "~" + std::to_string(table.definition.columnNumbers);
        Place(context, table.definition, std::move(fresh));
        const std::size_t to = table.definition.columns.size() - 1;
        ConvertRows(context, table, place, to);
        Replace(context, table, place, to);
    }
    const PropertyBlob before = table.properties;
    if (definition.defaultGiven) {
        table.properties.Erase(name, "DefaultValue");
    }
    if (definition.nullable) {
        table.properties.Erase(name, "Required");
    }
    NewColumn properties = definition.column;
    properties.defaultValue = definition.defaultGiven ? properties.defaultValue : "";
    SetProperties(table, name, properties);
    if (table.properties.Build() != before.Build()) {
        context.StoreProperties(table);
    }
}

namespace {

bool Names(const std::vector<std::string>& columns, const std::string& column) {
    return std::ranges::any_of(
        columns, [&](const std::string& name) { return text::EqualIgnoringCase(name, column); });
}

/// Relations that are not enforced have no index to tell of them.
bool IsNamedByRelation(SchemaContext& context, const std::string& table, const std::string& column) {
    return std::ranges::any_of(context.File().Relations(), [&](const RelationInfo& relation) {
        return (text::EqualIgnoringCase(relation.table, table) && Names(relation.columns, column)) ||
               (text::EqualIgnoringCase(relation.referencedTable, table) &&
                Names(relation.referencedColumns, column));
    });
}

}  // namespace

void DropColumnOf(SchemaContext& context, ChangedTable& table, std::size_t place) {
    const Column column = table.definition.columns[place];
    if (IsInRelation(table.definition, column.number) ||
        IsNamedByRelation(context, table.object.name, column.name)) {
        throw MakeError(schemaErrors::kColumnInRelation, {column.name});
    }
    for (const RealIndex& index : table.definition.realIndexes) {
        if (std::ranges::find(index.columns, column.number, &IndexColumn::number) != index.columns.end()) {
            throw MakeError(schemaErrors::kColumnIndexed);
        }
    }
    if (table.definition.columns.size() == 1) {
        throw MakeError(schemaErrors::kColumnIndexed, {}, "테이블의 마지막 필드");
    }
    FreeLongValues(context, table.definition, column);
    table.definition.columns.erase(table.definition.columns.begin() + static_cast<std::ptrdiff_t>(place));
    context.Store(table);
    if (table.properties.EraseColumn(column.name)) {
        context.StoreProperties(table);
    }
}

}  // namespace tavrel::jet
