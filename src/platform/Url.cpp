#include "platform/Url.h"

namespace tavrel::platform {

std::string EncodeUrl(std::string_view url) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : url) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7F) {
            encoded += c;
        } else {
            encoded += {'%', kDigits[byte / 16U], kDigits[byte % 16U]};
        }
    }
    return encoded;
}

}  // namespace tavrel::platform
