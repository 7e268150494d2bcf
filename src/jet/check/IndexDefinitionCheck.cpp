#include "jet/check/IndexDefinitionCheck.h"

#include <algorithm>
#include <set>

#include "jet/check/LoneSurrogates.h"
#include "jet/check/Places.h"
#include "jet/index/KeyEncoder.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet::check {

namespace {

bool ConstantsRight(const LogicalIndex& index) {
    const bool relation = index.rawSide != 0;
    if (!index.constantsRight || index.rawKind > 2 || index.rawSide > 2 ||
        (index.kind == LogicalKind::Relation) != relation) {
        return false;
    }
    if (relation) {
        return index.cascadeUpdates <= 1 && index.cascadeDeletes <= 1;
    }
    return index.partner == kNoNumber && index.partnerPage == 0 && index.cascadeUpdates == 4 &&
           index.cascadeDeletes == 4;
}

void CheckRealIndex(FindingLog& log, const std::string& where, const TableDefinition& table,
                    std::size_t real) {
    const RealIndex& index = table.realIndexes[real];
    const std::string name = IndexName(table, real);
    const bool known = std::all_of(
        index.columns.begin(), index.columns.end(),
        [&](const IndexColumn& column) { return table.FindColumn(column.number) != TableDefinition::npos; });
    if (index.columns.empty() || !known) {
        log.Add(FindingKind::IndexColumns, where, {name});
    }
    if (!index.constantsRight) {
        log.Add(FindingKind::DefinitionConstants, where, {"인덱스 트리 " + Number(real)});
    }
    if (std::none_of(table.logicalIndexes.begin(), table.logicalIndexes.end(),
                     [real](const LogicalIndex& logical) { return logical.real == real; })) {
        log.Add(FindingKind::IndexUnnamed, where, {Number(real)});
    }
}

void CheckPrimaryKeys(FindingLog& log, const std::string& where, const TableDefinition& table) {
    // The engine's own tables have primary keys that are not marked as required.
    const std::uint16_t wanted =
        table.kind == 'S' ? indexFlags::kUnique : indexFlags::kUnique | indexFlags::kRequired;
    unsigned primaries = 0;
    for (const LogicalIndex& index : table.logicalIndexes) {
        if (index.rawKind != static_cast<std::uint8_t>(LogicalKind::Primary)) {
            continue;
        }
        ++primaries;
        if (index.real < table.realIndexes.size() &&
            (table.realIndexes[index.real].flags & wanted) != wanted) {
            log.Add(FindingKind::PrimaryFlags, where, {index.name});
        }
    }
    if (primaries > 1) {
        log.Add(FindingKind::PrimaryKeys, where);
    }
}

bool IsPlainName(const std::string& name) {
    return name.find_first_not_of('_') != std::string::npos &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
           });
}

/// Records stand in the order of their names' index keys.  Where a name's key is not known, names of plain
/// letters and digits are compared by themselves.
bool SortedByName(const TableDefinition& table, std::uint16_t sortOrder) {
    std::vector<ByteVector> keys;
    for (const LogicalIndex& index : table.logicalIndexes) {
        const std::optional<ByteVector> key = EncodeTextKey(text::Utf16FromUtf8(index.name), sortOrder);
        if (!key) {
            break;
        }
        keys.push_back(*key);
    }
    if (keys.size() == table.logicalIndexes.size()) {
        return std::is_sorted(keys.begin(), keys.end());
    }
    std::vector<std::string> names;
    for (const LogicalIndex& index : table.logicalIndexes) {
        if (IsPlainName(index.name)) {
            names.push_back(text::Lower(index.name));
        }
    }
    return std::is_sorted(names.begin(), names.end());
}

}  // namespace

std::string IndexName(const TableDefinition& table, std::size_t real) {
    for (const LogicalIndex& logical : table.logicalIndexes) {
        if (logical.real == real) {
            return logical.name;
        }
    }
    return "#" + Number(real);
}

void CheckIndexDefinitions(FindingLog& log, const std::string& where, const TableDefinition& table,
                           std::uint16_t sortOrder) {
    for (std::size_t real = 0; real < table.realIndexes.size(); ++real) {
        CheckRealIndex(log, where, table, real);
    }
    std::set<std::uint32_t> numbers;
    std::set<std::string> names;
    for (const LogicalIndex& index : table.logicalIndexes) {
        if (!ConstantsRight(index)) {
            log.Add(FindingKind::DefinitionConstants, where, {"인덱스 " + index.name});
        }
        if (index.real >= table.realIndexes.size()) {
            log.Add(FindingKind::IndexReal, where, {index.name, Number(index.real)});
        }
        if (!names.insert(text::Lower(index.name)).second) {
            log.Add(FindingKind::IndexNames, where, {index.name});
        }
        if (HasLoneSurrogate(index.name)) {
            log.Add(FindingKind::NameDamaged, where, {index.name});
        }
        numbers.insert(index.number);
    }
    if (numbers.size() != table.logicalIndexes.size()) {
        log.Add(FindingKind::IndexNumbers, where);
    }
    CheckPrimaryKeys(log, where, table);
    if (!SortedByName(table, sortOrder)) {
        log.Add(FindingKind::IndexesUnsorted, where);
    }
}

}  // namespace tavrel::jet::check
