// Statements out of a text: ";" stands between them.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel::cli {

/// A semicolon inside quotes ('…' "…" `…`), brackets or comments does not count.  Comments, "--" up to the
/// end of the line (a blank or the line's end must follow the two) and /* … */, are taken out: the engine's
/// dialect has none.
class StatementSplitter {
  public:
    /// REQUIRES: whole lines, or a whole text; no token is spread over two calls.
    void Feed(std::string_view text);
    /// The next statement that a semicolon ends; blank ones are left out.
    std::optional<std::string> Take();
    /// What stands behind the last semicolon; nothing when it is blank.  Forgets everything.
    std::optional<std::string> TakeRest();
    /// A statement has begun and not ended.
    [[nodiscard]] bool IsOpen() const;

  private:
    std::size_t FeedPlain(std::string_view text, std::size_t at);
    std::size_t FeedComment(std::string_view text, std::size_t at);
    std::size_t FeedQuoted(std::string_view text, std::size_t at);
    void EndStatement();

    std::deque<std::string> complete_;
    std::string statement_;  ///< as far as it has come
    char quote_ = 0;         ///< what ends the quoted text; 0 = none
    bool comment_ = false;   ///< inside /* … */
};

}  // namespace tavrel::cli
