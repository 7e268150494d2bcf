#include "jet/catalog/NumberConversion.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace tavrel::jet {

namespace {

constexpr std::int64_t kCurrencyUnit = 10000;
constexpr unsigned kCurrencyScale = 4;

[[noreturn]] void ThrowOutOfRange() {
    throw MakeError(kNumberOutOfRange);
}

/// Rounds half to even.
std::int64_t Rounded(double value) {
    // 2^63 is exact in a double; the greatest int64 is not.
    constexpr double kEnd = 9223372036854775808.0;
    const double whole = std::nearbyint(value);
    if (!(whole >= -kEnd && whole < kEnd)) {
        ThrowOutOfRange();
    }
    return static_cast<std::int64_t>(whole);
}

std::int64_t DividedToEven(std::int64_t value, std::int64_t divisor) {
    std::int64_t quotient = value / divisor;
    const std::int64_t rest = std::abs(value % divisor);
    if (rest * 2 > divisor || (rest * 2 == divisor && quotient % 2 != 0)) {
        quotient += value < 0 ? -1 : 1;
    }
    return quotient;
}

/// The magnitude as a 128-bit number in 32-bit words, highest first.
using Words = std::array<std::uint32_t, 4>;

void MultiplyByTen(Words& words) {
    std::uint64_t carry = 0;
    for (std::size_t i = words.size(); i-- > 0;) {
        carry += std::uint64_t{words[i]} * 10;
        words[i] = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    if (carry != 0) {
        ThrowOutOfRange();
    }
}

/// Divides and gives the digit that falls off.
unsigned DivideByTen(Words& words) {
    std::uint64_t rest = 0;
    for (std::uint32_t& word : words) {
        rest = rest << 32 | word;
        word = static_cast<std::uint32_t>(rest / 10);
        rest %= 10;
    }
    return static_cast<unsigned>(rest);
}

void Increment(Words& words) {
    for (std::size_t i = words.size(); i-- > 0;) {
        if (++words[i] != 0) {
            return;
        }
    }
    ThrowOutOfRange();
}

unsigned DigitCount(Words words) {
    unsigned digits = 0;
    while (words != Words{}) {
        DivideByTen(words);
        ++digits;
    }
    return digits;
}

void Rescale(Decimal& decimal, unsigned scale) {
    for (; decimal.scale < scale; ++decimal.scale) {
        MultiplyByTen(decimal.words);
    }
    bool dropped = false;  // something not zero fell off before the last digit
    unsigned last = 0;
    for (; decimal.scale > scale; --decimal.scale) {
        dropped = dropped || last != 0;
        last = DivideByTen(decimal.words);
    }
    if (last > 5 || (last == 5 && (dropped || decimal.words[3] % 2 != 0))) {
        Increment(decimal.words);
    }
}

/// The number x 10^scale, rounded half to even.
std::int64_t ScaledFromDecimal(Decimal decimal, unsigned scale) {
    Rescale(decimal, scale);
    const std::uint64_t magnitude = std::uint64_t{decimal.words[2]} << 32 | decimal.words[3];
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
    if (decimal.words[0] != 0 || decimal.words[1] != 0 || magnitude > kLargest + (decimal.negative ? 1 : 0)) {
        ThrowOutOfRange();
    }
    return static_cast<std::int64_t>(decimal.negative ? 0 - magnitude : magnitude);
}

Decimal DecimalFromScaled(std::int64_t scaled, unsigned scale) {
    const bool negative = scaled < 0;
    const std::uint64_t magnitude =
        negative ? std::uint64_t{0} - static_cast<std::uint64_t>(scaled) : static_cast<std::uint64_t>(scaled);
    return {{0, 0, static_cast<std::uint32_t>(magnitude >> 32), static_cast<std::uint32_t>(magnitude)},
            negative,
            static_cast<std::uint8_t>(scale)};
}

/// REQUIRES: a whole number.
Decimal DecimalFromScaled(double scaled, unsigned scale) {
    constexpr double kWordEnd = 4294967296.0;
    Decimal decimal{{}, scaled < 0, static_cast<std::uint8_t>(scale)};
    double rest = std::fabs(scaled);
    if (!std::isfinite(rest)) {
        ThrowOutOfRange();
    }
    for (std::size_t i = decimal.words.size(); i-- > 0;) {
        const double word = std::fmod(rest, kWordEnd);
        decimal.words[i] = static_cast<std::uint32_t>(word);
        rest = (rest - word) / kWordEnd;
    }
    if (rest != 0) {
        ThrowOutOfRange();
    }
    return decimal;
}

/// With up to `scale` decimals: no more than a Double of that size can have.
Decimal DecimalFromDouble(double value, unsigned scale) {
    constexpr double kEnd = 9223372036854775808.0;
    while (scale > 0 && std::fabs(value) * std::pow(10.0, scale) >= kEnd) {
        --scale;
    }
    return DecimalFromScaled(std::nearbyint(value * std::pow(10.0, scale)), scale);
}

double DoubleFromDecimal(const Decimal& decimal) {
    double magnitude = 0;
    for (const std::uint32_t word : decimal.words) {
        magnitude = magnitude * 4294967296.0 + word;
    }
    return (decimal.negative ? -magnitude : magnitude) / std::pow(10.0, decimal.scale);
}

}  // namespace

double ToDouble(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) {
        return *number;
    }
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        return static_cast<double>(*number);
    }
    if (const auto* truth = std::get_if<bool>(&value)) {
        return *truth ? -1 : 0;
    }
    if (const auto* number = std::get_if<float>(&value)) {
        return *number;
    }
    if (const auto* date = std::get_if<Date>(&value)) {
        return date->days;
    }
    if (const auto* currency = std::get_if<Currency>(&value)) {
        return static_cast<double>(currency->scaled) / static_cast<double>(kCurrencyUnit);
    }
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        return DoubleFromDecimal(*decimal);
    }
    throw MakeError(errors::kTypeMismatch);
}

std::int64_t ToInteger(const Value& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        return *number;
    }
    if (const auto* currency = std::get_if<Currency>(&value)) {
        return DividedToEven(currency->scaled, kCurrencyUnit);
    }
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        return ScaledFromDecimal(*decimal, 0);
    }
    return Rounded(ToDouble(value));
}

float ToSingle(const Value& value) {
    if (const auto* number = std::get_if<float>(&value)) {
        return *number;
    }
    const double number = ToDouble(value);
    if (std::isfinite(number) && std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
        ThrowOutOfRange();
    }
    return static_cast<float>(number);
}

std::int64_t ToCurrency(const Value& value) {
    if (const auto* currency = std::get_if<Currency>(&value)) {
        return currency->scaled;
    }
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        constexpr std::int64_t kLimit = std::numeric_limits<std::int64_t>::max() / kCurrencyUnit;
        if (*number < -kLimit || *number > kLimit) {
            ThrowOutOfRange();
        }
        return *number * kCurrencyUnit;
    }
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        return ScaledFromDecimal(*decimal, kCurrencyScale);
    }
    const double number = ToDouble(value);
    using Limits = std::numeric_limits<std::int64_t>;
    for (const std::int64_t end : {Limits::min(), Limits::max()}) {
        if (number == ToDouble(Currency{end})) {
            return end;
        }
    }
    return Rounded(number * static_cast<double>(kCurrencyUnit));
}

Decimal ToDecimal(const Value& value, unsigned precision, unsigned scale) {
    Decimal decimal;
    if (const auto* exact = std::get_if<Decimal>(&value)) {
        decimal = *exact;
    } else if (const auto* currency = std::get_if<Currency>(&value)) {
        decimal = DecimalFromScaled(currency->scaled, kCurrencyScale);
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        decimal = DecimalFromScaled(*whole, 0);
    } else {
        decimal = DecimalFromDouble(ToDouble(value), scale);
    }
    Rescale(decimal, scale);
    if (DigitCount(decimal.words) > precision) {
        ThrowOutOfRange();
    }
    if (decimal.words == Words{}) {
        decimal.negative = false;
    }
    return decimal;
}

}  // namespace tavrel::jet
