// How texts compare: as the keys of the database's sort order do.  Letter case does not count, marks count
// last, blanks at the end not at all.
//
// A character without a known weight takes a stand-in weight that sorts behind all known ones, by its
// upper-case code, so that every two texts can be compared and equal ones stay equal.
#pragma once

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {
class Collation;
}

namespace tavrel::jet::sql {

/// Not for use from several threads at once: weights are looked up when they are first needed.
class TextComparer {
  public:
    /// `sortOrder` is an LCID; every one will do.
    explicit TextComparer(std::uint16_t sortOrder);

    /// Below 0, 0 or above 0.
    [[nodiscard]] int Compare(std::string_view a, std::string_view b) const;
    [[nodiscard]] bool Equal(std::string_view a, std::string_view b) const {
        return a == b || Compare(a, b) == 0;
    }
    /// Appends a text's key: comparing the bytes of keys compares the texts, and no key is the front of
    /// another.
    void AppendKey(std::string_view text, ByteVector& out) const;

  private:
    /// A weight whose first byte stands in the high half; 0 for a character that needs more than looking up.
    using SimpleWeight = std::uint16_t;
    static constexpr std::size_t kBlock = 256;
    using Block = std::array<SimpleWeight, kBlock>;

    [[nodiscard]] int CompareKeys(std::string_view a, std::string_view b) const;
    [[nodiscard]] SimpleWeight WeightOf(char32_t codePoint) const;
    [[nodiscard]] std::unique_ptr<Block> MakeBlock(char32_t first) const;
    [[nodiscard]] SimpleWeight MakeWeight(char16_t unit) const;
    bool AppendSimpleKey(std::string_view text, ByteVector& out) const;
    void AppendStandIn(std::u16string_view text, ByteVector& out) const;

    std::uint16_t sortOrder_;
    const Collation* collation_;
    std::vector<char16_t> contractionStarts_;
    mutable std::array<std::unique_ptr<Block>, kBlock> blocks_;
};

}  // namespace tavrel::jet::sql
