#include "text/Case.h"

#include <algorithm>

#include "text/CaseTables.h"
#include "text/Utf.h"

namespace tavrel::text {
namespace {

constexpr char32_t kCapitalIWithDot = 0x130;
constexpr char32_t kCombiningDotAbove = 0x307;
constexpr char32_t kCapitalSigma = 0x3A3;
constexpr char32_t kFinalSigma = 0x3C2;

bool IsAscii(char32_t c) {
    return c < 0x80;
}
char32_t UpperAscii(char32_t c) {
    return c >= 'a' && c <= 'z' ? c - 32 : c;
}
char32_t LowerAscii(char32_t c) {
    return c >= 'A' && c <= 'Z' ? c + 32 : c;
}

char32_t Map(std::span<const CaseRange> ranges, char32_t c) {
    const auto range = std::ranges::lower_bound(ranges, c, {}, &CaseRange::last);
    if (range == ranges.end() || c < range->first || (c - range->first) % range->step != 0) {
        return c;
    }
    return static_cast<char32_t>(static_cast<std::int32_t>(c) + range->delta);
}

char32_t UpperOf(char32_t c) {
    return IsAscii(c) ? UpperAscii(c) : Map(UpperRanges(), c);
}

bool Has(std::span<const char32_t> boundaries, char32_t c) {
    return (std::ranges::upper_bound(boundaries, c) - boundaries.begin()) % 2 == 1;
}

/// True when the last letter of `utf8`, case-ignorable characters aside, is a cased one.
bool EndsCased(std::string_view utf8) {
    bool cased = false;
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t c = NextCodePoint(utf8, at);
        cased = Has(CaseIgnorableBoundaries(), c) ? cased : Has(CasedBoundaries(), c);
    }
    return cased;
}

bool StartsCased(std::string_view utf8) {
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t c = NextCodePoint(utf8, at);
        if (!Has(CaseIgnorableBoundaries(), c)) {
            return Has(CasedBoundaries(), c);
        }
    }
    return false;
}

void AppendLower(std::string& out, std::string_view utf8, std::size_t& at) {
    const std::size_t start = at;
    const char32_t c = NextCodePoint(utf8, at);
    if (c == kCapitalIWithDot) {
        AppendUtf8(out, 'i');
        AppendUtf8(out, kCombiningDotAbove);
    } else if (c == kCapitalSigma && !StartsCased(utf8.substr(at)) && EndsCased(utf8.substr(0, start))) {
        AppendUtf8(out, kFinalSigma);
    } else {
        AppendUtf8(out, IsAscii(c) ? LowerAscii(c) : Map(LowerRanges(), c));
    }
}

}  // namespace

std::string Upper(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        AppendUtf8(out, UpperOf(NextCodePoint(utf8, at)));
    }
    return out;
}

std::string Lower(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        AppendLower(out, utf8, at);
    }
    return out;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    std::size_t atA = 0;
    std::size_t atB = 0;
    while (atA < a.size() && atB < b.size()) {
        if (UpperOf(NextCodePoint(a, atA)) != UpperOf(NextCodePoint(b, atB))) {
            return false;
        }
    }
    return atA == a.size() && atB == b.size();
}

bool NameLess(std::string_view a, std::string_view b) {
    // The bytes of UTF-8 order as the code points do.
    const int order = Lower(a).compare(Lower(b));
    return order != 0 ? order < 0 : a < b;
}

}  // namespace tavrel::text
