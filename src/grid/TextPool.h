// Texts kept once each, known by a 32-bit number: a cell is a number, and two cells are equal when their
// numbers are.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tavrel::grid {

/// Number of a text in its pool; 0 is the empty text.
using TextId = std::uint32_t;
inline constexpr TextId kEmptyText = 0;

class TextPool {
  public:
    TextPool();

    /// The text's number, a new one when the pool has not seen it.
    TextId Intern(std::string_view text);
    /// The number that every form of the text has as its Folded; kUnknown when the pool holds no such form.
    [[nodiscard]] TextId FindFolded(std::string_view text) const;
    /// Number of the upper-case form: equal for texts that differ in letter case only.
    [[nodiscard]] TextId Folded(TextId id) const { return entries_[id].folded; }
    /// Valid until Clear.
    [[nodiscard]] std::string_view Text(TextId id) const { return entries_[id].text; }
    /// Numbers given out: all are below this.
    [[nodiscard]] std::size_t Size() const { return entries_.size(); }
    /// Forgets every text but the empty one.
    void Clear();

    static constexpr TextId kUnknown = UINT32_MAX;

  private:
    struct Entry {
        std::string_view text;
        TextId folded;
        std::uint32_t hash;
    };

    TextId Add(std::string_view text, std::uint32_t hash);
    std::string_view Store(std::string_view text);
    void Grow();
    [[nodiscard]] std::size_t Slot(std::string_view text, std::uint32_t hash) const;

    std::vector<Entry> entries_;
    std::vector<TextId> slots_;  ///< open addressing, a power of two of places, kUnknown = free
    std::vector<std::unique_ptr<char[]>> blocks_;
    std::size_t blockLeft_ = 0;
    char* blockEnd_ = nullptr;
};

}  // namespace tavrel::grid
