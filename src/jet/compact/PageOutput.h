// The pages of a new database on their way into its file: numbers are given out one after the other, and
// pages that follow each other are written together.
#pragma once

#include <vector>

#include "jet/storage/Bytes.h"
#include "platform/File.h"

namespace tavrel::jet::compact {

class PageOutput {
  public:
    /// `file` must be empty and outlive the output.  Pages are enciphered when `pageKey` is not 0.
    PageOutput(platform::File& file, std::uint32_t pageKey);

    /// The next page number.  Every page that is taken must be put.  Throws 3036 at two gigabytes.
    PageNumber Take();
    /// Sets pages aside; UseReserve gives them out before others.
    void Reserve(PageNumber pages);
    void UseReserve() { useReserve_ = true; }
    /// Where the output stands; Rewind goes back there: the pages taken since count as not taken.
    struct Position {
        PageNumber next = 0;
        PageNumber reserved = 0;
        bool useReserve = false;
    };
    [[nodiscard]] Position Here() const { return {next_, reserved_, useReserve_}; }
    void Rewind(const Position& position);
    /// Writes a page, now or later; once for each page taken, in any order, fastest in that of the numbers.
    /// Throws 3026 (disk full) or 3043.
    void Put(PageNumber number, const Page& page);
    /// Pages given out so far.
    [[nodiscard]] PageNumber Count() const { return next_; }
    /// Everything that was put reaches the medium.
    void Finish();

  private:
    void WriteWindow();
    void WriteBytes(PageNumber first, std::span<const std::uint8_t> bytes);

    platform::File& file_;
    std::uint32_t pageKey_;
    PageNumber next_ = 0;
    PageNumber reserved_ = 0;  ///< the next page set aside
    PageNumber reserveEnd_ = 0;
    bool useReserve_ = false;
    PageNumber windowStart_ = 0;
    std::vector<std::uint8_t> window_;
    std::vector<bool> filled_;  ///< pages of the window that were put
};

}  // namespace tavrel::jet::compact
