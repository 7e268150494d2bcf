#include "db/NextCode.h"

#include <charconv>
#include <cmath>

#include "text/LeadingNumber.h"

namespace tavrel::db {

namespace {

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

std::string CodeBehind(std::string_view code, int width) {
    if (const std::string number = text::LeadingDigits(code);
        !number.empty() && number.find_first_not_of("0123456789") == std::string::npos) {
        return WithZeros(PlusOne(number), width);
    }
    const double sum = std::round(text::LeadingNumber(code) + 1);
    char digits[400];
    const auto written =
        std::to_chars(digits, digits + sizeof digits, std::fabs(sum), std::chars_format::fixed, 0);
    return (sum < 0 ? "-" : "") + WithZeros(std::string(digits, written.ptr), width);
}

}  // namespace tavrel::db
