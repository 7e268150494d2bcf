#include "jet/sql/values/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "jet/catalog/NumberConversion.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Format.h"
#include "text/LeadingNumber.h"

namespace tavrel::jet::sql {

namespace {

using text::IsDigit;

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::array<std::string_view, 3> kMoneySigns = {"₩", "￦", "\\"};
constexpr int kMaxExponent = 400;
constexpr unsigned kMaxDecimalDigits = 28;

void TrimBlanks(std::string_view& text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        text = {};
        return;
    }
    text = text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// &H… or &O…: at most 32 bits, read as a signed number.
std::optional<NumberText> ReadPrefixed(std::string_view text) {
    if (text.size() < 3 || text[0] != '&') {
        return std::nullopt;
    }
    const char kind = text[1];
    const int base = kind == 'H' || kind == 'h' ? 16 : kind == 'O' || kind == 'o' ? 8 : 0;
    std::uint32_t bits = 0;
    const char* const end = text.data() + text.size();
    if (base == 0 || !std::isalnum(static_cast<unsigned char>(text[2]))) {
        return std::nullopt;
    }
    const auto result = std::from_chars(text.data() + 2, end, bits, base);
    if (result.ec != std::errc{} || result.ptr != end) {
        return std::nullopt;
    }
    const auto value = std::int64_t{static_cast<std::int32_t>(bits)};
    return NumberText{value < 0, std::to_string(value < 0 ? -value : value), 0};
}

/// Takes signs, parentheses and money signs off both ends.
class Envelope {
  public:
    explicit Envelope(std::string_view text) : text_(text) {}

    bool Open() {
        TrimBlanks(text_);
        while (OpenFront() || OpenBack()) {
            TrimBlanks(text_);
        }
        return !broken_ && openParentheses_ == 0;
    }
    [[nodiscard]] std::string_view Text() const { return text_; }
    [[nodiscard]] bool Negative() const { return negative_; }

  private:
    bool OpenFront() {
        if (text_.starts_with('+') || text_.starts_with('-')) {
            TakeSign(text_.front() == '-');
            text_.remove_prefix(1);
            return true;
        }
        if (text_.starts_with('(')) {
            TakeSign(true);
            ++openParentheses_;
            text_.remove_prefix(1);
            return true;
        }
        for (const std::string_view sign : kMoneySigns) {
            if (text_.starts_with(sign)) {
                broken_ |= std::exchange(money_, true);
                text_.remove_prefix(sign.size());
                return true;
            }
        }
        return false;
    }

    bool OpenBack() {
        if (text_.ends_with('+') || text_.ends_with('-')) {
            TakeSign(text_.back() == '-');
            text_.remove_suffix(1);
            return true;
        }
        if (text_.ends_with(')')) {
            --openParentheses_;
            text_.remove_suffix(1);
            return true;
        }
        return false;
    }

    void TakeSign(bool negative) {
        broken_ |= std::exchange(signed_, true);
        negative_ = negative;
    }

    std::string_view text_;
    bool negative_ = false;
    bool signed_ = false;
    bool money_ = false;
    bool broken_ = false;
    int openParentheses_ = 0;
};

/// E or D, a sign, digits; `rest` is what follows the digits of the number.
bool ReadExponent(std::string_view rest, int& exponent) {
    if (rest.empty()) {
        return true;
    }
    if (std::string_view("EeDd").find(rest.front()) == std::string_view::npos) {
        return false;
    }
    rest.remove_prefix(1);
    if (rest.starts_with('+')) {
        rest.remove_prefix(1);
    }
    int written = 0;
    const char* const end = rest.data() + rest.size();
    const auto result = std::from_chars(rest.data(), end, written);
    if (rest.empty() || result.ptr != end || !IsDigit(rest.back())) {
        return false;
    }
    // What does not fit an int is far beyond every number anyway.
    const int limit = rest.front() == '-' ? -kMaxExponent : kMaxExponent;
    exponent += result.ec == std::errc{} ? std::clamp(written, -kMaxExponent, kMaxExponent) : limit;
    return true;
}

std::string PlainNotation(std::string_view scientific) {
    std::string text(scientific);
    const std::size_t mark = text.find('e');
    if (mark != std::string::npos) {
        text[mark] = 'E';
    }
    return text;
}

template <typename Number>
std::string GeneralText(Number number, int digits) {
    if (!std::isfinite(number)) {
        return std::isnan(number) ? "NaN" : number < 0 ? "-Infinity" : "Infinity";
    }
    std::array<char, 64> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                      number == 0 ? Number{0} : number, std::chars_format::general, digits);
    return PlainNotation({buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())});
}

std::string WithoutTrailingZeros(std::string text) {
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.ends_with('.')) {
            text.pop_back();
        }
    }
    return text;
}

}  // namespace

std::optional<NumberText> ReadNumber(std::string_view text) {
    Envelope envelope(text);
    if (!envelope.Open()) {
        return std::nullopt;
    }
    text = envelope.Text();
    if (auto prefixed = ReadPrefixed(text)) {
        prefixed->negative ^= envelope.Negative();
        return prefixed;
    }
    NumberText number{envelope.Negative(), {}, 0};
    bool point = false;
    bool anyDigit = false;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (IsDigit(c)) {
            anyDigit = true;
            number.exponent -= point ? 1 : 0;
            if (c != '0' || !number.digits.empty()) {
                number.digits += c;
            }
        } else if (c == '.' && !point) {
            point = true;
        } else if (c != ',' || !anyDigit || point) {
            break;
        }
    }
    if (!anyDigit || !ReadExponent(text.substr(at), number.exponent)) {
        return std::nullopt;
    }
    if (number.digits.empty()) {
        number.digits = "0";
    }
    return number;
}

double DoubleOf(const NumberText& number) {
    const std::string text =
        (number.negative ? "-" : "") + number.digits + "e" + std::to_string(number.exponent);
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too small is zero, too large has no place.
        if (static_cast<std::int64_t>(number.digits.size()) + number.exponent < 0) {
            return 0;
        }
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    return value;
}

std::int64_t ScaledOf(const NumberText& number, unsigned scale) {
    constexpr std::int64_t kMostDigits = 20;
    const std::int64_t places = static_cast<std::int64_t>(number.digits.size()) + number.exponent + scale;
    if (places < 0 || number.digits == "0") {
        return 0;
    }
    if (places > kMostDigits) {
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    std::string whole = number.digits.substr(0, static_cast<std::size_t>(places));
    const std::string rest = number.digits.substr(whole.size());
    whole.append(static_cast<std::size_t>(places) - whole.size(), '0');
    std::uint64_t magnitude = 0;
    const bool fits = whole.empty() ||
                      std::from_chars(whole.data(), whole.data() + whole.size(), magnitude).ec == std::errc{};
    const bool half = !rest.empty() && rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
    const bool up = !rest.empty() && (half ? magnitude % 2 != 0 : rest[0] >= '5');
    const std::uint64_t limit =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (number.negative ? 1 : 0);
    if (!fits || magnitude > limit - (up ? 1 : 0)) {
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    magnitude += up ? 1 : 0;
    return static_cast<std::int64_t>(number.negative ? 0 - magnitude : magnitude);
}

Decimal DecimalOf(const NumberText& number) {
    const int scale = std::max(-number.exponent, 0);
    if (number.digits.size() > kMaxDecimalDigits || scale > static_cast<int>(kMaxDecimalDigits)) {
        return ToDecimal(DoubleOf(number), kMaxDecimalDigits, 15);
    }
    std::string digits = number.digits;
    digits.append(static_cast<std::size_t>(std::clamp(number.exponent, 0, 38)), '0');
    Decimal decimal;
    for (const char digit : digits) {
        std::uint64_t carry = static_cast<std::uint64_t>(digit - '0');
        for (std::size_t i = decimal.words.size(); i-- > 0;) {
            carry += std::uint64_t{decimal.words[i]} * 10;
            decimal.words[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0) {
            throw MakeError(sqlErrors::kNumberOverflow);
        }
    }
    decimal.negative = number.negative;
    decimal.scale = static_cast<std::uint8_t>(scale);
    return ToDecimal(decimal, kMaxDecimalDigits, decimal.scale);
}

std::string DoubleText(double number) {
    return GeneralText(number, 15);
}
std::string SingleText(float number) {
    return GeneralText(number, 7);
}
std::string CurrencyText(const Currency& number) {
    return WithoutTrailingZeros(text::FormatScaled(number.scaled, 4));
}
std::string ShortDecimalText(const Decimal& number) {
    return WithoutTrailingZeros(DecimalText(number));
}

}  // namespace tavrel::jet::sql
