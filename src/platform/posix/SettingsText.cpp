#include "platform/posix/SettingsText.h"

namespace tavrel::platform {
namespace {

enum class Part { Key, Value };

/// The letter that stands for a character after a backslash; 0 when the character stands for itself.
char EscapeLetter(char character, bool first, bool last, Part part) {
    switch (character) {
        case '\\':
            return '\\';
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case ' ':
            return first || last ? 's' : '\0';
        case '=':
            return part == Part::Key ? 'e' : '\0';
        case '#':
        case ';':
        case '[':
            return part == Part::Key && first ? 'h' : '\0';
        default:
            return '\0';
    }
}

std::string Escaped(std::string_view text, Part part) {
    std::string escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char letter = EscapeLetter(text[i], i == 0, i + 1 == text.size(), part);
        if (letter == '\0') {
            escaped += text[i];
            continue;
        }
        escaped += '\\';
        escaped += letter;
        if (letter == 'h') {
            escaped += text[i];
        }
    }
    return escaped;
}

/// What an escape means; \h only takes the next character's meaning away.
std::string_view Unescaped(char letter) {
    switch (letter) {
        case 'n':
            return "\n";
        case 'r':
            return "\r";
        case 's':
            return " ";
        case 'e':
            return "=";
        case 'h':
            return "";
        default:
            return "\\";
    }
}

std::string Plain(std::string_view escaped) {
    std::string text;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        if (escaped[i] == '\\' && i + 1 < escaped.size()) {
            text += Unescaped(escaped[++i]);
        } else {
            text += escaped[i];
        }
    }
    return text;
}

bool IsSection(std::string_view line) {
    return line.starts_with('[') && line.ends_with(']');
}

}  // namespace

SettingsText::SettingsText(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        lines_.emplace_back(line);
    }
}

std::optional<SettingsText::Place> SettingsText::Look(std::string_view section, std::string_view key) const {
    const std::string header = "[" + Escaped(section, Part::Value) + "]";
    const std::string start = Escaped(key, Part::Key) + "=";
    std::optional<Place> place;
    bool inside = false;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (IsSection(lines_[i])) {
            inside = lines_[i] == header;
        }
        if (!inside) {
            continue;
        }
        if (!place || !lines_[i].empty()) {
            place = Place{i + 1, place ? place->at : std::nullopt};
        }
        if (lines_[i].starts_with(start)) {
            place->at = i;
        }
    }
    return place;
}

std::optional<std::string> SettingsText::Find(std::string_view section, std::string_view key) const {
    const auto place = Look(section, key);
    if (!place || !place->at) {
        return std::nullopt;
    }
    const std::string& line = lines_[*place->at];
    return Plain(std::string_view(line).substr(Escaped(key, Part::Key).size() + 1));
}

void SettingsText::Set(std::string_view section, std::string_view key, std::string_view value) {
    std::string line = Escaped(key, Part::Key) + "=" + Escaped(value, Part::Value);
    const auto place = Look(section, key);
    if (place && place->at) {
        lines_[*place->at] = std::move(line);
    } else if (place) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place->sectionEnd), std::move(line));
    } else {
        if (!lines_.empty()) {
            lines_.emplace_back();
        }
        lines_.push_back("[" + Escaped(section, Part::Value) + "]");
        lines_.push_back(std::move(line));
    }
}

std::string SettingsText::Text() const {
    std::string text;
    for (const std::string& line : lines_) {
        text.append(line).append("\n");
    }
    return text;
}

}  // namespace tavrel::platform
