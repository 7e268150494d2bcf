#include "platform/AnsiText.h"

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {

std::string AnsiText(std::string_view utf8) {
    const std::wstring wide = Wide(utf8);
    const int units = static_cast<int>(wide.size());
    const int length = ::WideCharToMultiByte(CP_ACP, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, wide.data(), units, text.data(), length, nullptr, nullptr);
    return text;
}

}  // namespace tavrel::platform
