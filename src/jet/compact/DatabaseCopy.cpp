#include "jet/compact/DatabaseCopy.h"

#include <algorithm>

#include "jet/compact/CatalogSalvage.h"
#include "jet/compact/DefinitionRepair.h"
#include "jet/compact/LostPages.h"
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

/// A relation that is not whole is taken out of its tables, which has to happen before they are written.
void RequireWholeRelations(Database& source, std::vector<SourceTable> tables) {
    RelationNames names;
    for (const CatalogObject& object : source.Catalog().Objects()) {
        names.Add(static_cast<ObjectType>(object.type), object.name);
    }
    LossLog faults;
    if (!RelationSalvage(tables, faults).Settle(source.Catalog().RelationRows(), names)) {
        ThrowDamaged("관계가 온전하지 않음");
    }
}

/// The tables of a database whose catalog is in order.  Throws 3428 when it is not.
std::vector<SourceTable> SoundTables(Database& source) {
    std::vector<SourceTable> tables;
    std::set<std::int32_t> ids;
    LossLog faults;
    for (const CatalogObject& object : source.Catalog().Objects()) {
        if (!object.IsTable() || object.id <= static_cast<std::int32_t>(kRelationshipsPage)) {
            continue;
        }
        SourceTable table{object.name, ReadTableDefinition(source.Pager(), object.DefinitionPage()), true};
        if (object.id != static_cast<std::int32_t>(object.DefinitionPage()) ||
            !ids.insert(object.id).second || !RepairDefinition(table.definition, table.name, faults)) {
            ThrowDamaged("테이블 " + object.name + "의 정의가 잘못됨");
        }
        tables.push_back(std::move(table));
    }
    RequireWholeRelations(source, tables);
    std::ranges::stable_sort(tables, text::NameLess, &SourceTable::name);
    return tables;
}

class DatabaseCopier {
  public:
    DatabaseCopier(Database& source, PageOutput& out, ScratchNumbers& numbers, CopyOptions options)
        : source_(source),
          salvageAll_(options.salvageAll),
          pages_(source.Pager(), std::move(options.progress)),
          map_(numbers, pages_.Count()),
          context_{.source = pages_, .out = out, .map = map_, .nextMark = 1},
          lost_(pages_) {}

    CopyResult Run() {
        ReadSystemDefinitions();
        std::vector<SourceTable> tables = Tables();
        std::vector<TableDefinition> packed;
        for (const TableDefinition& table : systemTables_) {
            packed.push_back(PackedTable(table).Definition());
        }
        DatabaseOutput database(context_.out, packed);
        for (const SourceTable& table : tables) {
            CopyUserTable(database, table);
        }
        for (std::size_t place = 0; place < systemTables_.size(); ++place) {
            CopySystemTable(database, place);
        }
        if (!survey_ && lost_.AnyHasLostRows()) {
            ThrowDamaged("테이블의 지도에 없는 페이지에 행이 있음");
        }
        database.Finish(source_.Header());
        pages_.Finish();
        return {survey_.has_value(), losses_.Take(), std::move(counts_)};
    }

  private:
    void ReadSystemDefinitions() {
        for (std::size_t i = 0; i < std::size(kSystemTables); ++i) {
            bool intact = true;
            systemTables_.push_back(SystemDefinition(source_.Pager(),
                                                     static_cast<PageNumber>(kObjectsPage + i),
                                                     source_.Header().sortOrder, intact));
            systemIntact_.push_back(intact);
        }
    }

    std::vector<SourceTable> Tables() {
        if (!salvageAll_ && std::ranges::all_of(systemIntact_, [](bool intact) { return intact; })) {
            try {
                return SoundTables(source_);
            } catch (const Error& error) {
                if (!IsDamage(error)) {
                    throw;
                }
            }
        }
        return Catalog().Tables();
    }

    /// From the first use on the database counts as damaged.
    const SourceSurvey& Survey() {
        if (!survey_) {
            survey_.emplace(pages_);
        }
        return *survey_;
    }

    CatalogSalvage& Catalog() {
        if (!catalog_) {
            catalog_.emplace(pages_, Survey(), source_.Header(), systemTables_, losses_);
        }
        return *catalog_;
    }

    /// False when the table turns out not to be sound; nothing is left of it then.
    bool CopySound(const TableDefinition& definition, const std::function<TableOutput&()>& begin,
                   const std::function<void()>& takeBack, IdColumns idColumns) {
        const PageOutput::Position before = context_.out.Here();
        try {
            const PackedTable packed(definition);
            TableOutput& out = begin();
            TableCopy(context_, definition, packed, out, std::move(idColumns)).Run();
            out.FinishIndexes();
            lost_.AddTable(definition, out.Definition().rowCount);
            return true;
        } catch (const Error& error) {
            if (!IsDamage(error)) {
                throw;
            }
            takeBack();
            context_.out.Rewind(before);
            return false;
        }
    }

    void CopyUserTable(DatabaseOutput& database, const SourceTable& table) {
        const std::size_t tables = database.TableCount();
        const auto begin = [&]() -> TableOutput& {
            return database.AddTable(PackedTable(table.definition).Definition(), table.definition.page);
        };
        const auto takeBack = [&] { database.RemoveTablesFrom(tables); };
        if (!salvageAll_ && table.intact && CopySound(table.definition, begin, takeBack, {})) {
            const std::uint64_t rows = database.LastTable().Definition().rowCount;
            counts_.push_back({table.name, rows, rows});
            if (table.definition.realIndexes.empty()) {
                TellMissing(table, rows, losses_);
            }
            return;
        }
        SalvageUserTable(database, table);
    }

    /// Rows that the definition counts and nobody has told of.  Where an index agrees with the rows, a count
    /// that is higher was never put right by a session that ended early.
    void TellMissing(const SourceTable& table, std::uint64_t rows, LossLog& losses) {
        if (table.definition.rowCount > rows && !losses.TellsOf("테이블 " + table.name) &&
            !Survey().AnyIndexNames(table.definition, rows)) {
            losses.Add("테이블 " + table.name, "정의에 적힌 행 " + std::to_string(table.definition.rowCount) +
                                                   "개 중 " + std::to_string(rows) + "개만 있음");
        }
    }

    /// An index whose keys cannot be made is given up rather than its rows.
    void SalvageUserTable(DatabaseOutput& database, const SourceTable& table) {
        TableDefinition definition = table.definition;
        LossLog given;
        while (true) {
            LossLog losses;
            TableSalvage salvage(pages_, Survey(), definition, table.name, losses);
            try {
                salvage.Collect();
            } catch (const UnknownKey& unknown) {
                if (!RemoveTree(definition, unknown.Index())) {
                    throw;
                }
                given.Add("테이블 " + table.name, "인덱스를 다시 만들 수 없음: " + unknown.Description());
                continue;
            }
            const PackedTable packed(definition);
            TableOutput& out = database.AddTable(packed.Definition(), definition.page);
            const SalvagedRows rows = salvage.Write(out, packed, context_.nextMark);
            Account(table.name, rows, out, 0);
            TellMissing(table, rows.readable, losses);
            losses_.Append(std::move(given));
            losses_.Append(std::move(losses));
            return;
        }
    }

    void CopySystemTable(DatabaseOutput& database, std::size_t place) {
        const TableDefinition& definition = systemTables_[place];
        const std::string name = kSystemTables[place].name;
        IdColumns idColumns{.ids = &database.Ids(), .places = {}};
        for (const char* column : kSystemTables[place].idColumns) {
            idColumns.places.push_back(definition.FindColumnByName(column));
        }
        const auto begin = [&]() -> TableOutput& { return database.SystemTable(place); };
        const auto takeBack = [&] { database.ResetSystemTable(place); };
        const bool changed = catalog_ && catalog_->Changed();
        if (!salvageAll_ && !changed && systemIntact_[place] &&
            CopySound(definition, begin, takeBack, std::move(idColumns))) {
            const std::uint64_t rows = begin().Definition().rowCount;
            counts_.push_back({name, rows, rows});
            return;
        }
        SalvageRules rules = Catalog().RulesFor(place, database.Ids());
        const std::size_t added = rules.added.size();
        TableSalvage salvage(pages_, Survey(), definition, name, losses_, std::move(rules));
        salvage.Collect();
        const PackedTable packed(definition);
        TableOutput& out = begin();
        Account(name, salvage.Write(out, packed, context_.nextMark), out, added);
    }

    /// Whatever was readable is there, or was told.
    void Account(const std::string& name, const SalvagedRows& rows, TableOutput& out, std::size_t added) {
        out.FinishIndexes();
        const std::uint64_t written = out.Definition().rowCount;
        if (written != rows.readable - rows.leftOut + added) {
            ThrowDamaged("테이블 " + name + "의 읽을 수 있는 행 " + std::to_string(rows.readable) + "개 중 " +
                         std::to_string(written) + "개만 옮겨짐");
        }
        counts_.push_back({name, rows.readable, written});
    }

    Database& source_;
    bool salvageAll_;
    SourcePages pages_;
    RowMap map_;
    CopyContext context_;
    LostPages lost_;
    LossLog losses_;
    std::vector<TableDefinition> systemTables_;
    std::vector<bool> systemIntact_;
    std::optional<SourceSurvey> survey_;
    std::optional<CatalogSalvage> catalog_;
    std::vector<CompactedTable> counts_;
};

}  // namespace

bool IsDamage(const Error& error) {
    return error.Number() == errors::kDamaged || error.Number() == errors::kObjectNotFound;
}

CopyResult CopyDatabase(Database& source, PageOutput& out, ScratchNumbers& numbers, CopyOptions options) {
    return DatabaseCopier(source, out, numbers, std::move(options)).Run();
}

}  // namespace tavrel::jet::compact
