#include "details/Differences.h"

#include <algorithm>

#include "details/ColumnOrder.h"
#include "details/Match.h"

namespace tavrel::details {

namespace {

/// Nothing when both sides have the thing and nothing of it differs.
template <typename Thing>
void AddDifference(std::vector<Difference>& list, Subject subject, const std::string& table, const Thing* a,
                   const Thing* b) {
    Difference difference{.subject = subject,
                          .where = a == nullptr   ? Where::OnlyB
                                   : b == nullptr ? Where::OnlyA
                                                  : Where::Both,
                          .table = table,
                          .name = a != nullptr ? a->name : b->name,
                          .a = a != nullptr ? FactsOf(*a) : Facts(),
                          .b = b != nullptr ? FactsOf(*b) : Facts(),
                          .aspects = {}};
    if (difference.where == Where::Both) {
        difference.aspects = DifferingAspects(difference.a, difference.b);
        if (difference.aspects.empty()) {
            return;
        }
    }
    list.push_back(std::move(difference));
}

using ColumnPairs = std::vector<std::pair<const Column*, const Column*>>;

/// Those of the pairs (places in them) that stand in another order in B.
std::vector<std::size_t> MovedPairs(const ColumnPairs& pairs) {
    std::vector<const Column*> inB;
    std::vector<std::size_t> common;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (pairs[i].first != nullptr && pairs[i].second != nullptr) {
            common.push_back(i);
            inB.push_back(pairs[i].second);
        }
    }
    std::vector<const Column*> sorted = inB;
    std::ranges::sort(sorted);  // by place in B's list, which they point into
    std::vector<std::size_t> places;
    for (const Column* column : inB) {
        places.push_back(static_cast<std::size_t>(std::ranges::lower_bound(sorted, column) - sorted.begin()));
    }
    std::vector<std::size_t> moved = Moved(places);
    for (std::size_t& place : moved) {
        place = common[place];
    }
    return moved;
}

std::string PlaceIn(const Table& table, const Column* column) {
    return std::to_string(column - table.columns.data() + 1);
}

void AddColumns(std::vector<Difference>& list, const Table& a, const Table& b) {
    const ColumnPairs pairs = Match(a.columns, b.columns);
    const std::vector<std::size_t> moved = MovedPairs(pairs);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const auto [ofA, ofB] = pairs[i];
        const std::size_t before = list.size();
        AddDifference(list, Subject::Column, a.name, ofA, ofB);
        if (!std::ranges::binary_search(moved, i)) {
            continue;
        }
        if (list.size() == before) {
            list.push_back(
                {Subject::Column, Where::Both, a.name, ofA->name, FactsOf(*ofA), FactsOf(*ofB), {}});
        }
        list.back().a.push_back({Aspect::Place, PlaceIn(a, ofA)});
        list.back().b.push_back({Aspect::Place, PlaceIn(b, ofB)});
        list.back().aspects.push_back(Aspect::Place);
    }
}

void AddIndexes(std::vector<Difference>& list, const Table& a, const Table& b) {
    for (const auto& [ofA, ofB] : Match(a.indexes, b.indexes)) {
        AddDifference(list, Subject::Index, a.name, ofA, ofB);
    }
}

}  // namespace

std::vector<Difference> Compare(const Schema& a, const Schema& b) {
    std::vector<Difference> list;
    auto tables = Match(a.tables, b.tables);
    std::ranges::stable_sort(tables, text::NameLess, [](const auto& pair) {
        return pair.first != nullptr ? pair.first->name : pair.second->name;
    });
    for (const auto& [ofA, ofB] : tables) {
        const std::string& name = ofA != nullptr ? ofA->name : ofB->name;
        AddDifference(list, Subject::Table, name, ofA, ofB);
        Table nothing;
        nothing.name = name;
        if (ofA != nullptr && ofB != nullptr) {
            AddColumns(list, *ofA, *ofB);
        }
        AddIndexes(list, ofA != nullptr ? *ofA : nothing, ofB != nullptr ? *ofB : nothing);
    }
    for (const auto& [ofA, ofB] : Match(a.relations, b.relations)) {
        AddDifference(list, Subject::Relation, ofA != nullptr ? ofA->table : ofB->table, ofA, ofB);
    }
    return list;
}

bool ShownByMarks(const Difference& difference, Aspect aspect) {
    if (difference.subject != Subject::Column) {
        return false;
    }
    switch (aspect) {
        case Aspect::Digits:
        case Aspect::Autonumber:
        case Aspect::FixedWidth:
        case Aspect::Place:
            return false;
        case Aspect::Spelling:
        case Aspect::Default:
            // Marks take no notice of letter case.
            return !text::EqualIgnoringCase(TextOf(difference.a, aspect), TextOf(difference.b, aspect));
        case Aspect::Size:
        case Aspect::ZeroLength:
            // Only texts have these cells.
            return TextOf(difference.a, Aspect::Type) == "Text" ||
                   TextOf(difference.b, Aspect::Type) == "Text";
        default:
            return true;
    }
}

std::vector<Difference> BeyondMarks(std::vector<Difference> differences, bool columns) {
    std::erase_if(differences, [&](Difference& difference) {
        if (difference.subject != Subject::Column) {
            return false;
        }
        std::erase_if(difference.aspects, [&](Aspect aspect) { return ShownByMarks(difference, aspect); });
        return !columns || difference.aspects.empty();
    });
    return differences;
}

}  // namespace tavrel::details
