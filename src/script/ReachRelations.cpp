#include "script/ReachRelations.h"

#include <algorithm>
#include <optional>

#include "details/Facts.h"
#include "details/Match.h"
#include "script/Names.h"
#include "script/Statements.h"
#include "text/Case.h"

namespace tavrel::script {

namespace {

using details::Column;
using details::FindNamed;
using details::Schema;
using details::Table;
using jet::RelationInfo;

bool HasKeyOver(const Table& table, const std::vector<std::string>& columns) {
    return std::ranges::any_of(table.indexes,
                               [&](const jet::IndexInfo& index) { return IsKeyOver(index, columns); });
}

bool AnyColumnChanges(const std::string& table, const std::vector<std::string>& columns, const Schema& before,
                      const Schema& after) {
    const Table* old = FindNamed(before.tables, table);
    const Table* fresh = FindNamed(after.tables, table);
    if (old == nullptr || fresh == nullptr) {
        return old != nullptr;
    }
    return std::ranges::any_of(columns, [&](const std::string& name) {
        const Column* from = FindNamed(old->columns, name);
        const Column* to = FindNamed(fresh->columns, name);
        return from != nullptr && (to == nullptr || !SameStorage(*from, *to));
    });
}

/// One of the keys that the relation may rest on does not stay as it is.
bool KeyChanges(const RelationInfo& relation, const Schema& before, const Schema& after) {
    const Table* old = FindNamed(before.tables, relation.referencedTable);
    const Table* fresh = FindNamed(after.tables, relation.referencedTable);
    if (old == nullptr || fresh == nullptr) {
        return old != nullptr;
    }
    return std::ranges::any_of(old->indexes, [&](const jet::IndexInfo& index) {
        const jet::IndexInfo* same = FindNamed(fresh->indexes, index.name);
        return IsKeyOver(index, relation.referencedColumns) &&
               (same == nullptr ||
                !DifferingAspects(details::FactsOf(index), details::FactsOf(*same)).empty());
    });
}

bool SameRelation(const RelationInfo& a, const RelationInfo& b) {
    return DifferingAspects(details::FactsOf(a), details::FactsOf(b)).empty();
}

/// Both connect the same columns, whatever their rules.
bool SameColumns(const RelationInfo& a, RelationInfo b) {
    b.updateCascade = a.updateCascade;
    b.deleteCascade = a.deleteCascade;
    b.deleteSetsNull = a.deleteSetsNull;
    b.enforced = a.enforced;
    b.oneToOne = a.oneToOne;
    return SameRelation(a, b);
}

class RelationReach {
  public:
    RelationReach(const Schema& a, const Schema& b, const Fixtures& fixtures, Schema& reached)
        : a_(a), fixtures_(fixtures), reached_(reached) {
        for (const Table& table : reached.tables) {
            if (FindNamed(b.tables, table.name) == nullptr) {
                oneSided_.insert(text::Upper(table.name));
            }
        }
    }

    void Add(const RelationInfo* ofA, const RelationInfo* ofB) {
        if (ofA != nullptr && MayStay(*ofA, ofB) && !IsDisturbed(*ofA, a_, reached_)) {
            reached_.relations.push_back(*ofA);
            return;
        }
        const RelationInfo* wanted = ofA != nullptr && MayStay(*ofA, ofB) ? ofA : ofB;
        if (wanted == nullptr || FindNamed(reached_.relations, wanted->name) != nullptr) {
            return;
        }
        if (std::optional<RelationInfo> made = Made(*wanted)) {
            reached_.relations.push_back(std::move(*made));
        }
    }

  private:
    /// A's relation is what it should be, or as near to it as statements come.
    [[nodiscard]] bool MayStay(const RelationInfo& ofA, const RelationInfo* ofB) const {
        if (fixtures_.Fixed(ofA)) {
            return true;
        }
        if (ofB != nullptr) {
            return SameRelation(ofA, *ofB) || (!ofB->enforced && SameColumns(ofA, *ofB)) ||
                   SameButForOneToOne(ofA, *ofB);
        }
        return !ConnectsCommonTables(ofA);
    }

    /// No statement makes a relation one to one: a second one of the same kind would be no better.
    static bool SameButForOneToOne(const RelationInfo& ofA, RelationInfo ofB) {
        const bool wanted = ofB.oneToOne;
        ofB.oneToOne = ofA.oneToOne;
        return wanted && SameRelation(ofA, ofB);
    }

    /// What a table that B lacks is related to goes with that table, and stays with it.
    [[nodiscard]] bool ConnectsCommonTables(const RelationInfo& relation) const {
        const auto onlyInA = [&](const std::string& table) { return oneSided_.contains(text::Upper(table)); };
        return !onlyInA(relation.table) && !onlyInA(relation.referencedTable);
    }

    [[nodiscard]] std::optional<RelationInfo> Made(const RelationInfo& wanted) const {
        const Table* child = FindNamed(reached_.tables, wanted.table);
        const Table* parent = FindNamed(reached_.tables, wanted.referencedTable);
        if (!wanted.enforced || !CanBeEntered(wanted.name, a_.sortOrder) || !IsOpen(child) ||
            !IsOpen(parent) || wanted.columns.empty() || !HasKeyOver(*parent, wanted.referencedColumns)) {
            return std::nullopt;
        }
        for (std::size_t i = 0; i < wanted.columns.size(); ++i) {
            const Column* from = FindNamed(child->columns, wanted.columns[i]);
            const Column* to = FindNamed(parent->columns, wanted.referencedColumns[i]);
            if (from == nullptr || to == nullptr || from == to || from->type != to->type ||
                from->scale != to->scale || !CanBeNamed(from->name) || !CanBeNamed(to->name)) {
                return std::nullopt;
            }
        }
        if (FindNamed(child->indexes, wanted.name) != nullptr) {
            return std::nullopt;  // the relation's index could not have its name
        }
        RelationInfo relation = wanted;
        relation.oneToOne = false;
        relation.deleteSetsNull = wanted.deleteSetsNull && !wanted.deleteCascade;
        return relation;
    }

    static bool IsOpen(const Table* table) {
        return table != nullptr && !table->ofEngine && CanBeNamed(table->name);
    }

    const Schema& a_;
    const Fixtures& fixtures_;
    Schema& reached_;
    std::set<std::string> oneSided_;  ///< tables that stay though B lacks them, in upper case
};

}  // namespace

bool IsDisturbed(const RelationInfo& relation, const Schema& before, const Schema& after) {
    return relation.enforced &&
           (AnyColumnChanges(relation.table, relation.columns, before, after) ||
            AnyColumnChanges(relation.referencedTable, relation.referencedColumns, before, after) ||
            KeyChanges(relation, before, after));
}

void ReachRelations(const Schema& a, const Schema& b, const Fixtures& fixtures, Schema& reached) {
    RelationReach reach(a, b, fixtures, reached);
    for (const auto& [ofA, ofB] : details::Match(a.relations, b.relations)) {
        reach.Add(ofA, ofB);
    }
}

}  // namespace tavrel::script
