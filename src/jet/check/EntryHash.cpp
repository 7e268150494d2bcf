#include "jet/check/EntryHash.h"

#include <bit>
#include <random>

namespace tavrel::jet::check {

namespace {

struct Key {
    std::uint64_t low = Random();
    std::uint64_t high = Random();

    static std::uint64_t Random() {
        std::random_device random;
        return std::uint64_t{random()} << 32 | random();
    }
};

class State {
  public:
    explicit State(const Key& key)
        : a_(key.low ^ 0x736F6D6570736575),
          b_(key.high ^ 0x646F72616E646F6D),
          c_(key.low ^ 0x6C7967656E657261),
          d_(key.high ^ 0x7465646279746573) {}

    void Take(std::uint64_t word) {
        d_ ^= word;
        Round();
        a_ ^= word;
    }

    std::uint64_t Finish() {
        c_ ^= 0xFF;
        for (int i = 0; i < 3; ++i) {
            Round();
        }
        return a_ ^ b_ ^ c_ ^ d_;
    }

  private:
    void Round() {
        a_ += b_;
        c_ += d_;
        b_ = std::rotl(b_, 13) ^ a_;
        d_ = std::rotl(d_, 16) ^ c_;
        a_ = std::rotl(a_, 32);
        c_ += b_;
        a_ += d_;
        b_ = std::rotl(b_, 17) ^ c_;
        d_ = std::rotl(d_, 21) ^ a_;
        c_ = std::rotl(c_, 32);
    }

    std::uint64_t a_, b_, c_, d_;
};

}  // namespace

std::uint64_t EntryHash(ByteView entry) {
    static const Key key;
    State state(key);
    std::uint64_t word = 0;
    const std::uint64_t length = entry.size();
    for (; entry.size() >= sizeof word; entry = entry.subspan(sizeof word)) {
        std::memcpy(&word, entry.data(), sizeof word);
        state.Take(word);
    }
    word = length << 56;
    std::memcpy(&word, entry.data(), entry.size());
    state.Take(word);
    return state.Finish();
}

}  // namespace tavrel::jet::check
