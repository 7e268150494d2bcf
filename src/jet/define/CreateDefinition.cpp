#include "jet/define/CreateDefinition.h"

#include <algorithm>
#include <set>

#include "jet/define/CreateNames.h"
#include "jet/index/KeyEncoder.h"
#include "jet/storage/TextCoding.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr unsigned kMaxTextCharacters = 255;
constexpr unsigned kMaxBinaryBytes = 510;
constexpr unsigned kDefaultSize = 255;
constexpr unsigned kMaxPrecision = 38;  // what 128 bits can hold

/// The length that a Numeric column of few digits states; its values are stored with 17 bytes all the same.
constexpr unsigned kShortNumeric = 9;
constexpr unsigned kShortPrecision = 19;

/// Columns that live in the fixed part of a row; all others are variable.
bool IsFixed(const NewColumn& wanted) {
    return wanted.type <= ColumnType::Date || (wanted.type == ColumnType::Text && wanted.fixedLength);
}

unsigned LengthOf(const NewColumn& wanted) {
    switch (wanted.type) {
        case ColumnType::Text:
            return 2 * (wanted.size == 0 ? kDefaultSize : wanted.size);
        case ColumnType::Binary:
            return wanted.size == 0 ? kDefaultSize : wanted.size;
        case ColumnType::Numeric:
            return wanted.precision <= kShortPrecision ? kShortNumeric : FixedLength(wanted.type);
        default:
            return FixedLength(wanted.type);
    }
}

void CheckColumn(const NewColumn& wanted) {
    CheckName(wanted.name);
    const auto invalid = [&wanted](std::string_view reason) {
        return MakeError(definitionErrors::kInvalidFieldDefinition, {wanted.name}, reason);
    };
    if (!IsKnownType(static_cast<std::uint8_t>(wanted.type)) || wanted.type == ColumnType::FixedBinary) {
        throw invalid("만들 수 없는 데이터 형식");
    }
    if ((wanted.type == ColumnType::Text && wanted.size > kMaxTextCharacters) ||
        (wanted.type == ColumnType::Binary && wanted.size > kMaxBinaryBytes)) {
        throw MakeError(definitionErrors::kFieldSizeTooLong, {wanted.name});
    }
    if (wanted.type == ColumnType::Numeric &&
        (wanted.precision == 0 || wanted.precision > kMaxPrecision || wanted.scale > wanted.precision)) {
        throw invalid("전체 자릿수 또는 소수 자릿수가 잘못됨");
    }
    if (wanted.autonumber && wanted.type != ColumnType::Long && wanted.type != ColumnType::Guid) {
        throw invalid("일련 번호가 될 수 없는 데이터 형식");
    }
}

void CheckColumns(const NewTable& wanted) {
    if (wanted.columns.empty()) {
        throw MakeError(definitionErrors::kNoFields, {}, "필드가 없음");
    }
    if (wanted.columns.size() > kMaxColumns) {
        throw MakeError(errors::kTooManyFields);
    }
    std::set<std::string> names;
    for (const NewColumn& column : wanted.columns) {
        CheckColumn(column);
        if (!names.insert(text::Upper(column.name)).second) {
            throw MakeError(errors::kDuplicateField, {}, column.name);
        }
    }
    const auto counters = std::ranges::count_if(wanted.columns, [](const NewColumn& column) {
        return column.autonumber && column.type == ColumnType::Long;
    });
    if (counters > 1) {
        throw MakeError(definitionErrors::kTooManyAutonumbers);
    }
}

std::uint8_t FlagsOf(const NewColumn& wanted) {
    std::uint8_t flags = columnFlags::kNullable;
    if (IsFixed(wanted)) {
        flags |= columnFlags::kFixed;
    }
    if (wanted.autonumber) {
        flags |= wanted.type == ColumnType::Guid ? columnFlags::kAutoGuid : columnFlags::kAutonumber;
    }
    return flags;
}

Column ColumnFrom(const NewColumn& wanted, std::size_t place, std::uint16_t sortOrder) {
    Column column;
    column.name = wanted.name;
    column.type = wanted.type;
    column.number = static_cast<std::uint16_t>(place);
    column.position = column.number;
    column.sortOrder = sortOrder;
    column.precision = wanted.precision;
    column.scale = wanted.scale;
    column.flags = FlagsOf(wanted);
    column.flags2 = IsText(wanted.type) && wanted.compressed ? kColumnCompressed : 0;
    column.length = static_cast<std::uint16_t>(LengthOf(wanted));
    return column;
}

void AddColumns(TableDefinition& table, const NewTable& wanted, std::uint16_t sortOrder) {
    unsigned nextOffset = 0;
    for (const NewColumn& wantedColumn : wanted.columns) {
        Column column = ColumnFrom(wantedColumn, table.columns.size(), sortOrder);
        column.variableIndex = table.variableNumbers;
        if (column.Fixed()) {
            column.fixedOffset = static_cast<std::uint16_t>(nextOffset);
            // A Boolean takes no room: its value is its bit in the null mask.
            nextOffset += column.type == ColumnType::Boolean ? 0U : unsigned{column.length};
            if (nextOffset > kMaxFixedBytes) {
                throw MakeError(errors::kRecordTooLarge);
            }
        } else {
            ++table.variableNumbers;
        }
        table.columns.push_back(std::move(column));
    }
    table.columnNumbers = static_cast<std::uint16_t>(table.columns.size());
}

std::uint16_t FlagsOf(const NewIndex& wanted) {
    std::uint16_t flags = indexFlags::kAlways;
    flags |= wanted.primary || wanted.unique ? indexFlags::kUnique : 0U;
    flags |= wanted.primary || wanted.required ? indexFlags::kRequired : 0U;
    flags |= wanted.ignoreNulls && !wanted.primary ? indexFlags::kIgnoreNulls : 0U;
    return flags;
}

RealIndex NewRealIndex(const NewIndex& wanted, const TableDefinition& table) {
    if (wanted.fields.size() > kMaxIndexColumns) {
        throw MakeError(definitionErrors::kTooManyIndexFields, {},
                        wanted.name + ": 인덱스의 필드는 10개까지");
    }
    RealIndex index;
    index.flags = FlagsOf(wanted);
    for (const IndexFieldInfo& field : wanted.fields) {
        const std::size_t place = table.FindColumnByName(field.name);
        const auto twice = [&](const IndexColumn& c) { return c.number == table.columns[place].number; };
        if (place == TableDefinition::npos || table.columns[place].type == ColumnType::Ole ||
            std::ranges::any_of(index.columns, twice)) {
            throw MakeError(definitionErrors::kInvalidFieldDefinition, {field.name}, wanted.name);
        }
        index.columns.push_back({table.columns[place].number, !field.descending});
    }
    if (index.columns.empty()) {
        throw MakeError(definitionErrors::kInvalidFieldDefinition, {""}, wanted.name + ": 필드가 없음");
    }
    return index;
}

// ---- properties

/// Property values have a 16-bit length of their record, of which 8 bytes are its head.
constexpr std::size_t kMaxPropertyBytes = 0xFFFF - 8;

Property TextProperty(std::string_view name, ColumnType type, std::string_view value) {
    ByteVector bytes = PlainText(text::Utf16FromUtf8(value));
    if (bytes.size() > kMaxPropertyBytes) {
        throw MakeError(errors::kFieldTooSmall, {}, name);
    }
    return {std::string(name), static_cast<std::uint8_t>(type), true, std::move(bytes)};
}

Property BooleanProperty(std::string_view name, bool value) {
    return {std::string(name),
            static_cast<std::uint8_t>(ColumnType::Boolean),
            true,
            {static_cast<std::uint8_t>(value ? 0xFF : 0x00)}};
}

/// Default values are memo properties, but for the two that the engine itself gives to autonumbers.
ColumnType DefaultValueType(std::string_view value) {
    return value == "GenUniqueID()" || value == "GenGUID()" ? ColumnType::Text : ColumnType::Memo;
}

void AddProperties(PropertyBlob& blob, const NewColumn& wanted) {
    std::string defaultValue = wanted.defaultValue;
    if (defaultValue.empty() && wanted.autonumber && wanted.type == ColumnType::Guid) {
        defaultValue = "GenGUID()";
    }
    if (!wanted.description.empty()) {
        blob.Set(wanted.name, TextProperty("Description", ColumnType::Text, wanted.description));
    }
    if (!defaultValue.empty()) {
        blob.Set(wanted.name, TextProperty("DefaultValue", DefaultValueType(defaultValue), defaultValue));
    }
    if (wanted.required) {
        blob.Set(wanted.name, BooleanProperty("Required", true));
    }
    if (IsText(wanted.type) && wanted.zeroLength != NewColumn::ZeroLength::Unset) {
        blob.Set(wanted.name,
                 BooleanProperty("AllowZeroLength", wanted.zeroLength == NewColumn::ZeroLength::Allowed));
    }
}

}  // namespace

void AddIndexDefinition(TableDefinition& table, const NewIndex& wanted, const std::string& tableName) {
    CheckName(wanted.name);
    for (const LogicalIndex& other : table.logicalIndexes) {
        if (text::EqualIgnoringCase(other.name, wanted.name)) {
            throw MakeError(definitionErrors::kIndexExists, {tableName, wanted.name});
        }
        if (wanted.primary && other.kind == LogicalKind::Primary) {
            throw MakeError(definitionErrors::kSecondPrimaryKey);
        }
    }
    LogicalIndex logical;
    logical.name = wanted.name;
    for (const LogicalIndex& other : table.logicalIndexes) {
        logical.number = std::max(logical.number, other.number + 1);
    }
    logical.real = static_cast<std::uint32_t>(table.realIndexes.size());
    logical.kind = wanted.primary ? LogicalKind::Primary : LogicalKind::Plain;
    table.realIndexes.push_back(NewRealIndex(wanted, table));
    table.logicalIndexes.push_back(std::move(logical));
}

TableDefinition NewTableDefinition(const NewTable& wanted, std::uint16_t sortOrder) {
    CheckName(wanted.name);
    CheckColumns(wanted);
    if (wanted.indexes.size() > kMaxIndexes) {
        throw MakeError(errors::kTooManyIndexes, {wanted.name});
    }
    TableDefinition table;
    AddColumns(table, wanted, sortOrder);
    for (const NewIndex& index : wanted.indexes) {
        AddIndexDefinition(table, index, wanted.name);
    }
    SortLogicalIndexes(table, sortOrder);
    return table;
}

PropertyBlob NewTableProperties(const NewTable& wanted) {
    PropertyBlob blob;
    for (const NewColumn& column : wanted.columns) {
        AddProperties(blob, column);
    }
    return blob;
}

void SortLogicalIndexes(TableDefinition& table, std::uint16_t sortOrder) {
    const auto keyOf = [sortOrder](const LogicalIndex& index) {
        return EncodeTextKey(text::Utf16FromUtf8(index.name), sortOrder);
    };
    const bool known = std::ranges::all_of(
        table.logicalIndexes, [&](const LogicalIndex& index) { return keyOf(index).has_value(); });
    std::ranges::stable_sort(table.logicalIndexes, [&](const LogicalIndex& a, const LogicalIndex& b) {
        return known ? *keyOf(a) < *keyOf(b) : text::NameLess(a.name, b.name);
    });
}

}  // namespace tavrel::jet
