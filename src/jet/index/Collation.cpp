#include "jet/index/Collation.h"

#include <algorithm>
#include <map>

namespace tavrel::jet {

namespace {

constexpr TextWeight kUnknownWeight{0, 0, kNoMark, WeightKind::Unknown};
/// Second bytes of two-byte weights run from 02 to FF.
constexpr unsigned kTrailFirst = 2;
constexpr unsigned kTrails = 254;

TextWeight WeightInRange(const WeightRange& range, char16_t unit) {
    const unsigned steps = (range.primary & 0xFFU) - kTrailFirst + unit - range.first;
    const unsigned lead = (range.primary >> 8) + steps / kTrails;
    return {unit, static_cast<std::uint16_t>(lead << 8 | (kTrailFirst + steps % kTrails))};
}

}  // namespace

const Collation* Collation::Find(std::uint16_t sortOrder) {
    static const auto known = [] {
        std::map<std::uint16_t, Collation> collations;
        for (const SortOrderRows& rows : KnownSortOrders()) {
            collations.emplace(rows.sortOrder, rows);
        }
        return collations;
    }();
    const auto found = known.find(sortOrder);
    return found == known.end() ? nullptr : &found->second;
}

Collation::Collation(const SortOrderRows& rows)
    : ranges_(rows.ranges.begin(), rows.ranges.end()),
      contractions_(rows.contractions.begin(), rows.contractions.end()) {
    direct_.fill(kUnknownWeight);
    for (const SortOrderRows* layer : {&kCommonRows, &rows}) {
        for (const UnitRange& range : layer->unknown) {
            for (std::uint32_t unit = range.first; unit <= range.last; ++unit) {
                Put({static_cast<char16_t>(unit), 0, kNoMark, WeightKind::Unknown});
            }
        }
        for (const TextWeight& weight : layer->weights) {
            Put(weight);
        }
    }
    std::ranges::sort(ranges_, {}, &WeightRange::first);
}

/// Both layers come sorted, so that most units of the second are appended.
void Collation::Put(const TextWeight& weight) {
    if (weight.unit < kDirectUnits) {
        direct_[weight.unit] = weight;
        return;
    }
    const auto place = std::ranges::lower_bound(others_, weight.unit, {}, &TextWeight::unit);
    if (place != others_.end() && place->unit == weight.unit) {
        *place = weight;
    } else {
        others_.insert(place, weight);
    }
}

TextWeight Collation::Lookup(char16_t unit) const {
    if (unit < kDirectUnits) {
        return direct_[unit];
    }
    const auto other = std::ranges::lower_bound(others_, unit, {}, &TextWeight::unit);
    if (other != others_.end() && other->unit == unit) {
        return *other;
    }
    const auto behind = std::ranges::upper_bound(ranges_, unit, {}, &WeightRange::first);
    if (behind != ranges_.begin() && unit <= std::prev(behind)->last) {
        return WeightInRange(*std::prev(behind), unit);
    }
    return kUnknownWeight;
}

const Contraction* Collation::FindContraction(std::u16string_view text) const {
    for (const Contraction& contraction : contractions_) {
        if (text.size() > 1 && text[0] == contraction.first && text[1] == contraction.second) {
            return &contraction;
        }
    }
    return nullptr;
}

std::optional<Collation::Match> Collation::At(std::u16string_view text) const {
    Match match;
    if (const Contraction* pair = FindContraction(text)) {
        const WeightKind kind = pair->primary == 0 ? WeightKind::Unknown : WeightKind::Normal;
        match = {{pair->first, pair->primary, pair->mark, kind}, 2};
    } else {
        match.weight = Lookup(text.front());
    }
    return match.weight.kind == WeightKind::Unknown ? std::nullopt : std::optional(match);
}

}  // namespace tavrel::jet
