#include "app/logic/Caption.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace tavrel::app {

std::string WindowCaption(std::string_view fileVersion) {
    std::array<std::uint32_t, 4> numbers{};
    const char* at = fileVersion.data();
    const char* end = at + fileVersion.size();
    for (std::uint32_t& number : numbers) {
        at = std::from_chars(at, end, number).ptr;
        if (at != end) {
            ++at;  // the point
        }
    }
    return "Tavrel v" + std::to_string(numbers[0]) + "." + std::to_string(numbers[1]) + "." +
           std::to_string(numbers[3]) + " (Made by Ardel)";
}

}  // namespace tavrel::app
