#include "jet/compact/DatabaseOutput.h"

#include <numeric>

#include "jet/catalog/Catalog.h"

namespace tavrel::jet::compact {

namespace {

/// Rows and indexes of the engine's tables, which are written last, begin right behind their maps: numbers of
/// other objects begin at 16.  They need that many pages at least.
constexpr PageNumber kFirstUserPage = 16;

}  // namespace

DatabaseOutput::DatabaseOutput(PageOutput& out, const std::vector<TableDefinition>& systemTables)
    : out_(out), systemTables_(systemTables) {
    for (PageNumber page = 0; page < kObjectsPage + systemTables.size(); ++page) {
        out_.Take();
    }
    std::size_t maps = 0;
    for (const TableDefinition& table : systemTables) {
        maps += TableOutput::MapCount(table);
    }
    systemMaps_ = std::make_unique<MapRows>(out_, maps);
    for (std::size_t place = 0; place < systemTables.size(); ++place) {
        tables_.push_back(NewSystemTable(place));
    }
    if (out_.Count() < kFirstUserPage) {
        out_.Reserve(kFirstUserPage - out_.Count());
    }
}

std::unique_ptr<TableOutput> DatabaseOutput::NewSystemTable(std::size_t place) {
    std::size_t firstMap = 0;
    for (std::size_t before = 0; before < place; ++before) {
        firstMap += TableOutput::MapCount(systemTables_[before]);
    }
    const auto page = static_cast<PageNumber>(kObjectsPage + place);
    return std::make_unique<TableOutput>(out_, systemTables_[place], page, systemMaps_.get(), firstMap);
}

void DatabaseOutput::ResetSystemTable(std::size_t place) {
    tables_[place] = NewSystemTable(place);
}

void DatabaseOutput::RemoveTablesFrom(std::size_t count) {
    for (std::size_t i = count; i < tables_.size(); ++i) {
        const auto number = static_cast<std::int32_t>(tables_[i]->Definition().page);
        std::erase_if(ids_, [&](const auto& entry) { return entry.second == number; });
    }
    tables_.resize(count);
}

TableOutput& DatabaseOutput::AddTable(const TableDefinition& packed, PageNumber oldPage) {
    TableOutput& table = *tables_.emplace_back(std::make_unique<TableOutput>(out_, packed));
    ids_[static_cast<std::int32_t>(oldPage)] = static_cast<std::int32_t>(table.Definition().page);
    return table;
}

/// The other side of a relation is named by its definition page.
void DatabaseOutput::FollowPartners(TableDefinition& definition) const {
    for (LogicalIndex& index : definition.logicalIndexes) {
        if (index.side == RelationSide::None) {
            continue;
        }
        const auto partner = ids_.find(static_cast<std::int32_t>(index.partnerPage));
        if (partner == ids_.end()) {
            ThrowDamaged("관계 " + index.name + "의 상대 테이블이 없음");
        }
        index.partnerPage = static_cast<PageNumber>(partner->second);
    }
}

void DatabaseOutput::Finish(const FileHeader& header) {
    systemMaps_->Finish();
    for (const std::unique_ptr<TableOutput>& table : tables_) {
        FollowPartners(table->Definition());
        table->PutDefinition();
    }
    PutGlobalMaps(out_);
    FileHeader copy = header;
    Page page;
    BuildHeader(copy, page);
    out_.Put(0, page);
    out_.Finish();
}

}  // namespace tavrel::jet::compact
