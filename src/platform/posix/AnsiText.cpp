#include "platform/AnsiText.h"

#include <array>
#include <iconv.h>

#include "text/Utf.h"

namespace tavrel::platform {
namespace {

/// A converter from UTF-8 to code page 949.
class Converter {
  public:
    Converter() : handle_(::iconv_open("CP949", "UTF-8")) {}
    ~Converter() {
        if (IsOpen()) {
            ::iconv_close(handle_);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    [[nodiscard]] bool IsOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    /// One character; "?" when the code page has none for it.
    std::string Convert(std::string_view character) {
        std::string in(character);
        std::array<char, 8> out{};
        char* from = in.data();
        char* to = out.data();
        std::size_t left = in.size();
        std::size_t space = out.size();
        if (::iconv(handle_, &from, &left, &to, &space) != 0) {
            ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);  // forget what it was at
            return "?";
        }
        return {out.data(), to};
    }

  private:
    iconv_t handle_;
};

}  // namespace

std::string AnsiText(std::string_view utf8) {
    Converter converter;
    std::string text;
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t start = at;
        const bool plain = text::NextCodePoint(utf8, at) < 0x80;
        const std::string_view character = utf8.substr(start, at - start);
        // A system that lacks the code page writes what it can.
        text += plain ? std::string(character) : converter.IsOpen() ? converter.Convert(character) : "?";
    }
    return text;
}

}  // namespace tavrel::platform
