#include "db/LeadingNumber.h"

#include <charconv>
#include <cmath>

#include "db/AdoErrors.h"

namespace tavrel::db {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsSign(char c) {
    return c == '+' || c == '-';
}

std::string_view FromFirst(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// Takes the digits at `at` over; true when there are any.
bool TakeDigits(std::string_view text, std::size_t& at, std::string& out) {
    const std::size_t first = at;
    while (at < text.size() && IsDigit(text[at])) {
        out += text[at++];
    }
    return at > first;
}

/// An exponent at `at`; without digits it is none, and nothing is taken.
void TakeExponent(std::string_view text, std::size_t at, std::string& out) {
    if (at >= text.size() || std::string_view("eEdD").find(text[at]) == std::string_view::npos) {
        return;
    }
    std::string exponent = "e";
    if (++at < text.size() && IsSign(text[at])) {
        exponent += text[at++];
    }
    if (TakeDigits(text, at, exponent)) {
        out += exponent;
    }
}

/// The number as std::from_chars reads it, without its sign; empty when there is none.
std::string NumberAt(std::string_view text) {
    std::string number;
    std::size_t at = 0;
    bool digits = TakeDigits(text, at, number);
    if (at < text.size() && text[at] == '.') {
        number += '.';
        digits = TakeDigits(text, ++at, number) || digits;
    }
    if (!digits) {
        return {};
    }
    TakeExponent(text, at, number);
    return number;
}

std::string PlusOne(std::string_view digits) {
    std::string sum(digits);
    for (std::size_t at = sum.size(); at-- > 0;) {
        if (sum[at] != '9') {
            ++sum[at];
            return sum;
        }
        sum[at] = '0';
    }
    return "1" + sum;
}

std::string WithZeros(std::string digits, int width) {
    const std::size_t first = digits.find_first_not_of('0');
    digits.erase(0, first == std::string::npos ? digits.size() : first);
    const auto wanted = static_cast<std::size_t>(width > 0 ? width : 0);
    return digits.size() < wanted ? std::string(wanted - digits.size(), '0') + digits : digits;
}

}  // namespace

double LeadingNumber(std::string_view text) {
    std::string_view rest = FromFirst(text);
    const bool negative = !rest.empty() && rest.front() == '-';
    if (!rest.empty() && IsSign(rest.front())) {
        rest.remove_prefix(1);
    }
    const std::string number = NumberAt(rest);
    double value = 0;
    const auto [end, failure] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (failure == std::errc::result_out_of_range) {
        // Either too large, or so small that it is nothing.
        if (number.find("e-") == std::string::npos) {
            throw AdoError(adoErrors::kOverflow);
        }
        value = 0;
    }
    return negative ? -value : value;
}

std::string CodeBehind(std::string_view code, int width) {
    const std::string_view rest = FromFirst(code);
    if (const std::string number = NumberAt(rest);
        !number.empty() && number.find_first_not_of("0123456789") == std::string::npos) {
        return WithZeros(PlusOne(number), width);
    }
    const double sum = std::round(LeadingNumber(code) + 1);
    char digits[400];
    const auto written =
        std::to_chars(digits, digits + sizeof digits, std::fabs(sum), std::chars_format::fixed, 0);
    return (sum < 0 ? "-" : "") + WithZeros(std::string(digits, written.ptr), width);
}

}  // namespace tavrel::db
