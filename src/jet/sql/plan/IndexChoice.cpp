#include "jet/sql/plan/IndexChoice.h"

#include <algorithm>
#include <cmath>

namespace tavrel::jet::sql {

namespace {

constexpr double kUnknownDistinctKeys = 1000;
constexpr double kLeastFanOut = 10;
/// Part of the rows that a bound on one side, on both sides leaves over.
constexpr double kHalfOpen = 0.25;
constexpr double kClosed = 0.1;
/// Fetching a row by an index costs so many rows of a scan.
constexpr double kFetchCost = 3;

/// The terms that serve an index: for each part an equal one, then one part with something wider.
struct Match {
    std::size_t index = 0;
    std::vector<const ColumnTerm*> equal;
    const ColumnTerm* null = nullptr;
    const ColumnTerm* among = nullptr;
    const ColumnTerm* from = nullptr;
    const ColumnTerm* to = nullptr;
    double rows = 0;
};

class Chooser {
  public:
    Chooser(const TableAccess& table, std::size_t source, const std::vector<Conjunct>& conjuncts,
            SourceMask available)
        : table_(table), rows_(static_cast<double>(table.RowEstimate())) {
        for (const Conjunct& conjunct : conjuncts) {
            for (const ColumnTerm& term : conjunct.terms) {
                if (term.source == source && (term.mask & ~available) == 0) {
                    terms_.push_back(&term);
                }
            }
        }
    }

    [[nodiscard]] double Rows() const { return rows_; }

    [[nodiscard]] std::optional<Match> Best() const {
        std::optional<Match> best;
        for (std::size_t index = 0; !terms_.empty() && index < table_.Indexes().size(); ++index) {
            Match match = MatchOf(index);
            if (!match.equal.empty() || match.null || match.among || match.from || match.to) {
                match.rows = Estimate(match);
                if (!best || match.rows < best->rows) {
                    best = std::move(match);
                }
            }
        }
        const bool worthIt = best && (!best->equal.empty() || best->rows * kFetchCost < rows_);
        return worthIt ? best : std::nullopt;
    }

  private:
    [[nodiscard]] const ColumnTerm* Find(std::size_t column, ColumnTerm::Kind kind) const {
        const auto found = std::ranges::find_if(
            terms_, [&](const ColumnTerm* term) { return term->column == column && term->kind == kind; });
        return found == terms_.end() ? nullptr : *found;
    }

    [[nodiscard]] Match MatchOf(std::size_t place) const {
        const TableIndex& index = table_.Indexes()[place];
        Match match;
        match.index = place;
        for (const TableIndex::Part& part : index.parts) {
            if (const ColumnTerm* term = Find(part.column, ColumnTerm::Kind::Equal)) {
                match.equal.push_back(term);
                continue;
            }
            match.null = index.ignoresNulls ? nullptr : Find(part.column, ColumnTerm::Kind::Null);
            match.among = match.null ? nullptr : Find(part.column, ColumnTerm::Kind::Among);
            if (match.null == nullptr && match.among == nullptr) {
                match.from = Find(part.column, ColumnTerm::Kind::From);
                match.to = Find(part.column, ColumnTerm::Kind::To);
            }
            break;
        }
        return match;
    }

    [[nodiscard]] double Estimate(const Match& match) const {
        const TableIndex& index = table_.Indexes()[match.index];
        const double values = match.among ? static_cast<double>(match.among->values.size()) : 1;
        const std::size_t parts = match.equal.size() + (match.null || match.among ? 1 : 0);
        if (parts == index.parts.size() && index.unique && match.null == nullptr) {
            return std::min(values, rows_);
        }
        double rows = rows_;
        if (parts > 0) {
            const double distinct =
                index.distinctKeys > 0 ? static_cast<double>(index.distinctKeys) : kUnknownDistinctKeys;
            const double share = static_cast<double>(parts) / static_cast<double>(index.parts.size());
            const double least = index.distinctKeys > 0 ? 1 : kLeastFanOut;
            rows = std::min(std::max(rows_ / std::pow(distinct, share), least) * values, rows_);
        }
        return match.from && match.to ? rows * kClosed : match.from || match.to ? rows * kHalfOpen : rows;
    }

    const TableAccess& table_;
    double rows_;
    std::vector<const ColumnTerm*> terms_;
};

NodeList BindAll(Binder& binder, const std::vector<const Expression*>& expressions) {
    NodeList nodes;
    for (const Expression* expression : expressions) {
        nodes.push_back(binder.Bind(*expression));
    }
    return nodes;
}

IndexLookup LookupOf(Binder& binder, const Match& match) {
    IndexLookup lookup;
    lookup.index = match.index;
    for (const ColumnTerm* term : match.equal) {
        lookup.equal.push_back(binder.Bind(*term->values[0]));
    }
    lookup.null = match.null != nullptr;
    if (match.among != nullptr) {
        lookup.among = BindAll(binder, match.among->values);
    }
    if (match.from != nullptr) {
        lookup.from = binder.Bind(*match.from->values[0]);
        lookup.fromIncluded = match.from->included;
    }
    if (match.to != nullptr) {
        lookup.to = binder.Bind(*match.to->values[0]);
        lookup.toIncluded = match.to->included;
    }
    return lookup;
}

}  // namespace

IndexChoice ChooseIndex(Binder& binder, std::size_t source, const std::vector<Conjunct>& conjuncts,
                        SourceMask available) {
    const Chooser chooser(*binder.GetScope().sources[source]->Table(), source, conjuncts, available);
    IndexChoice choice;
    choice.rows = chooser.Rows();
    if (const auto best = chooser.Best()) {
        choice.found = true;
        choice.rows = best->rows;
        choice.lookup = LookupOf(binder, *best);
        binder.TakeMask();
    }
    return choice;
}

}  // namespace tavrel::jet::sql
