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

/// Full-width forms of the printable ASCII characters, and how far behind those they stand.
constexpr UnitRange kFullWidth{0xFF01, 0xFF5E};
constexpr unsigned kFullWidthStep = 0xFF01 - 0x21;

/// The East Asian orders tell no difference of width: Chinese, Japanese, Korean.
bool IgnoresWidth(std::uint16_t sortOrder) {
    constexpr std::uint16_t kLanguages[] = {0x04, 0x11, 0x12};
    return std::ranges::find(kLanguages, sortOrder & 0x3FFU) != std::end(kLanguages);
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
    : blocks_(1), contractions_(rows.contractions.begin(), rows.contractions.end()) {
    blocks_.front().fill(kUnknownWeight);
    for (const WeightRange& range : rows.ranges) {
        PutRange(range);
    }
    // What is said of a single unit goes before what its range says.
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
    if (IgnoresWidth(rows.sortOrder)) {
        PutFullWidth();
    }
}

void Collation::PutFullWidth() {
    for (std::uint32_t unit = kFullWidth.first; unit <= kFullWidth.last; ++unit) {
        TextWeight weight = WeightOf(static_cast<char16_t>(unit - kFullWidthStep));
        weight.unit = static_cast<char16_t>(unit);
        Put(weight);
    }
}

void Collation::Put(const TextWeight& weight) {
    std::uint16_t& block = blockOf_[weight.unit >> 8];
    if (block == 0) {
        block = static_cast<std::uint16_t>(blocks_.size());
        blocks_.push_back(blocks_.front());
    }
    blocks_[block][weight.unit & 0xFF] = weight;
}

void Collation::PutRange(const WeightRange& range) {
    for (std::uint32_t unit = range.first; unit <= range.last; ++unit) {
        Put(WeightInRange(range, static_cast<char16_t>(unit)));
    }
}

const Contraction* Collation::FindContraction(std::u16string_view text) const {
    for (const Contraction& contraction : contractions_) {
        if (text.size() > 1 && text[0] == contraction.first && text[1] == contraction.second) {
            return &contraction;
        }
    }
    return nullptr;
}

Collation::Match Collation::MatchOf(const Contraction& pair) {
    const WeightKind kind = pair.primary == 0 ? WeightKind::Unknown : WeightKind::Normal;
    return {{pair.first, pair.primary, pair.mark, kind}, 2};
}

}  // namespace tavrel::jet
