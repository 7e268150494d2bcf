#include "script/ReachColumn.h"

#include "script/DefaultText.h"
#include "script/Narrowing.h"

namespace tavrel::script {

namespace {

using details::Column;
using jet::ColumnType;

constexpr unsigned kMaxText = 255;
constexpr unsigned kMaxBinary = 510;
constexpr unsigned kMaxPrecision = 28;

bool HasTypeInStatements(const Column& column) {
    switch (column.type) {
        case ColumnType::FixedBinary:
            return false;
        case ColumnType::Text:
            return column.size >= 1 && column.size <= kMaxText;
        case ColumnType::Binary:
            return column.size >= 1 && column.size <= kMaxBinary && !column.fixedWidth;
        case ColumnType::Numeric:
            return column.precision >= 1 && column.precision <= kMaxPrecision &&
                   column.scale <= column.precision;
        default:
            return true;
    }
}

void TakeStorage(Column& column, const Column& from) {
    column.type = from.type;
    column.size = from.size;
    column.precision = from.precision;
    column.scale = from.scale;
    column.autonumber = from.autonumber;
    column.fixedWidth = from.fixedWidth;
}

}  // namespace

bool IsCounter(const Column& column) {
    return column.type == ColumnType::Long && column.autonumber;
}

std::optional<Column> ReachNewColumn(const Column& wanted, const ColumnPlace& place) {
    if (!HasTypeInStatements(wanted)) {
        return std::nullopt;
    }
    Column column = wanted;
    column.autonumber = IsCounter(wanted) && !place.hasCounter;
    column.zeroLength.reset();
    column.defaultValue = WritableDefault(wanted.defaultValue).value_or("");
    return column;
}

Column ReachColumn(const Column& present, const Column& wanted, const ColumnPlace& place, DataLoss loss) {
    Column column = present;
    const bool narrows = loss == DataLoss::Refused && Narrows(present, wanted);
    if (HasTypeInStatements(wanted) && !narrows) {
        TakeStorage(column, wanted);
        if (wanted.type == ColumnType::Guid) {
            column.autonumber = present.type == ColumnType::Guid && present.autonumber;
        } else if (IsCounter(wanted) && !IsCounter(present)) {
            column.autonumber = !place.hasRows && !place.hasCounter;
        }
        column.compressed = jet::IsText(present.type) ? present.compressed : wanted.compressed;
    }
    column.required = wanted.required;
    if (wanted.defaultValue.empty()) {
        column.defaultValue.clear();
    } else if (wanted.defaultValue != present.defaultValue) {
        column.defaultValue = WritableDefault(wanted.defaultValue).value_or(present.defaultValue);
    }
    return column;
}

}  // namespace tavrel::script
