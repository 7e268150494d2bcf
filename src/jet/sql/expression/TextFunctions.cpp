#include <algorithm>

#include "jet/sql/expression/Functions.h"
#include "jet/sql/values/NumberText.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::size_t kAll = static_cast<std::size_t>(-1);

/// A place or a number of characters.  Throws 5 when it is below `least`.
std::size_t CountOf(const Value& value, std::int32_t least) {
    const std::int32_t count = LongOf(value);
    if (count < least) {
        throw MakeError(sqlErrors::kInvalidCall);
    }
    return static_cast<std::size_t>(count);
}

/// Characters count as UTF-16 units.  Texts of single bytes are cut as they are.
std::string Part(const std::string& text, std::size_t first, std::size_t count) {
    const bool ascii =
        std::ranges::none_of(text, [](char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; });
    if (ascii) {
        return first < text.size() ? text.substr(first, count) : std::string();
    }
    const std::u16string units = text::Utf16FromUtf8(text);
    return first < units.size() ? text::Utf8FromUtf16(std::u16string_view(units).substr(first, count))
                                : std::string();
}

/// The text of an argument; copied only when it is none yet.
class Spelled {
  public:
    explicit Spelled(const Value& value) : held_(std::get_if<std::string>(&value)) {
        if (held_ == nullptr) {
            made_ = ValueText(value);
            held_ = &made_;
        }
    }
    Spelled(const Spelled&) = delete;
    Spelled& operator=(const Spelled&) = delete;
    const std::string& operator*() const { return *held_; }
    const std::string* operator->() const { return held_; }

  private:
    const std::string* held_;
    std::string made_;
};

void Left(Arguments arguments, Value& out) {
    SetText(out, Part(*Spelled(*arguments[0]), 0, CountOf(*arguments[1], 0)));
}

void Right(Arguments arguments, Value& out) {
    const Spelled text(*arguments[0]);
    const std::size_t length = text::Utf16Length(*text);
    SetText(out, Part(*text, length - std::min(length, CountOf(*arguments[1], 0)), kAll));
}

void Mid(Arguments arguments, Value& out) {
    const std::size_t first = CountOf(*arguments[1], 1) - 1;
    const std::size_t count = arguments.size() > 2 ? CountOf(*arguments[2], 0) : kAll;
    SetText(out, Part(*Spelled(*arguments[0]), first, count));
}

void Len(Arguments arguments, Value& out) {
    out = static_cast<std::int64_t>(text::Utf16Length(*Spelled(*arguments[0])));
}

void TrimEnds(Arguments arguments, bool left, bool right, Value& out) {
    const Spelled spelled(*arguments[0]);
    std::string_view text = *spelled;
    if (left) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    }
    if (right) {
        text = text.substr(0, text.find_last_not_of(' ') + 1);
    }
    SetText(out, text);
}

void Trim(Arguments arguments, Value& out) {
    TrimEnds(arguments, true, true, out);
}
void LeftTrim(Arguments arguments, Value& out) {
    TrimEnds(arguments, true, false, out);
}
void RightTrim(Arguments arguments, Value& out) {
    TrimEnds(arguments, false, true, out);
}

void UpperCase(Arguments arguments, Value& out) {
    SetText(out, text::Upper(*Spelled(*arguments[0])));
}
void LowerCase(Arguments arguments, Value& out) {
    SetText(out, text::Lower(*Spelled(*arguments[0])));
}

/// INSTR([start,] text, sought): letter case does not count; 0 = not found.
void InStr(Arguments arguments, Value& out) {
    const bool started = arguments.size() > 2;
    const std::size_t start = started ? CountOf(*arguments[0], 1) - 1 : 0;
    const std::size_t first = started ? 1 : 0;
    const std::u16string text = text::Utf16FromUtf8(text::Upper(*Spelled(*arguments[first])));
    const std::u16string sought = text::Utf16FromUtf8(text::Upper(*Spelled(*arguments[first + 1])));
    const std::size_t found = start < text.size() ? text.find(sought, start) : std::u16string::npos;
    out = found == std::u16string::npos ? std::int64_t{0} : static_cast<std::int64_t>(found + 1);
}

/// -1 for numbers, Booleans and texts that read as numbers.
void IsNumeric(Arguments arguments, Value& out) {
    const Value& value = *arguments[0];
    const auto* text = std::get_if<std::string>(&value);
    const bool numeric = text != nullptr
                             ? ReadNumber(*text).has_value()
                             : FamilyOf(value) == Family::Number && !std::holds_alternative<Date>(value);
    out = std::int64_t{numeric ? -1 : 0};
}

void Format(Arguments arguments, Value& out) {
    SetText(out, arguments.size() > 1 ? FormatValue(*arguments[0], *Spelled(*arguments[1]))
                                      : ValueText(*arguments[0]));
}

constexpr StaticType kText = ColumnType::Text;
constexpr StaticType kLongResult = ColumnType::Long;

const Function kTextFunctions[] = {
    {"LEFT", 2, 2, kText, true, Left},
    {"RIGHT", 2, 2, kText, true, Right},
    {"MID", 2, 3, kText, true, Mid},
    {"LEN", 1, 1, kLongResult, true, Len},
    {"TRIM", 1, 1, kText, true, Trim},
    {"LTRIM", 1, 1, kText, true, LeftTrim},
    {"RTRIM", 1, 1, kText, true, RightTrim},
    {"UCASE", 1, 1, kText, true, UpperCase},
    {"LCASE", 1, 1, kText, true, LowerCase},
    {"INSTR", 2, 3, kLongResult, true, InStr},
    {"ISNUMERIC", 1, 1, ColumnType::Integer, false, IsNumeric},
    {"FORMAT", 1, 2, kText, true, Format},
};

}  // namespace

std::span<const Function> TextFunctions() {
    return kTextFunctions;
}

}  // namespace tavrel::jet::sql
