#include "jet/table/TableEdits.h"

#include <random>

#include "jet/catalog/NewSystemTables.h"

namespace tavrel::jet {

namespace {

/// Any number but 0 will do for the first chain; one that others are not likely to have used keeps chains
/// apart.
std::uint32_t FirstMark() {
    return std::random_device{}() | 1;
}

}  // namespace

TableEdits::TableEdits(Pager& pager, Catalog& catalog, std::uint32_t ownerKey)
    : catalog_(catalog),
      allocator_(pager),
      context_{.pager = pager,
               .allocator = allocator_,
               .ownerKey = ownerKey,
               .nextMark = FirstMark(),
               .unknown = UnknownWeights::Refuse,
               .standIns = {}} {}

EditedTable& TableEdits::Edit(PageNumber page) {
    auto found = tables_.find(page);
    if (found == tables_.end()) {
        found = tables_.emplace(page, Open(page)).first;
    }
    return *found->second;
}

std::unique_ptr<EditedTable> TableEdits::Open(PageNumber page) {
    // The engine's own tables are named by their pages: in a new database no object names them yet.
    if (page >= kObjectsPage && page <= kRelationshipsPage) {
        return std::make_unique<EditedTable>(context_, std::string(SystemTableName(page)),
                                             catalog_.Definition(page), PropertyBlob());
    }
    if (names_.empty()) {
        for (const CatalogObject& object : catalog_.Objects()) {
            if (object.IsTable()) {
                names_.try_emplace(object.DefinitionPage(), object.name);
            }
        }
    }
    const auto name = names_.find(page);
    const CatalogObject* object = name == names_.end() ? nullptr : catalog_.FindTable(name->second);
    if (object == nullptr) {
        ThrowDamaged("페이지 " + std::to_string(page) + "에 정의된 테이블이 없음");
    }
    return std::make_unique<EditedTable>(context_, object->name, catalog_.Definition(page),
                                         catalog_.Properties(*object));
}

void TableEdits::Save() {
    for (auto& [page, table] : tables_) {
        table->SaveCounters();
    }
}

void TableEdits::Forget() {
    tables_.clear();
    names_.clear();
    allocator_.Reset();
    catalog_.Forget();
}

}  // namespace tavrel::jet
