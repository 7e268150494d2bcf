// The weights of one sort order, ready for looking up.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/index/TextWeights.h"

namespace tavrel::jet {

class Collation {
  public:
    /// Null when nothing is known of the sort order.  Made at the first call; good until the program ends.
    static const Collation* Find(std::uint16_t sortOrder);

    /// What stands at the front of a text: its weight, and the units that make it up.
    struct Match {
        TextWeight weight;
        std::size_t units = 1;
    };
    /// Nothing when the weight is not known.  REQUIRES: `text` is not empty.
    [[nodiscard]] std::optional<Match> At(std::u16string_view text) const {
        const Contraction* pair = contractions_.empty() ? nullptr : FindContraction(text);
        const Match match = pair != nullptr ? MatchOf(*pair) : Match{WeightOf(text.front()), 1};
        return match.weight.kind == WeightKind::Unknown ? std::nullopt : std::optional(match);
    }

    explicit Collation(const SortOrderRows& rows);

  private:
    /// The weights of the units that share a high byte, by low byte.
    using Block = std::array<TextWeight, 256>;

    void Put(const TextWeight& weight);
    void PutRange(const WeightRange& range);
    /// Full-width forms weigh what the half-width ones do.
    void PutFullWidth();
    [[nodiscard]] const TextWeight& WeightOf(char16_t unit) const {
        return blocks_[blockOf_[unit >> 8]][unit & 0xFF];
    }
    [[nodiscard]] const Contraction* FindContraction(std::u16string_view text) const;
    [[nodiscard]] static Match MatchOf(const Contraction& pair);

    std::array<std::uint16_t, 256> blockOf_{};  ///< in blocks_, by a unit's high byte
    std::vector<Block> blocks_;                 ///< the first one knows no weight
    std::vector<Contraction> contractions_;
};

}  // namespace tavrel::jet
