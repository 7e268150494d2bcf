#include "jet/check/Places.h"

namespace tavrel::jet::check {

std::string Hex8(std::uint32_t value) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out(8, '0');
    for (std::size_t i = 0; i < 8; ++i) {
        out[7 - i] = kDigits[value >> (4 * i) & 15];
    }
    return out;
}

}  // namespace tavrel::jet::check
