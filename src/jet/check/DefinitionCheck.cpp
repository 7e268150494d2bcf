#include "jet/check/DefinitionCheck.h"

#include <algorithm>
#include <set>

#include "jet/check/LoneSurrogates.h"
#include "jet/check/Places.h"
#include "text/Case.h"

namespace tavrel::jet::check {

namespace {

constexpr std::size_t kPageHeader = 8;
constexpr unsigned kMaxTextBytes = 510;

bool LengthFits(const Column& column) {
    switch (column.type) {
        case ColumnType::Text:
            return column.length % 2 == 0 && column.length > 0 && column.length <= kMaxTextBytes;
        case ColumnType::Binary:
            return column.length > 0 && column.length <= kMaxTextBytes;
        case ColumnType::Ole:
        case ColumnType::Memo:
            return column.length == 0;
        default:
            return !column.Fixed() || FixedLength(column.type) == 0 ||
                   column.length == FixedLength(column.type);
    }
}

/// Columns by number, which is the order in which they were created.
std::vector<const Column*> ByNumber(const TableDefinition& table) {
    std::vector<const Column*> columns;
    for (const Column& column : table.columns) {
        columns.push_back(&column);
    }
    std::stable_sort(columns.begin(), columns.end(),
                     [](const Column* a, const Column* b) { return a->number < b->number; });
    return columns;
}

}  // namespace

void DefinitionCheck::Run(bool system) {
    CheckPages();
    CheckHead();
    CheckColumnNumbers();
    std::for_each(table_.columns.begin(), table_.columns.end(), [this](const Column& c) { CheckColumn(c); });
    CheckFixedParts();
    CheckVariableIndexes();
    if (!system) {
        CheckVariableCounts();
    }
}

/// Every page but the last is full; the last has the rest free.
void DefinitionCheck::CheckPages() {
    constexpr std::size_t kRoom = kPageSize - kPageHeader;
    std::size_t left = table_.length;
    for (const PageNumber number : table_.pages) {
        const std::size_t here = std::min(left, kRoom);
        left -= here;
        const unsigned field = U16(context_.pager.Read(number), 2);
        if (field != kRoom - here) {
            log_.Add(FindingKind::DefinitionFree, where_,
                     {Number(number), Number(field), Number(kRoom - here)});
        }
    }
}

void DefinitionCheck::CheckHead() {
    if (table_.length != table_.parsedLength) {
        log_.Add(FindingKind::DefinitionLength, where_, {Number(table_.length), Number(table_.parsedLength)});
    }
    if (table_.kind != 'N' && table_.kind != 'S') {
        log_.Add(FindingKind::DefinitionTableKind, where_, {Number(table_.kind)});
    }
    if (!table_.constantsRight) {
        log_.Add(FindingKind::DefinitionConstants, where_, {"머리 또는 끝 표시"});
    }
    if (table_.autonumberStep != 1) {
        log_.Add(FindingKind::AutonumberStep, where_, {Number(table_.autonumberStep)});
    }
}

void DefinitionCheck::CheckColumnNumbers() {
    std::set<std::uint16_t> numbers;
    std::set<std::string> names;
    bool numbersRight = true;
    for (const Column& column : table_.columns) {
        numbersRight &= numbers.insert(column.number).second && column.number < table_.columnNumbers;
        if (!names.insert(text::Lower(column.name)).second) {
            log_.Add(FindingKind::ColumnNames, where_, {column.name});
        }
    }
    if (!numbersRight) {
        log_.Add(FindingKind::ColumnNumbers, where_);
    }
    const auto counters =
        std::count_if(table_.columns.begin(), table_.columns.end(),
                      [](const Column& column) { return (column.flags & columnFlags::kAutonumber) != 0; });
    if (counters > 1) {
        log_.Add(FindingKind::AutonumberColumn, where_,
                 {Number(static_cast<std::uint64_t>(counters)) + "개"});
    }
}

void DefinitionCheck::CheckColumn(const Column& column) {
    if (!column.constantsRight) {
        log_.Add(FindingKind::DefinitionConstants, where_, {"필드 " + column.name});
    }
    if (HasLoneSurrogate(column.name)) {
        log_.Add(FindingKind::NameDamaged, where_, {column.name});
    }
    if (!LengthFits(column)) {
        log_.Add(FindingKind::ColumnLength, where_, {column.name, Number(column.length)});
    }
    if ((column.flags & columnFlags::kAutonumber) != 0 && column.type != ColumnType::Long) {
        log_.Add(FindingKind::AutonumberColumn, where_, {column.name});
    }
    if (column.Fixed() && IsLong(column.type)) {
        log_.Add(FindingKind::LongColumnFixed, where_, {column.name});
    }
    if (IsLong(column.type) != column.hasMaps) {
        log_.Add(FindingKind::LongColumnMaps, where_, {column.name});
    }
}

void DefinitionCheck::CheckFixedParts() {
    std::vector<const Column*> fixed;
    for (const Column& column : table_.columns) {
        if (column.Fixed() && column.type != ColumnType::Boolean) {
            fixed.push_back(&column);
        }
    }
    std::stable_sort(fixed.begin(), fixed.end(),
                     [](const Column* a, const Column* b) { return a->fixedOffset < b->fixedOffset; });
    for (std::size_t i = 1; i < fixed.size(); ++i) {
        if (fixed[i - 1]->fixedOffset + fixed[i - 1]->length > fixed[i]->fixedOffset) {
            log_.Add(FindingKind::ColumnsOverlap, where_, {fixed[i - 1]->name, fixed[i]->name});
        }
    }
}

void DefinitionCheck::CheckVariableIndexes() {
    std::set<std::uint16_t> indexes;
    for (const Column& column : table_.columns) {
        if (!column.Fixed() && (!indexes.insert(column.variableIndex).second ||
                                column.variableIndex >= table_.variableNumbers)) {
            log_.Add(FindingKind::VariableIndexes, where_);
            return;
        }
    }
}

/// Field 7 counts the variable columns created before a column; rows older than a column cannot be read
/// without it. It is exact where no column was ever dropped, and never descends.
void DefinitionCheck::CheckVariableCounts() {
    const bool complete = table_.columns.size() == table_.columnNumbers;
    unsigned before = 0;
    for (const Column* column : ByNumber(table_)) {
        const unsigned field = column->variableIndex;
        if (field < before || field > table_.variableNumbers || (complete && field != before)) {
            log_.Add(FindingKind::VariableCounts, where_, {column->name, Number(field), Number(before)});
            return;
        }
        before = field + (column->Fixed() ? 0 : 1);
    }
}

}  // namespace tavrel::jet::check
