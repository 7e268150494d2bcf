// Surrogates without partner, which no sound name or text property holds.  In memory they keep their
// three-byte form, ED A0..BF xx.
#pragma once

#include <string_view>

namespace tavrel::jet::check {

/// Place of the first from a place on; npos when there is none.
inline std::size_t FindLoneSurrogate(std::string_view utf8, std::size_t from = 0) {
    for (std::size_t at = utf8.find('\xED', from); at != std::string_view::npos;
         at = utf8.find('\xED', at + 1)) {
        if (at + 2 < utf8.size() && static_cast<unsigned char>(utf8[at + 1]) >= 0xA0) {
            return at;
        }
    }
    return std::string_view::npos;
}

inline bool HasLoneSurrogate(std::string_view utf8) {
    return FindLoneSurrogate(utf8) != std::string_view::npos;
}

}  // namespace tavrel::jet::check
