#include "jet/define/CreateNames.h"

#include <algorithm>
#include <string>

#include "jet/index/KeyEncoder.h"
#include "jet/table/UnknownWeight.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::u16string_view kForbidden = u".!`[]";

bool MayStandInName(char16_t unit) {
    return unit >= u' ' && unit != 0x7F && kForbidden.find(unit) == kForbidden.npos;
}

}  // namespace

void CheckName(std::string_view name) {
    const std::u16string units = text::Utf16FromUtf8(name);
    const bool fits = !units.empty() && units.size() <= kMaxNameUnits;
    if (!fits || units.front() == u' ' || !std::ranges::all_of(units, MayStandInName)) {
        throw MakeError(definitionErrors::kInvalidName, {name}, "잘못된 이름 '" + std::string(name) + "'");
    }
}

ByteVector NameKey(std::string_view name, std::uint16_t sortOrder) {
    const std::u16string units = text::Utf16FromUtf8(name);
    if (auto key = EncodeTextKey(units, sortOrder)) {
        return std::move(*key);
    }
    ThrowUnknownWeight(units, sortOrder, "이름 '" + std::string(name) + "'");
}

}  // namespace tavrel::jet
