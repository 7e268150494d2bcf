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
    [[nodiscard]] std::optional<Match> At(std::u16string_view text) const;

    explicit Collation(const SortOrderRows& rows);

  private:
    /// Below this a unit's weight is found by its place: Latin text is most of what indexes hold.
    static constexpr std::size_t kDirectUnits = 0x180;

    void Put(const TextWeight& weight);
    [[nodiscard]] TextWeight Lookup(char16_t unit) const;
    [[nodiscard]] const Contraction* FindContraction(std::u16string_view text) const;

    std::array<TextWeight, kDirectUnits> direct_;
    std::vector<TextWeight> others_;   ///< by unit
    std::vector<WeightRange> ranges_;  ///< by first unit
    std::vector<Contraction> contractions_;
};

}  // namespace tavrel::jet
