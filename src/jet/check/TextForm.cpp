#include "jet/check/TextForm.h"

namespace tavrel::jet::check {

namespace {

/// What is to be known of a text's units, gathered without writing them anywhere.
struct Units {
    std::size_t number = 0;
    std::size_t packedBytes = kCompressedMark;  ///< in the compressed form
    bool packable = true;                       ///< there is a compressed form
    bool single = true;                         ///< the compressed form stands in a run of single bytes
    bool astray = false;                        ///< one of a single byte is stored as two

    void Add(unsigned unit) {
        const bool fits = unit < 0x100;
        packable &= (unit & 0xFF) != 0;
        packedBytes += (fits ? 1U : 2U) + (fits == single ? 0U : 1U);
        single = fits;
        ++number;
    }

    /// Units of a single byte, none of them zero.  REQUIRES: count > 0.
    void AddSingles(std::size_t count) {
        packedBytes += count + (single ? 0U : 1U);
        single = true;
        number += count;
    }
};

/// Bytes before the first zero.
std::size_t RunLength(ByteView bytes) {
    const void* zero = std::memchr(bytes.data(), 0, bytes.size());
    return zero == nullptr ? bytes.size()
                           : static_cast<std::size_t>(static_cast<const std::uint8_t*>(zero) - bytes.data());
}

Units OfPlain(ByteView stored) {
    if (stored.size() % 2 != 0) {
        ThrowDamaged("텍스트의 바이트 수가 홀수임");
    }
    Units units;
    for (std::size_t i = 0; i < stored.size(); i += 2) {
        units.Add(stored[i] | unsigned{stored[i + 1]} << 8);
    }
    return units;
}

Units OfPacked(ByteView packed) {
    Units units;
    bool single = true;
    for (std::size_t i = 0; i < packed.size();) {
        if (packed[i] == 0) {
            single = !single;
            ++i;
        } else if (single) {
            const std::size_t run = RunLength(packed.subspan(i));
            units.AddSingles(run);
            i += run;
        } else {
            units.Add(U16(packed, i));
            units.astray |= units.single;
            i += 2;
        }
    }
    return units;
}

}  // namespace

/// A compressed text is in the right form exactly when each unit stands in a run of its kind and there is no
/// switch too many, which the length shows.
TextFacts ExamineText(ByteView stored, bool compress, TextKind kind) {
    const bool compressed = IsCompressed(stored);
    const Units units = compressed ? OfPacked(stored.subspan(kCompressedMark)) : OfPlain(stored);
    const bool pack = compress && units.packable && PrefersCompressed(units.number, units.packedBytes, kind);
    TextFacts facts{units.number * 2, TextForm::Right};
    if (compressed && (!pack || units.astray || units.packedBytes != stored.size())) {
        facts.form = TextForm::Wrong;
    } else if (!compressed && pack) {
        facts.form = TextForm::NotCompressed;
    }
    return facts;
}

}  // namespace tavrel::jet::check
