// The text of a settings file, in memory.
//
//   [section]
//   key=value
//
// UTF-8, a line an entry.  A backslash begins an escape: \\ itself, \n and \r line ends, \s a blank at the
// start or end, \e "=" in a key, \h "#" or "[" or ";" at the start of a key.  Lines that are none of this
// (comments, what a person wrote) stay where they are.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::platform {

class SettingsText {
  public:
    SettingsText() = default;
    explicit SettingsText(std::string_view text);

    [[nodiscard]] std::optional<std::string> Find(std::string_view section, std::string_view key) const;
    void Set(std::string_view section, std::string_view key, std::string_view value);
    [[nodiscard]] std::string Text() const;

  private:
    struct Place {
        std::size_t sectionEnd;         ///< line behind the section's last entry
        std::optional<std::size_t> at;  ///< line of the key
    };
    /// Nothing when there is no such section.
    [[nodiscard]] std::optional<Place> Look(std::string_view section, std::string_view key) const;

    std::vector<std::string> lines_;
};

}  // namespace tavrel::platform
