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
bool IsFixed(const ColumnSpec& spec) {
    return spec.type <= ColumnType::Date || (spec.type == ColumnType::Text && spec.fixedLength);
}

unsigned LengthOf(const ColumnSpec& spec) {
    switch (spec.type) {
        case ColumnType::Text:
            return 2 * (spec.size == 0 ? kDefaultSize : spec.size);
        case ColumnType::Binary:
            return spec.size == 0 ? kDefaultSize : spec.size;
        case ColumnType::Numeric:
            return spec.precision <= kShortPrecision ? kShortNumeric : FixedLength(spec.type);
        default:
            return FixedLength(spec.type);
    }
}

void CheckColumn(const ColumnSpec& spec) {
    CheckName(spec.name);
    const auto invalid = [&spec](std::string_view reason) {
        return MakeError(definitionErrors::kInvalidFieldDefinition, {spec.name}, reason);
    };
    if (!IsKnownType(static_cast<std::uint8_t>(spec.type)) || spec.type == ColumnType::FixedBinary) {
        throw invalid("만들 수 없는 데이터 형식");
    }
    if ((spec.type == ColumnType::Text && spec.size > kMaxTextCharacters) ||
        (spec.type == ColumnType::Binary && spec.size > kMaxBinaryBytes)) {
        throw MakeError(definitionErrors::kFieldSizeTooLong, {spec.name});
    }
    if (spec.type == ColumnType::Numeric &&
        (spec.precision == 0 || spec.precision > kMaxPrecision || spec.scale > spec.precision)) {
        throw invalid("전체 자릿수 또는 소수 자릿수가 잘못됨");
    }
    if (spec.autonumber && spec.type != ColumnType::Long && spec.type != ColumnType::Guid) {
        throw invalid("일련 번호가 될 수 없는 데이터 형식");
    }
}

void CheckColumns(const TableSpec& spec) {
    if (spec.columns.empty()) {
        throw MakeError(definitionErrors::kNoFields, {}, "필드가 없음");
    }
    if (spec.columns.size() > kMaxColumns) {
        throw MakeError(errors::kTooManyFields);
    }
    std::set<std::string> names;
    for (const ColumnSpec& column : spec.columns) {
        CheckColumn(column);
        if (!names.insert(text::Upper(column.name)).second) {
            throw MakeError(errors::kDuplicateField, {}, column.name);
        }
    }
    const auto counters = std::ranges::count_if(spec.columns, [](const ColumnSpec& column) {
        return column.autonumber && column.type == ColumnType::Long;
    });
    if (counters > 1) {
        throw MakeError(definitionErrors::kTooManyAutonumbers);
    }
}

std::uint8_t FlagsOf(const ColumnSpec& spec) {
    std::uint8_t flags = columnFlags::kNullable;
    if (IsFixed(spec)) {
        flags |= columnFlags::kFixed;
    }
    if (spec.autonumber) {
        flags |= spec.type == ColumnType::Guid ? columnFlags::kAutoGuid : columnFlags::kAutonumber;
    }
    return flags;
}

Column NewColumn(const ColumnSpec& spec, std::size_t place, std::uint16_t sortOrder) {
    Column column;
    column.name = spec.name;
    column.type = spec.type;
    column.number = static_cast<std::uint16_t>(place);
    column.position = column.number;
    column.sortOrder = sortOrder;
    column.precision = spec.precision;
    column.scale = spec.scale;
    column.flags = FlagsOf(spec);
    column.flags2 = IsText(spec.type) && spec.compressed ? kColumnCompressed : 0;
    column.length = static_cast<std::uint16_t>(LengthOf(spec));
    return column;
}

void AddColumns(TableDefinition& table, const TableSpec& spec, std::uint16_t sortOrder) {
    unsigned nextOffset = 0;
    for (const ColumnSpec& columnSpec : spec.columns) {
        Column column = NewColumn(columnSpec, table.columns.size(), sortOrder);
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

std::uint16_t FlagsOf(const IndexSpec& spec) {
    std::uint16_t flags = indexFlags::kAlways;
    flags |= spec.primary || spec.unique ? indexFlags::kUnique : 0U;
    flags |= spec.primary || spec.required ? indexFlags::kRequired : 0U;
    flags |= spec.ignoreNulls && !spec.primary ? indexFlags::kIgnoreNulls : 0U;
    return flags;
}

RealIndex NewRealIndex(const IndexSpec& spec, const TableDefinition& table) {
    if (spec.fields.size() > kMaxIndexColumns) {
        throw MakeError(definitionErrors::kTooManyIndexFields, {}, spec.name + ": 인덱스의 필드는 10개까지");
    }
    RealIndex index;
    index.flags = FlagsOf(spec);
    for (const IndexFieldInfo& field : spec.fields) {
        const std::size_t place = table.FindColumnByName(field.name);
        const auto twice = [&](const IndexColumn& c) { return c.number == table.columns[place].number; };
        if (place == TableDefinition::npos || table.columns[place].type == ColumnType::Ole ||
            std::ranges::any_of(index.columns, twice)) {
            throw MakeError(definitionErrors::kInvalidFieldDefinition, {field.name}, spec.name);
        }
        index.columns.push_back({table.columns[place].number, !field.descending});
    }
    if (index.columns.empty()) {
        throw MakeError(definitionErrors::kInvalidFieldDefinition, {""}, spec.name + ": 필드가 없음");
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

void AddProperties(PropertyBlob& blob, const ColumnSpec& spec) {
    std::string defaultValue = spec.defaultValue;
    if (defaultValue.empty() && spec.autonumber && spec.type == ColumnType::Guid) {
        defaultValue = "GenGUID()";
    }
    if (!spec.description.empty()) {
        blob.Set(spec.name, TextProperty("Description", ColumnType::Text, spec.description));
    }
    if (!defaultValue.empty()) {
        blob.Set(spec.name, TextProperty("DefaultValue", DefaultValueType(defaultValue), defaultValue));
    }
    if (spec.required) {
        blob.Set(spec.name, BooleanProperty("Required", true));
    }
    if (IsText(spec.type) && spec.zeroLength != ColumnSpec::ZeroLength::Unset) {
        blob.Set(spec.name,
                 BooleanProperty("AllowZeroLength", spec.zeroLength == ColumnSpec::ZeroLength::Allowed));
    }
}

}  // namespace

void AddIndexDefinition(TableDefinition& table, const IndexSpec& spec, const std::string& tableName) {
    CheckName(spec.name);
    for (const LogicalIndex& other : table.logicalIndexes) {
        if (text::EqualIgnoringCase(other.name, spec.name)) {
            throw MakeError(definitionErrors::kIndexExists, {tableName, spec.name});
        }
        if (spec.primary && other.kind == LogicalKind::Primary) {
            throw MakeError(definitionErrors::kSecondPrimaryKey);
        }
    }
    LogicalIndex logical;
    logical.name = spec.name;
    for (const LogicalIndex& other : table.logicalIndexes) {
        logical.number = std::max(logical.number, other.number + 1);
    }
    logical.real = static_cast<std::uint32_t>(table.realIndexes.size());
    logical.kind = spec.primary ? LogicalKind::Primary : LogicalKind::Plain;
    table.realIndexes.push_back(NewRealIndex(spec, table));
    table.logicalIndexes.push_back(std::move(logical));
}

TableDefinition NewTableDefinition(const TableSpec& spec, std::uint16_t sortOrder) {
    CheckName(spec.name);
    CheckColumns(spec);
    if (spec.indexes.size() > kMaxIndexes) {
        throw MakeError(errors::kTooManyIndexes, {spec.name});
    }
    TableDefinition table;
    AddColumns(table, spec, sortOrder);
    for (const IndexSpec& index : spec.indexes) {
        AddIndexDefinition(table, index, spec.name);
    }
    SortLogicalIndexes(table, sortOrder);
    return table;
}

PropertyBlob NewTableProperties(const TableSpec& spec) {
    PropertyBlob blob;
    for (const ColumnSpec& column : spec.columns) {
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
