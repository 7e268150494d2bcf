#include "jet/sql/values/DecimalArithmetic.h"

#include <algorithm>

#include "jet/catalog/NumberConversion.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::uint8_t kCurrencyScale = 4;
using Words = std::array<std::uint32_t, 4>;

/// REQUIRES: the sum has a place in 128 bits, as numbers of 28 digits do.
Words Sum(const Words& a, const Words& b) {
    Words sum{};
    std::uint64_t carry = 0;
    for (std::size_t i = sum.size(); i-- > 0;) {
        carry += std::uint64_t{a[i]} + b[i];
        sum[i] = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    return sum;
}

/// REQUIRES: a >= b.
Words Difference(const Words& a, const Words& b) {
    Words difference{};
    std::uint64_t borrow = 0;
    for (std::size_t i = difference.size(); i-- > 0;) {
        const std::uint64_t part = std::uint64_t{a[i]} - b[i] - borrow;
        difference[i] = static_cast<std::uint32_t>(part);
        borrow = part >> 63;
    }
    return difference;
}

/// False when the product needs more than 128 bits.
bool Multiply(const Words& a, const Words& b, Words& product) {
    std::array<std::uint32_t, 8> wide{};
    for (std::size_t i = a.size(); i-- > 0;) {
        std::uint64_t carry = 0;
        for (std::size_t j = b.size(); j-- > 0;) {
            carry += std::uint64_t{a[i]} * b[j] + wide[i + j + 1];
            wide[i + j + 1] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        wide[i] = static_cast<std::uint32_t>(carry);
    }
    std::copy(wide.begin() + 4, wide.end(), product.begin());
    return std::all_of(wide.begin(), wide.begin() + 4, [](std::uint32_t word) { return word == 0; });
}

}  // namespace

Decimal AddDecimals(const Decimal& a, const Decimal& b) {
    const std::uint8_t scale = std::max(a.scale, b.scale);
    const Decimal left = ToDecimal(a, kDecimalDigits, scale);
    const Decimal right = ToDecimal(b, kDecimalDigits, scale);
    Decimal sum;
    sum.scale = scale;
    if (left.negative == right.negative) {
        sum.negative = left.negative;
        sum.words = Sum(left.words, right.words);
    } else {
        const bool leftGreater = left.words >= right.words;
        sum.negative = leftGreater ? left.negative : right.negative;
        sum.words = leftGreater ? Difference(left.words, right.words) : Difference(right.words, left.words);
    }
    return ToDecimal(sum, kDecimalDigits, scale);
}

Decimal MultiplyDecimals(const Decimal& a, const Decimal& b) {
    Decimal product;
    product.negative = a.negative != b.negative;
    product.scale = static_cast<std::uint8_t>(a.scale + b.scale);
    if (!Multiply(a.words, b.words, product.words)) {
        return ToDecimal(ToDouble(a) * ToDouble(b), kDecimalDigits, std::min<unsigned>(product.scale, 15));
    }
    return ToDecimal(product, kDecimalDigits, std::min<unsigned>(product.scale, kDecimalDigits));
}

Currency CurrencyOf(const Decimal& decimal) {
    return {ToCurrency(decimal)};
}

Decimal DecimalOf(const Currency& currency) {
    return ToDecimal(currency, kDecimalDigits, kCurrencyScale);
}

}  // namespace tavrel::jet::sql
