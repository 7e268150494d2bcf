#include "jet/engine/check/PropertyCheck.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include "jet/engine/check/Places.h"
#include "jet/storage/LongValue.h"

namespace tavrel::jet::check {

namespace {

constexpr std::uint16_t kColumnKind = 1;

/// What values of a type may measure.  Tools write Booleans and integers wider than their type says.
bool LengthFits(const Property& property) {
    const std::size_t length = property.value.size();
    switch (static_cast<ColumnType>(property.type)) {
        case ColumnType::Byte:
            return length > 0;
        case ColumnType::Integer:
        case ColumnType::Long:
            return length == 2 || length == 4;
        case ColumnType::Single:
            return length == 4;
        case ColumnType::Double:
        case ColumnType::Date:
        case ColumnType::Currency:
            return length == 8;
        case ColumnType::Text:
        case ColumnType::Memo:
            return length % 2 == 0;
        default:
            return true;
    }
}

void CheckValues(const PropertyBlob& blob) {
    for (const PropertyOwner& owner : blob.Owners()) {
        for (const Property& property : owner.properties) {
            if (!LengthFits(property)) {
                ThrowDamaged("속성 " + property.name + "의 값이 " + Number(property.value.size()) + "바이트");
            }
        }
    }
}

/// Properties go by the exact name of their column.
void CheckColumns(FindingLog& log, const std::string& where, const PropertyBlob& blob,
                  const TableDefinition& table) {
    std::set<std::string> unknown;
    for (const PropertyOwner& owner : blob.Owners()) {
        const bool known = std::any_of(table.columns.begin(), table.columns.end(),
                                       [&](const Column& column) { return column.name == owner.name; });
        if (owner.kind == kColumnKind && !known && unknown.insert(owner.name).second) {
            log.Add(FindingKind::PropertyColumn, where, {owner.name});
        }
    }
}

}  // namespace

void CheckProperties(Context& context, const std::vector<CatalogObject>& objects,
                     const std::vector<CheckedTable>& tables) {
    std::unordered_map<const CatalogObject*, const TableDefinition*> definitions;
    for (const CheckedTable& table : tables) {
        definitions.emplace(table.object, &table.definition);
    }
    // Objects of a damaged file may share one huge value: all together are no longer than the file.
    std::uint64_t budget = std::uint64_t{context.pager.PageCount()} * kPageSize;
    for (const CatalogObject& object : objects) {
        if (object.properties.empty()) {
            continue;
        }
        Guard(context.log, FindingKind::PropertyBlob, object.name, [&] {
            const std::uint64_t length = LongValueLength(object.properties);
            if (length > budget) {
                ThrowDamaged("속성이 파일보다 김");
            }
            budget -= length;
            const PropertyBlob blob = PropertyBlob::Parse(ReadLongValue(context.pager, object.properties));
            CheckValues(blob);
            if (const auto table = definitions.find(&object); table != definitions.end()) {
                CheckColumns(context.log, object.name, blob, *table->second);
            }
        });
    }
}

}  // namespace tavrel::jet::check
