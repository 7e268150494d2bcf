#include "jet/check/PropertyCheck.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include "jet/check/LoneSurrogates.h"
#include "jet/check/Places.h"
#include "jet/storage/LongValue.h"

namespace tavrel::jet::check {

namespace {

constexpr std::uint16_t kColumnKind = 1;

/// Whether a value fits its type.  Tools write Booleans and integers wider than their type says.  Throws 3428
/// for a text of half characters.
bool ValueFits(const Property& property) {
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
            return !HasLoneSurrogate(property.AsText());
        default:
            return true;
    }
}

void CheckValues(const PropertyBlob& blob) {
    for (const PropertyOwner& owner : blob.Owners()) {
        if (HasLoneSurrogate(owner.name)) {
            ThrowDamaged("속성의 필드 이름 " + owner.name);
        }
        for (const Property& property : owner.properties) {
            if (!ValueFits(property) || HasLoneSurrogate(property.name)) {
                ThrowDamaged("속성 " + property.name + "의 값 " + Number(property.value.size()) + "바이트");
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
        const std::string where = "개체 " + object.name;
        Guard(context.log, FindingKind::PropertyBlob, where, [&] {
            const std::uint64_t length = LongValueLength(object.properties);
            if (length > budget) {
                ThrowDamaged("속성이 파일보다 김");
            }
            budget -= length;
            const PropertyBlob blob = PropertyBlob::Parse(ReadLongValue(context.pager, object.properties));
            CheckValues(blob);
            if (const auto table = definitions.find(&object); table != definitions.end()) {
                CheckColumns(context.log, where, blob, *table->second);
            }
        });
    }
}

}  // namespace tavrel::jet::check
