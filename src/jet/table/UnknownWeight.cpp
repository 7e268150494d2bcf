#include "jet/table/UnknownWeight.h"

#include <string>

#include "jet/index/KeyEncoder.h"
#include "text/Error.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

/// The first character that has no key of its own; the whole text when only a combination is unknown.
std::string UnknownCharacter(std::u16string_view text, std::uint16_t sortOrder) {
    const std::string utf8 = text::Utf8FromUtf16(text);
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t start = at;
        text::NextCodePoint(utf8, at);
        const std::string character = utf8.substr(start, at - start);
        if (!EncodeTextKey(text::Utf16FromUtf8(character), sortOrder)) {
            return character;
        }
    }
    return utf8;
}

}  // namespace

void ThrowUnknownWeight(std::u16string_view text, std::uint16_t sortOrder, std::string_view reason) {
    throw MakeError(errors::kUnknownSortWeight, {UnknownCharacter(text, sortOrder)}, reason);
}

}  // namespace tavrel::jet
