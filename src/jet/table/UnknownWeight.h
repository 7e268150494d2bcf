// The refusal of a text that no index can hold because a character's place in the sort order is not known.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavrel::jet {

/// Throws 3990, naming the character.
[[noreturn]] void ThrowUnknownWeight(std::u16string_view text, std::uint16_t sortOrder,
                                     std::string_view reason);

}  // namespace tavrel::jet
