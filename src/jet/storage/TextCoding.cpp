#include "jet/storage/TextCoding.h"

#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::uint8_t kMark0 = 0xFF;
constexpr std::uint8_t kMark1 = 0xFE;

std::u16string UnitsOf(ByteView bytes) {
    if (bytes.size() % 2 != 0) {
        ThrowDamaged("텍스트의 바이트 수가 홀수임");
    }
    std::u16string units(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) {
        units[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    }
    return units;
}

std::u16string Expand(ByteView packed) {
    std::u16string units;
    units.reserve(packed.size());
    bool single = true;
    for (std::size_t i = 0; i < packed.size();) {
        if (packed[i] == 0) {
            single = !single;
            ++i;
        } else if (single) {
            units.push_back(packed[i]);
            ++i;
        } else {
            units.push_back(U16(packed, i));
            i += 2;
        }
    }
    return units;
}

}  // namespace

bool IsCompressed(ByteView stored) {
    return stored.size() >= kCompressedMark && stored[0] == kMark0 && stored[1] == kMark1;
}

std::u16string DecodeUnits(ByteView stored) {
    return IsCompressed(stored) ? Expand(stored.subspan(kCompressedMark)) : UnitsOf(stored);
}

std::string DecodeText(ByteView stored) {
    if (IsCompressed(stored)) {
        return text::Utf8FromUtf16(Expand(stored.subspan(kCompressedMark)));
    }
    if (stored.size() % 2 != 0) {
        ThrowDamaged("텍스트의 바이트 수가 홀수임");
    }
    return text::Utf8FromUtf16Le(stored);
}

ByteVector PlainText(std::u16string_view units) {
    ByteVector out;
    out.reserve(units.size() * 2);
    for (const char16_t unit : units) {
        AppendU16(out, unit);
    }
    return out;
}

std::optional<ByteVector> CompressText(std::u16string_view units) {
    ByteVector out = {kMark0, kMark1};
    out.reserve(units.size() + 2);
    bool single = true;
    for (const char16_t unit : units) {
        if ((unit & 0xFF) == 0) {
            return std::nullopt;  // a zero low byte would read as a switch
        }
        if ((unit < 0x100) != single) {
            out.push_back(0);
            single = !single;
        }
        if (single) {
            AppendU8(out, static_cast<std::uint8_t>(unit));
        } else {
            AppendU16(out, unit);
        }
    }
    return out;
}

bool PrefersCompressed(std::size_t units, std::size_t bytes, TextKind kind) {
    constexpr std::size_t kLeastUnits = 3;
    return units >= kLeastUnits && bytes <= units * 2 - (kind == TextKind::Memo ? 1 : 0);
}

ByteVector StoreText(std::u16string_view units, bool compress, TextKind kind) {
    if (compress) {
        if (auto packed = CompressText(units);
            packed && PrefersCompressed(units.size(), packed->size(), kind)) {
            return std::move(*packed);
        }
    }
    return PlainText(units);
}

}  // namespace tavrel::jet
