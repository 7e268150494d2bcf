#include "text/LeadingNumber.h"

#include <charconv>

#include "text/Error.h"

namespace tavrel::text {
namespace {

constexpr std::int32_t kOverflow = 6;

bool IsSign(char c) {
    return c == '+' || c == '-';
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

}  // namespace

std::string LeadingDigits(std::string_view text) {
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

double LeadingNumber(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    std::string_view rest = first == std::string_view::npos ? std::string_view() : text.substr(first);
    const bool negative = !rest.empty() && rest.front() == '-';
    if (!rest.empty() && IsSign(rest.front())) {
        rest.remove_prefix(1);
    }
    const std::string number = LeadingDigits(rest);
    double value = 0;
    const auto [end, failure] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (failure == std::errc::result_out_of_range) {
        // The same failure stands for a number beyond the largest and for one too near to 0, which counts as
        // 0.
        if (number.find("e-") == std::string::npos) {
            throw MakeError(kOverflow);
        }
        value = 0;
    }
    return negative ? -value : value;
}

}  // namespace tavrel::text
