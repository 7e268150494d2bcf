#include "text/Sha256.h"

#include <algorithm>
#include <bit>
#include <functional>

#include "text/Format.h"

namespace tavrel::text {
namespace {

// FIPS 180-4, 4.2.2: fractional parts of the cube roots of the first 64 primes.
constexpr std::array<std::uint32_t, 64> kRound = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

// 5.3.3: of the square roots of the first eight.
constexpr std::array<std::uint32_t, 8> kInitial = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                                   0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

std::array<std::uint32_t, 64> Schedule(const std::uint8_t* block) {
    std::array<std::uint32_t, 64> words;
    for (std::size_t i = 0; i < 16; ++i, block += 4) {
        words[i] = std::uint32_t{block[0]} << 24 | std::uint32_t{block[1]} << 16 |
                   std::uint32_t{block[2]} << 8 | block[3];
    }
    for (std::size_t i = 16; i < 64; ++i) {
        const std::uint32_t a = words[i - 15];
        const std::uint32_t b = words[i - 2];
        words[i] = words[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3)) + words[i - 7] +
                   (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10));
    }
    return words;
}

}  // namespace

Sha256::Sha256() : state_(kInitial) {}

void Sha256::Update(std::span<const std::uint8_t> bytes) {
    length_ += bytes.size();
    while (!bytes.empty()) {
        if (buffered_ == 0 && bytes.size() >= buffer_.size()) {
            Block(bytes.data());
            bytes = bytes.subspan(buffer_.size());
            continue;
        }
        const std::size_t taken = std::min(bytes.size(), buffer_.size() - buffered_);
        std::copy_n(bytes.begin(), taken, buffer_.begin() + static_cast<std::ptrdiff_t>(buffered_));
        buffered_ += taken;
        bytes = bytes.subspan(taken);
        if (buffered_ == buffer_.size()) {
            Block(buffer_.data());
            buffered_ = 0;
        }
    }
}

void Sha256::Update(std::string_view bytes) {
    Update(std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
}

std::string Sha256::HexDigest() {
    const std::uint64_t bits = length_ * 8;
    constexpr std::array<std::uint8_t, 64> kPadding = {0x80};
    const std::size_t padding = (buffered_ < 56 ? 56 : 120) - buffered_;
    Update(std::span(kPadding).first(std::min<std::size_t>(padding, 64)));
    Update(std::span(kPadding).subspan(1, padding > 64 ? padding - 64 : 0));
    std::array<std::uint8_t, 8> tail;
    for (std::size_t i = 0; i < 8; ++i) {
        tail[i] = static_cast<std::uint8_t>(bits >> (56 - 8 * i));
    }
    Update(tail);
    std::array<std::uint8_t, 32> digest;
    for (std::size_t i = 0; i < digest.size(); ++i) {
        digest[i] = static_cast<std::uint8_t>(state_[i / 4] >> (24 - 8 * (i % 4)));
    }
    return Hex(digest);
}

void Sha256::Block(const std::uint8_t* block) {
    const std::array<std::uint32_t, 64> words = Schedule(block);
    auto [a, b, c, d, e, f, g, h] = state_;
    for (std::size_t i = 0; i < 64; ++i) {
        const std::uint32_t t1 = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                                 ((e & f) ^ (~e & g)) + kRound[i] + words[i];
        const std::uint32_t t2 =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    const std::array<std::uint32_t, 8> result = {a, b, c, d, e, f, g, h};
    std::transform(state_.begin(), state_.end(), result.begin(), state_.begin(), std::plus<>());
}

}  // namespace tavrel::text
