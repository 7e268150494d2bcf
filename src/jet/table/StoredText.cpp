#include "jet/table/StoredText.h"

namespace tavrel::jet {

namespace {
constexpr char16_t kLooksCompressed = 0xFEFF;
constexpr std::int32_t kDataConversion = 3421;
}  // namespace

ByteVector StoredText(std::u16string_view units, bool compress, TextKind kind) {
    if (units.empty() || units.front() != kLooksCompressed) {
        return StoreText(units, compress, kind);
    }
    if (auto packed = CompressText(units)) {
        return std::move(*packed);
    }
    throw MakeError(kDataConversion, {}, "U+FEFF로 시작하는 텍스트를 저장할 수 없음");
}

}  // namespace tavrel::jet
