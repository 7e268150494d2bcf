// SHA-256 (FIPS 180-4), for row digests.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tavrel::text {

class Sha256 {
  public:
    Sha256();
    void Update(std::span<const std::uint8_t> bytes);
    void Update(std::string_view bytes);
    /// 64 lower-case hexadecimal digits.  The object takes no more data afterwards.
    std::string HexDigest();

  private:
    void Block(const std::uint8_t* block);

    std::array<std::uint32_t, 8> state_;
    std::array<std::uint8_t, 64> buffer_{};
    std::size_t buffered_ = 0;
    std::uint64_t length_ = 0;
};

}  // namespace tavrel::text
