#include "script/Reach.h"

#include <algorithm>

#include "details/Facts.h"
#include "details/Match.h"
#include "script/Fixtures.h"
#include "script/Names.h"
#include "script/ReachColumn.h"
#include "script/ReachRelations.h"
#include "text/Case.h"

namespace tavrel::script {

namespace {

using details::Column;
using details::FindNamed;
using details::Match;
using details::Table;
using jet::IndexInfo;

constexpr std::size_t kMaxIndexFields = 10;

bool HasCounter(const std::vector<Column>& columns) {
    return std::ranges::any_of(columns, IsCounter);
}

bool SameIndex(const IndexInfo& a, const IndexInfo& b) {
    return DifferingAspects(details::FactsOf(a), details::FactsOf(b)).empty();
}

class TableReach {
  public:
    TableReach(const Fixtures& fixtures, DataLoss loss) : fixtures_(fixtures), loss_(loss) {}

    [[nodiscard]] Table Changed(const Table& a, const Table& b) const {
        Table table = a;
        table.columns.clear();
        const auto columns = Match(a.columns, b.columns);
        for (const auto& [ofA, ofB] : columns) {
            if (ofA != nullptr && (ofB != nullptr || Stays(a, *ofA))) {
                table.columns.push_back(Present(
                    a, *ofA, ofB, {.hasRows = a.rows > 0, .hasCounter = AnotherCounts(a, columns, ofA)}));
            }
        }
        AddNew(table, columns);
        if (table.columns.empty()) {
            table.columns.push_back(a.columns.front());  // a table keeps one of its columns
        }
        table.indexes.clear();
        for (const auto& [ofA, ofB] : Match(a.indexes, b.indexes)) {
            AddIndex(table, a, ofA, ofB);
        }
        return table;
    }

    [[nodiscard]] static Table New(const Table& wanted) {
        Table table;
        table.name = wanted.name;
        AddNew(table, Match(std::vector<Column>(), wanted.columns));
        for (const IndexInfo& index : wanted.indexes) {
            AddReached(table, index);
        }
        return table;
    }

  private:
    [[nodiscard]] bool Stays(const Table& table, const Column& column) const {
        return loss_ == DataLoss::Refused || fixtures_.Fixed(table, column);
    }

    /// A counter of A, other than the column, that will still be one.
    [[nodiscard]] bool AnotherCounts(const Table& a,
                                     const std::vector<std::pair<const Column*, const Column*>>& columns,
                                     const Column* column) const {
        return std::ranges::any_of(columns, [&](const auto& pair) {
            const auto& [ofA, ofB] = pair;
            if (ofA == nullptr || ofA == column || !IsCounter(*ofA) || (ofB == nullptr && !Stays(a, *ofA))) {
                return false;
            }
            return IsCounter(Present(a, *ofA, ofB, {.hasRows = a.rows > 0, .hasCounter = false}));
        });
    }

    [[nodiscard]] Column Present(const Table& table, const Column& present, const Column* wanted,
                                 const ColumnPlace& place) const {
        if (wanted == nullptr || fixtures_.Fixed(table, present)) {
            return present;
        }
        return ReachColumn(present, *wanted, place, loss_);
    }

    static void AddNew(Table& table, const std::vector<std::pair<const Column*, const Column*>>& columns) {
        for (const auto& [ofA, ofB] : columns) {
            if (ofA != nullptr || !CanBeNamed(ofB->name) || FindNamed(table.columns, ofB->name) != nullptr) {
                continue;
            }
            if (auto column =
                    ReachNewColumn(*ofB, {.hasRows = false, .hasCounter = HasCounter(table.columns)})) {
                table.columns.push_back(std::move(*column));
            }
        }
    }

    void AddIndex(Table& table, const Table& a, const IndexInfo* ofA, const IndexInfo* ofB) const {
        const bool same = ofA != nullptr && ofB != nullptr && SameIndex(*ofA, *ofB);
        if (ofA != nullptr && (same || fixtures_.Fixed(a, *ofA))) {
            table.indexes.push_back(*ofA);
        } else if (ofB != nullptr) {
            AddReached(table, *ofB);
        }
    }

    /// Nothing is added when statements cannot make the index.
    static void AddReached(Table& table, const IndexInfo& wanted) {
        const bool fits = CanBeNamed(wanted.name) && FindNamed(table.indexes, wanted.name) == nullptr &&
                          !wanted.fields.empty() && wanted.fields.size() <= kMaxIndexFields;
        const bool secondKey = wanted.primary && std::ranges::any_of(table.indexes, [](const IndexInfo& i) {
                                   return i.primary;
                               });
        const auto usable = [&](const jet::IndexFieldInfo& field) {
            const Column* column = FindNamed(table.columns, field.name);
            return column != nullptr && column->type != jet::ColumnType::Ole && CanBeNamed(column->name);
        };
        if (!fits || secondKey || !std::ranges::all_of(wanted.fields, usable)) {
            return;
        }
        IndexInfo index = wanted;
        index.unique = wanted.unique || wanted.primary;
        index.required = wanted.required || wanted.primary;
        index.ignoreNulls = wanted.ignoreNulls && !index.required;
        table.indexes.push_back(std::move(index));
    }

    const Fixtures& fixtures_;
    DataLoss loss_;
};

/// As they are read from a file: what is listed as left is listed in the same order later.
void PutInOrder(details::Schema& schema) {
    const auto byName = [](const auto& a, const auto& b) {
        return text::Lower(a.name) < text::Lower(b.name);
    };
    for (Table& table : schema.tables) {
        std::ranges::stable_sort(table.indexes, byName);
    }
    std::ranges::stable_sort(schema.relations, byName);
}

}  // namespace

details::Schema Reach(const details::Schema& a, const details::Schema& b, DataLoss loss) {
    const Fixtures fixtures(a);
    const TableReach reach(fixtures, loss);
    details::Schema reached;
    reached.sortOrder = a.sortOrder;
    reached.otherNames = a.otherNames;
    for (const auto& [ofA, ofB] : Match(a.tables, b.tables)) {
        if (ofA != nullptr && ofB != nullptr && !ofB->ofEngine) {
            reached.tables.push_back(fixtures.Fixed(*ofA) ? *ofA : reach.Changed(*ofA, *ofB));
        } else if (ofA != nullptr) {
            if (loss == DataLoss::Refused || fixtures.Fixed(*ofA) || ofB != nullptr) {
                reached.tables.push_back(*ofA);
            }
        } else if (CanBeEntered(ofB->name, a.sortOrder) && !ofB->ofEngine &&
                   FindNamed(reached.tables, ofB->name) == nullptr &&
                   !a.otherNames.contains(text::Upper(ofB->name))) {
            Table table = TableReach::New(*ofB);
            if (!table.columns.empty()) {
                reached.tables.push_back(std::move(table));
            }
        }
    }
    ReachRelations(a, b, fixtures, reached);
    PutInOrder(reached);
    return reached;
}

}  // namespace tavrel::script
