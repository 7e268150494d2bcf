// LIKE: % any run of characters, _ one character, [a-z] one of a set, [!a-z] one outside it.  Letter case
// does not count.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrel::jet::sql {

/// Not for use from several threads at once.
class LikePattern {
  public:
    explicit LikePattern(std::string_view pattern);
    [[nodiscard]] bool Matches(std::string_view text) const;
    [[nodiscard]] const std::string& Source() const { return source_; }

  private:
    struct Range {
        char32_t first, last;
    };
    struct Element {
        enum class Kind : unsigned char { Run, Any, Set, Character } kind = Kind::Character;
        bool negated = false;
        std::vector<Range> ranges;  ///< a Character is a set of one
        [[nodiscard]] bool Accepts(char32_t c) const;
    };

    std::size_t ReadSet(std::u32string_view upper, std::size_t at);

    std::string source_;
    std::vector<Element> elements_;
    mutable std::u32string characters_;  ///< of the text being matched: kept for its room
};

}  // namespace tavrel::jet::sql
