// Keys of bytes, numbered in the order of their first arrival: behind joins, groups, DISTINCT and IN.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet::sql {

class KeyTable {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    struct Inserted {
        std::uint32_t number;
        bool isNew;
    };
    /// Throws 3035 beyond four thousand million keys.
    Inserted Insert(ByteView key);
    /// kNone when the key is not there.
    [[nodiscard]] std::uint32_t Find(ByteView key) const;
    [[nodiscard]] ByteView Key(std::uint32_t number) const;
    [[nodiscard]] std::size_t Size() const { return ends_.size(); }
    void Clear();

  private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = kNone;
    };

    [[nodiscard]] std::size_t SlotOf(ByteView key, std::uint32_t hash) const;
    void Grow();

    std::vector<Slot> slots_;          ///< a power of two, at most half full
    ByteVector bytes_;                 ///< all keys, one behind the other
    std::vector<std::uint64_t> ends_;  ///< where each key ends in bytes_
};

}  // namespace tavrel::jet::sql
