#include "cli/prompt/LineEditor.h"

#include <algorithm>

#include "platform/Console.h"
#include "report/DisplayText.h"
#include "text/Utf.h"

namespace tavrel::cli {

namespace {

using platform::Key;
using platform::KeyKind;

std::u32string CodePoints(std::string_view utf8) {
    std::u32string points;
    for (std::size_t at = 0; at < utf8.size();) {
        points += text::NextCodePoint(utf8, at);
    }
    return points;
}

std::string Utf8(std::u32string_view points) {
    std::string utf8;
    for (const char32_t point : points) {
        text::AppendUtf8(utf8, point);
    }
    return utf8;
}

std::size_t WidthOf(char32_t point) {
    return report::DisplayWidth(report::Printable(Utf8({&point, 1})));
}

}  // namespace

TypedLine LineEditor::ReadLine(std::string_view prompt) {
    prompt_ = prompt;
    typed_.clear();
    started_.clear();
    cursor_ = 0;
    place_ = history_.size();
    TypedLine line;
    const auto keyboard = platform::OpenKeyboard();
    Draw();
    while (keyboard && !Take(keyboard->Read(), line)) {
        Draw();
    }
    out_ << "\r\n" << std::flush;
    return line;
}

bool LineEditor::Take(const Key& key, TypedLine& line) {
    switch (key.kind) {
        case KeyKind::Enter:
            cursor_ = typed_.size();
            Draw();
            line = {.outcome = TypedLine::Outcome::Entered, .text = Text()};
            return true;
        case KeyKind::Cancel:
            line = {.outcome = TypedLine::Outcome::Cancelled, .text = {}};
            return true;
        case KeyKind::EndOfInput:
            return typed_.empty();  // on a line with text the key means nothing
        case KeyKind::Gone:
            return true;
        default:
            Edit(key);
            return false;
    }
}

void LineEditor::Edit(const Key& key) {
    switch (key.kind) {
        case KeyKind::Character:
            typed_.insert(cursor_++, 1, key.character);
            break;
        case KeyKind::Backspace:
            if (cursor_ > 0) {
                Erase(--cursor_);
            }
            break;
        case KeyKind::Delete:
            Erase(cursor_);
            break;
        case KeyKind::Left:
            cursor_ -= cursor_ > 0 ? 1 : 0;
            break;
        case KeyKind::Right:
            cursor_ = std::min(cursor_ + 1, typed_.size());
            break;
        case KeyKind::Home:
            cursor_ = 0;
            break;
        case KeyKind::End:
            cursor_ = typed_.size();
            break;
        case KeyKind::EraseLine:
            typed_.clear();
            cursor_ = 0;
            break;
        case KeyKind::Up:
            ShowRemembered(place_ > 0 ? place_ - 1 : 0);
            break;
        case KeyKind::Down:
            ShowRemembered(std::min(place_ + 1, history_.size()));
            break;
        default:
            break;
    }
}

void LineEditor::Erase(std::size_t at) {
    if (at < typed_.size()) {
        typed_.erase(at, 1);
    }
}

void LineEditor::ShowRemembered(std::size_t place) {
    if (place == place_) {
        return;
    }
    if (place_ == history_.size()) {
        started_ = typed_;
    }
    place_ = place;
    typed_ = place == history_.size() ? started_ : CodePoints(history_[place]);
    cursor_ = typed_.size();
}

void LineEditor::Remember(const std::string& text) {
    if (!text.empty() && (history_.empty() || history_.back() != text)) {
        history_.push_back(text);
    }
}

std::string LineEditor::Text() const {
    return Utf8(typed_);
}

/// A line that is too long is moved to the left until the cursor can be seen.
void LineEditor::Draw() const {
    const auto terminal = static_cast<std::size_t>(std::max(platform::TerminalWidth(), 20));
    const std::size_t columns = terminal - std::min(report::DisplayWidth(prompt_), terminal / 2);
    std::size_t used = 0;
    std::size_t first = cursor_;
    while (first > 0 && used + WidthOf(typed_[first - 1]) < columns) {
        used += WidthOf(typed_[--first]);
    }
    const std::size_t beforeCursor = used;
    std::size_t last = cursor_;
    while (last < typed_.size() && used + WidthOf(typed_[last]) < columns) {
        used += WidthOf(typed_[last++]);
    }
    const std::u32string_view typed = typed_;
    out_ << '\r' << prompt_ << report::Printable(Utf8(typed.substr(first, last - first))) << "\x1b[K";
    if (used > beforeCursor) {
        out_ << "\x1b[" << used - beforeCursor << 'D';
    }
    out_.flush();
}

}  // namespace tavrel::cli
