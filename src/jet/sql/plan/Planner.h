// From a FROM clause and a condition to a stream of rows: what is read by which index, in which order tables
// are joined, and how.
#pragma once

#include "jet/sql/plan/Conjunct.h"
#include "jet/sql/plan/RowStream.h"

namespace tavrel::jet::sql {

class Planner {
  public:
    explicit Planner(Binder& binder) : binder_(binder) {}

    /// REQUIRES: the sources of `from` stand in the binder's scope, from the left to the right.
    RowStreamPtr Plan(std::span<const TableReference> from, std::vector<Conjunct> conditions);

    /// True when rows come by an index somewhere: changing them may change their order under way.
    [[nodiscard]] bool UsesIndex() const { return usesIndex_; }

  private:
    using Conjuncts = std::vector<Conjunct>;

    /// Tables, or tables joined already, that are to be joined.
    struct Unit {
        SourceMask mask = 0;
        RowStreamPtr rows;  ///< null: the table `source`, not yet read in any particular way
        std::size_t source = 0;
        Conjuncts conditions;  ///< of the table alone
        double size = 0;       ///< rows, roughly
    };

    Unit PlanGroup(std::vector<const TableReference*> tables, Conjuncts conditions);
    void Flatten(const TableReference& table, std::vector<Unit>& units, Conjuncts& conditions);
    Unit PlanTable(const TableReference& table);
    Unit PlanOuterJoin(const TableReference& table, Conjuncts& conditions);
    Unit JoinOuter(Unit kept, Unit other, Conjuncts conditions);

    void GiveConditions(std::vector<Unit>& units, Conjuncts& conditions);
    std::size_t ChooseNext(const Unit& joined, const std::vector<Unit>& units,
                           const Conjuncts& conditions) const;
    Unit JoinInner(Unit joined, Unit next, Conjuncts conditions);
    std::optional<RowStreamPtr> LookUpEach(const Unit& outer, Unit& inner, Conjuncts& conditions);
    RowStreamPtr HashBoth(Unit& build, Unit& probe, Conjuncts& conditions, bool keepBuild, bool keepProbe);
    RowStreamPtr Loop(Unit outer, Unit inner, Conjuncts conditions, bool keepOuter);

    void Read(Unit& unit);
    RowStreamPtr ScanByKey(Source& source, SourceMask mask, Conjuncts conditions);
    void Estimate(Unit& unit);
    [[nodiscard]] std::vector<Source*> SourcesOf(SourceMask mask) const;
    RowStreamPtr LookUp(std::size_t source, IndexLookup lookup, Conjuncts conditions);
    [[nodiscard]] Context& GetContext() const { return binder_.GetContext(); }

    Binder& binder_;
    std::size_t nextSource_ = 0;
    bool usesIndex_ = false;
};

}  // namespace tavrel::jet::sql
