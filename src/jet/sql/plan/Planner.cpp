#include "jet/sql/plan/Planner.h"

#include <algorithm>

#include "jet/sql/plan/IndexChoice.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

/// Looking a key up costs so many rows of a scan.
constexpr double kLookupCost = 3;

bool Joins(const Conjunct& conjunct, SourceMask a, SourceMask b) {
    const auto inside = [](SourceMask part, SourceMask whole) { return (part & ~whole) == 0; };
    return conjunct.joins && ((inside(conjunct.leftMask, a) && inside(conjunct.rightMask, b)) ||
                              (inside(conjunct.leftMask, b) && inside(conjunct.rightMask, a)));
}

/// Takes out what speaks of nothing but `mask`.
std::vector<Conjunct> TakeWithin(std::vector<Conjunct>& conditions, SourceMask mask) {
    const auto rest =
        std::stable_partition(conditions.begin(), conditions.end(),
                              [mask](const Conjunct& conjunct) { return (conjunct.mask & ~mask) != 0; });
    std::vector<Conjunct> taken(std::make_move_iterator(rest), std::make_move_iterator(conditions.end()));
    conditions.erase(rest, conditions.end());
    return taken;
}

void Append(std::vector<Conjunct>& to, std::vector<Conjunct> from) {
    std::ranges::move(from, std::back_inserter(to));
}

NodeList NodesOf(std::vector<Conjunct> conditions) {
    NodeList nodes;
    for (Conjunct& condition : conditions) {
        nodes.push_back(std::move(condition.node));
    }
    return nodes;
}

}  // namespace

RowStreamPtr Planner::Plan(std::span<const TableReference> from, std::vector<Conjunct> conditions) {
    // What speaks of no table decides once for all rows.
    std::vector<Conjunct> constant = TakeWithin(conditions, 0);
    if (from.empty()) {
        return MakeGate(MakeSingleRow(), NodesOf(std::move(constant)));
    }
    std::vector<const TableReference*> tables;
    for (const TableReference& table : from) {
        tables.push_back(&table);
    }
    Unit all = PlanGroup(std::move(tables), std::move(conditions));
    Read(all);
    return MakeGate(std::move(all.rows), NodesOf(std::move(constant)));
}

/// Joins tables that need no particular order, smallest first, along their equal columns.
Planner::Unit Planner::PlanGroup(std::vector<const TableReference*> tables, Conjuncts conditions) {
    std::vector<Unit> units;
    for (const TableReference* table : tables) {
        Flatten(*table, units, conditions);
    }
    GiveConditions(units, conditions);
    const auto smallest = std::ranges::min_element(units, {}, &Unit::size);
    Unit joined = std::move(*smallest);
    units.erase(smallest);
    while (!units.empty()) {
        const std::size_t place = ChooseNext(joined, units, conditions);
        Unit next = std::move(units[place]);
        units.erase(units.begin() + static_cast<std::ptrdiff_t>(place));
        Conjuncts usable = TakeWithin(conditions, joined.mask | next.mask);
        joined = JoinInner(std::move(joined), std::move(next), std::move(usable));
    }
    Append(joined.conditions, std::move(conditions));
    return joined;
}

void Planner::Flatten(const TableReference& table, std::vector<Unit>& units, Conjuncts& conditions) {
    if (table.left == nullptr) {
        units.push_back(PlanTable(table));
    } else if (table.join == JoinKind::Inner) {
        Flatten(*table.left, units, conditions);
        Flatten(*table.right, units, conditions);
        AppendConjuncts(binder_, *table.condition, sqlErrors::kTypesInExpression, conditions);
    } else {
        units.push_back(PlanOuterJoin(table, conditions));
    }
}

Planner::Unit Planner::PlanTable(const TableReference&) {
    Unit unit;
    unit.source = nextSource_++;
    unit.mask = SourceMask{1} << unit.source;
    Estimate(unit);
    return unit;
}

/// Conditions on the kept side alone may be tested before the join, the others only behind it.
Planner::Unit Planner::PlanOuterJoin(const TableReference& table, Conjuncts& conditions) {
    const bool right = table.join == JoinKind::Right;
    Unit left = PlanGroup({table.left.get()}, {});
    Unit other = PlanGroup({table.right.get()}, {});
    if (right) {
        std::swap(left, other);
    }
    Conjuncts on;
    AppendConjuncts(binder_, *table.condition, sqlErrors::kTypesInExpression, on);
    Append(left.conditions, TakeWithin(conditions, left.mask));
    Append(other.conditions, TakeWithin(on, other.mask));
    Estimate(left);
    Estimate(other);
    const SourceMask inReach = left.mask | other.mask;
    if (std::ranges::any_of(
            on, [inReach](const Conjunct& conjunct) { return (conjunct.mask & ~inReach) != 0; })) {
        throw MakeError(sqlErrors::kInJoin);
    }
    return JoinOuter(std::move(left), std::move(other), std::move(on));
}

Planner::Unit Planner::JoinOuter(Unit kept, Unit other, Conjuncts conditions) {
    Unit joined;
    joined.mask = kept.mask | other.mask;
    joined.size = std::max(kept.size, other.size);
    const bool equal = std::ranges::any_of(
        conditions, [&](const Conjunct& condition) { return Joins(condition, kept.mask, other.mask); });
    if (auto inner = LookUpEach(kept, other, conditions)) {
        Read(kept);
        joined.rows = MakeNestedLoop(GetContext(), std::move(kept.rows), std::move(*inner),
                                     NodesOf(std::move(conditions)), true, SourcesOf(other.mask));
    } else if (equal && kept.size < other.size) {
        joined.rows = HashBoth(kept, other, conditions, true, false);
    } else if (equal) {
        joined.rows = HashBoth(other, kept, conditions, false, true);
    } else {
        joined.rows = Loop(std::move(kept), std::move(other), std::move(conditions), true);
    }
    return joined;
}

/// Hands each table its own conditions.
void Planner::GiveConditions(std::vector<Unit>& units, Conjuncts& conditions) {
    for (Unit& unit : units) {
        Append(unit.conditions, TakeWithin(conditions, unit.mask));
        Estimate(unit);
    }
}

/// The smallest of those that an equality connects with what is joined, else the smallest.
std::size_t Planner::ChooseNext(const Unit& joined, const std::vector<Unit>& units,
                                const Conjuncts& conditions) const {
    std::size_t best = 0;
    bool bestConnected = false;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const bool connected = std::ranges::any_of(conditions, [&](const Conjunct& condition) {
            return Joins(condition, joined.mask, units[i].mask);
        });
        const bool better = connected != bestConnected ? connected : units[i].size < units[best].size;
        if (i == 0 || better) {
            best = i;
            bestConnected = connected;
        }
    }
    return best;
}

Planner::Unit Planner::JoinInner(Unit joined, Unit next, Conjuncts conditions) {
    Unit both;
    both.mask = joined.mask | next.mask;
    both.size = std::max(joined.size, next.size);
    const bool equal = std::ranges::any_of(
        conditions, [&](const Conjunct& condition) { return Joins(condition, joined.mask, next.mask); });
    if (auto inner = LookUpEach(joined, next, conditions)) {
        Read(joined);
        both.rows = MakeNestedLoop(GetContext(), std::move(joined.rows), std::move(*inner),
                                   NodesOf(std::move(conditions)), false, {});
    } else if (equal) {
        const bool buildNext = next.size <= joined.size;
        both.rows = buildNext ? HashBoth(next, joined, conditions, false, false)
                              : HashBoth(joined, next, conditions, false, false);
    } else {
        both.size = joined.size * next.size;
        both.rows = Loop(std::move(joined), std::move(next), std::move(conditions), false);
    }
    return both;
}

/// An index of the inner table that finds the partners of an outer row, when that is cheaper than reading the
/// table once.
std::optional<RowStreamPtr> Planner::LookUpEach(const Unit& outer, Unit& inner, Conjuncts& conditions) {
    if (inner.rows != nullptr || binder_.GetScope().sources[inner.source]->Table() == nullptr) {
        return std::nullopt;
    }
    // Terms are looked for among all conditions: those of the table alone may lengthen the key.
    const std::size_t own = inner.conditions.size();
    Append(inner.conditions, std::move(conditions));
    const double whole =
        static_cast<double>(binder_.GetScope().sources[inner.source]->Table()->RowEstimate());
    IndexChoice choice = ChooseIndex(binder_, inner.source, inner.conditions, outer.mask);
    const bool useful = choice.found && outer.size * (1 + choice.rows) * kLookupCost < whole + outer.size;
    conditions.assign(std::make_move_iterator(inner.conditions.begin() + static_cast<std::ptrdiff_t>(own)),
                      std::make_move_iterator(inner.conditions.end()));
    inner.conditions.erase(inner.conditions.begin() + static_cast<std::ptrdiff_t>(own),
                           inner.conditions.end());
    if (!useful) {
        return std::nullopt;
    }
    return LookUp(inner.source, std::move(choice.lookup), std::move(inner.conditions));
}

RowStreamPtr Planner::LookUp(std::size_t source, IndexLookup lookup, Conjuncts conditions) {
    usesIndex_ = true;
    return MakeIndexScan(GetContext(), *binder_.GetScope().sources[source], std::move(lookup),
                         NodesOf(std::move(conditions)));
}

RowStreamPtr Planner::HashBoth(Unit& build, Unit& probe, Conjuncts& conditions, bool keepBuild,
                               bool keepProbe) {
    const TextComparer& texts = GetContext().Texts();
    HashJoin join{nullptr,
                  nullptr,
                  SourcesOf(build.mask),
                  SourcesOf(probe.mask),
                  KeyWriter(texts),
                  KeyWriter(texts),
                  {},
                  keepBuild,
                  keepProbe};
    for (Conjunct& condition : conditions) {
        if (!Joins(condition, build.mask, probe.mask)) {
            join.conditions.push_back(std::move(condition.node));
            continue;
        }
        const bool buildLeft = (condition.leftMask & ~build.mask) == 0;
        const KeyMode mode = KeyModeOf(condition.leftType, condition.rightType);
        join.buildKey.Add(binder_.Bind(*condition.expression->arguments[buildLeft ? 0 : 1]), mode);
        join.probeKey.Add(binder_.Bind(*condition.expression->arguments[buildLeft ? 1 : 0]), mode);
    }
    binder_.TakeMask();
    Read(build);
    Read(probe);
    join.build = std::move(build.rows);
    join.probe = std::move(probe.rows);
    return MakeHashJoin(GetContext(), std::move(join));
}

RowStreamPtr Planner::Loop(Unit outer, Unit inner, Conjuncts conditions, bool keepOuter) {
    Read(outer);
    Read(inner);
    std::vector<Source*> innerSources = SourcesOf(inner.mask);
    // Inside a correlated query the inner rows may change from one opening to the next.
    RowStreamPtr rows = binder_.GetScope().reachedOut ? std::move(inner.rows)
                                                      : MakeCache(std::move(inner.rows), innerSources);
    return MakeNestedLoop(GetContext(), std::move(outer.rows), std::move(rows),
                          NodesOf(std::move(conditions)), keepOuter, std::move(innerSources));
}

/// Decides how a unit is read, and puts its conditions to work.
void Planner::Read(Unit& unit) {
    if (unit.rows != nullptr) {
        unit.rows = MakeFilter(std::move(unit.rows), NodesOf(std::exchange(unit.conditions, {})));
        return;
    }
    Source& source = *binder_.GetScope().sources[unit.source];
    if (source.Table() == nullptr) {
        unit.rows = MakeQueryScan(GetContext(), source, NodesOf(std::exchange(unit.conditions, {})));
        return;
    }
    IndexChoice choice = ChooseIndex(binder_, unit.source, unit.conditions, 0);
    Conjuncts conditions = std::exchange(unit.conditions, {});
    unit.rows = choice.found ? LookUp(unit.source, std::move(choice.lookup), std::move(conditions))
                             : ScanByKey(source, unit.mask, std::move(conditions));
}

/// A correlated query is opened for row after row of the outer one: equalities with what that row holds
/// become keys.  The side that is kept as key must stay the same for all of those rows.
RowStreamPtr Planner::ScanByKey(Source& source, SourceMask mask, Conjuncts conditions) {
    const TextComparer& texts = GetContext().Texts();
    KeyedRows wanted{KeyWriter(texts), KeyWriter(texts), {}};
    for (const Conjunct& condition : conditions) {
        const bool left = condition.leftMask == mask && !condition.leftOutside && condition.rightMask == 0;
        const bool right = condition.rightMask == mask && !condition.rightOutside && condition.leftMask == 0;
        if (binder_.GetScope().reachedOut && condition.equality && left != right) {
            const KeyMode mode = KeyModeOf(condition.leftType, condition.rightType);
            wanted.key.Add(binder_.Bind(*condition.expression->arguments[left ? 0 : 1]), mode);
            wanted.sought.Add(binder_.Bind(*condition.expression->arguments[left ? 1 : 0]), mode);
        }
    }
    binder_.TakeMask();
    if (wanted.key.Empty()) {
        return MakeTableScan(GetContext(), source, NodesOf(std::move(conditions)));
    }
    wanted.filters = NodesOf(std::move(conditions));
    return MakeKeyedScan(GetContext(), source, std::move(wanted));
}

void Planner::Estimate(Unit& unit) {
    constexpr double kDerivedRows = 1000;
    if (unit.rows != nullptr) {
        return;
    }
    const Source& source = *binder_.GetScope().sources[unit.source];
    unit.size =
        source.Table() == nullptr ? kDerivedRows : ChooseIndex(binder_, unit.source, unit.conditions, 0).rows;
}

std::vector<Source*> Planner::SourcesOf(SourceMask mask) const {
    std::vector<Source*> sources;
    for (std::size_t i = 0; i < binder_.GetScope().sources.size(); ++i) {
        if ((mask & SourceMask{1} << i) != 0) {
            sources.push_back(binder_.GetScope().sources[i].get());
        }
    }
    return sources;
}

}  // namespace tavrel::jet::sql
