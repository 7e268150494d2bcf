#include "jet/engine/compact/SoundCopy.h"

#include <algorithm>

#include "jet/engine/compact/LostPages.h"
#include "jet/storage/UsageMap.h"
#include "text/Case.h"

namespace tavrel::jet::compact {

namespace {

struct SystemTableFacts {
    const char* name;
    std::vector<const char*> idColumns;
};

/// The engine's tables by place, and what in them is the number of an object.
const SystemTableFacts kSystemTables[] = {
    {"MSysObjects", {"Id", "ParentId"}},
    {"MSysACEs", {"ObjectId"}},
    {"MSysQueries", {"ObjectId"}},
    {"MSysRelationships", {}},
};

std::vector<const CatalogObject*> UserTables(Database& source) {
    std::vector<const CatalogObject*> tables;
    for (const CatalogObject& object : source.Catalog().Objects()) {
        if (object.IsTable() && object.id > static_cast<std::int32_t>(kRelationshipsPage)) {
            tables.push_back(&object);
        }
    }
    std::ranges::stable_sort(tables, [](const CatalogObject* a, const CatalogObject* b) {
        return a->name != b->name ? text::NameLess(a->name, b->name) : a->id < b->id;
    });
    const auto same = std::ranges::adjacent_find(tables, {}, &CatalogObject::id);
    if (same != tables.end() || std::ranges::any_of(tables, [](const auto* t) {
            return t->id != std::int32_t(t->DefinitionPage());
        })) {
        ThrowDamaged("테이블의 번호가 잘못됨");
    }
    return tables;
}

class SoundCopier {
  public:
    SoundCopier(Database& source, PageOutput& out, ScratchNumbers& numbers, SourcePages::ProgressFn progress)
        : source_(source),
          pages_(source.Pager(), std::move(progress)),
          map_(numbers, pages_.Count()),
          context_{.source = pages_, .out = out, .map = map_, .nextMark = 1},
          lost_(pages_) {}

    std::vector<CompactedTable> Run() {
        std::vector<PackedTable> systemTables;
        std::vector<TableDefinition> packed;
        for (std::size_t i = 0; i < std::size(kSystemTables); ++i) {
            const auto page = static_cast<PageNumber>(kObjectsPage + i);
            packed.push_back(systemTables.emplace_back(source_.Catalog().Definition(page)).Definition());
        }
        DatabaseOutput database(context_.out, packed);
        for (const CatalogObject* object : UserTables(source_)) {
            CopyUserTable(database, *object);
        }
        for (std::size_t i = 0; i < systemTables.size(); ++i) {
            CopySystemTable(database, i, systemTables[i]);
        }
        if (lost_.AnyHasLostRows()) {
            ThrowDamaged("테이블의 지도에 없는 페이지에 행이 있음");
        }
        database.Finish(source_.Header());
        pages_.Finish();
        return std::move(tables_);
    }

  private:
    void CopyUserTable(DatabaseOutput& database, const CatalogObject& object) {
        const TableDefinition definition = ReadTableDefinition(source_.Pager(), object.DefinitionPage());
        const PackedTable packed(definition);
        TableOutput& out = database.AddTable(packed.Definition(), definition.page);
        TableCopy(context_, definition, packed, out).Run();
        out.FinishIndexes();
        Account(object.name, definition, out);
    }

    void CopySystemTable(DatabaseOutput& database, std::size_t place, const PackedTable& packed) {
        const SystemTableFacts& facts = kSystemTables[place];
        const TableDefinition& definition =
            source_.Catalog().Definition(static_cast<PageNumber>(kObjectsPage + place));
        IdColumns idColumns{.ids = &database.Ids(), .places = {}};
        for (const char* name : facts.idColumns) {
            idColumns.places.push_back(definition.FindColumnByName(name));
        }
        TableOutput& out = database.SystemTable(place);
        TableCopy(context_, definition, packed, out, std::move(idColumns)).Run();
        Account(facts.name, definition, out);
    }

    void Account(const std::string& name, const TableDefinition& definition, const TableOutput& out) {
        const std::uint64_t rows = out.Definition().rowCount;
        tables_.push_back({name, rows, rows});
        lost_.AddTable(definition, rows);
    }

    Database& source_;
    SourcePages pages_;
    RowMap map_;
    CopyContext context_;
    LostPages lost_;
    std::vector<CompactedTable> tables_;
};

}  // namespace

std::vector<CompactedTable> CopySound(Database& source, PageOutput& out, ScratchNumbers& numbers,
                                      SourcePages::ProgressFn progress) {
    return SoundCopier(source, out, numbers, std::move(progress)).Run();
}

}  // namespace tavrel::jet::compact
