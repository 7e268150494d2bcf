#include "jet/catalog/Properties.h"

#include <algorithm>
#include <string>

#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::array<std::uint8_t, 4> kMagic = {'M', 'R', '2', 0};
constexpr std::uint16_t kKindNames = 0x80;
constexpr std::uint16_t kKindObject = 0;
constexpr std::uint16_t kKindColumn = 1;
constexpr std::size_t kChunkHead = 6;
constexpr std::size_t kRecordHead = 8;

std::vector<std::string> ParseNames(ByteView content) {
    std::vector<std::string> names;
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t length = U16(content, at);
        names.push_back(text::Utf8FromUtf16Le(Slice(content, at + 2, length)));
        at += 2 + length;
    }
    return names;
}

Property ParseRecord(ByteView record, const std::vector<std::string>& names) {
    const std::size_t name = U16(record, 4);
    if (U16(record, 6) + kRecordHead != record.size() || name >= names.size()) {
        ThrowDamaged("속성 기록이 잘못됨");
    }
    const ByteView value = record.subspan(kRecordHead);
    return {names[name], record[3], record[2] != 0, {value.begin(), value.end()}};
}

PropertyOwner ParseOwner(std::uint16_t kind, ByteView content, const std::vector<std::string>& names) {
    const std::size_t head = U32(content, 0);
    const std::size_t nameBytes = U16(content, 4);
    if (head != 6 + nameBytes) {
        ThrowDamaged("속성의 소유자 이름이 잘못됨");
    }
    PropertyOwner owner{kind, text::Utf8FromUtf16Le(Slice(content, 6, nameBytes)), {}};
    for (std::size_t at = head; at < content.size();) {
        const std::size_t length = U16(content, at);
        if (length < kRecordHead) {
            ThrowDamaged("속성 기록이 너무 짧음");
        }
        owner.properties.push_back(ParseRecord(Slice(content, at, length), names));
        at += length;
    }
    return owner;
}

void AppendText(ByteVector& out, std::string_view value) {
    for (const char16_t unit : text::Utf16FromUtf8(value)) {
        AppendU16(out, unit);
    }
}

/// A chunk with its length put in front.
void AppendChunk(ByteVector& out, std::uint16_t kind, const ByteVector& content) {
    AppendU32(out, static_cast<std::uint32_t>(kChunkHead + content.size()));
    AppendU16(out, kind);
    AppendBytes(out, content);
}

std::vector<std::string> CollectNames(const std::vector<PropertyOwner>& owners) {
    std::vector<std::string> names;
    for (const PropertyOwner& owner : owners) {
        for (const Property& property : owner.properties) {
            if (std::find(names.begin(), names.end(), property.name) == names.end()) {
                names.push_back(property.name);
            }
        }
    }
    return names;
}

ByteVector OwnerContent(const PropertyOwner& owner, const std::vector<std::string>& names) {
    ByteVector content;
    const std::size_t nameBytes = 2 * text::Utf16Length(owner.name);
    AppendU32(content, static_cast<std::uint32_t>(6 + nameBytes));
    AppendU16(content, static_cast<std::uint16_t>(nameBytes));
    AppendText(content, owner.name);
    for (const Property& property : owner.properties) {
        const auto name = std::find(names.begin(), names.end(), property.name) - names.begin();
        AppendU16(content, static_cast<std::uint16_t>(kRecordHead + property.value.size()));
        AppendU8(content, property.ddl ? 1 : 0);
        AppendU8(content, property.type);
        AppendU16(content, static_cast<std::uint16_t>(name));
        AppendU16(content, static_cast<std::uint16_t>(property.value.size()));
        AppendBytes(content, property.value);
    }
    return content;
}

}  // namespace

bool Property::AsBoolean() const {
    return std::any_of(value.begin(), value.end(), [](std::uint8_t byte) { return byte != 0; });
}

std::string Property::AsText() const {
    if (value.size() % 2 != 0) {
        ThrowDamaged("속성 값의 바이트 수가 홀수임");
    }
    return text::Utf8FromUtf16Le(value);
}

const Property* PropertyOwner::Find(std::string_view property) const {
    // A later record of the same name replaces the earlier one.
    const auto found = std::find_if(properties.rbegin(), properties.rend(),
                                    [property](const Property& p) { return p.name == property; });
    return found == properties.rend() ? nullptr : &*found;
}

PropertyBlob PropertyBlob::Parse(ByteView bytes) {
    PropertyBlob blob;
    if (bytes.empty()) {
        return blob;
    }
    const ByteView magic = Slice(bytes, 0, kMagic.size());
    if (!std::equal(kMagic.begin(), kMagic.end(), magic.begin())) {
        ThrowDamaged("속성 블록이 MR2로 시작하지 않음");
    }
    std::vector<std::string> names;
    for (std::size_t at = kMagic.size(); at < bytes.size();) {
        const std::size_t length = U32(bytes, at);
        if (length < kChunkHead) {
            ThrowDamaged("속성 블록의 길이가 잘못됨");
        }
        const ByteView chunk = Slice(bytes, at, length);
        const std::uint16_t kind = U16(chunk, 4);
        if (kind == kKindNames) {
            for (std::string& name : ParseNames(chunk.subspan(kChunkHead))) {
                names.push_back(std::move(name));
            }
        } else {
            blob.owners_.push_back(ParseOwner(kind, chunk.subspan(kChunkHead), names));
        }
        at += length;
    }
    return blob;
}

ByteVector PropertyBlob::Build() const {
    const std::vector<std::string> names = CollectNames(owners_);
    ByteVector nameChunk;
    for (const std::string& name : names) {
        AppendU16(nameChunk, static_cast<std::uint16_t>(2 * text::Utf16Length(name)));
        AppendText(nameChunk, name);
    }
    ByteVector out(kMagic.begin(), kMagic.end());
    AppendChunk(out, kKindNames, nameChunk);
    for (const PropertyOwner& owner : owners_) {
        AppendChunk(out, owner.kind, OwnerContent(owner, names));
    }
    return out;
}

const Property* PropertyBlob::OfColumn(std::string_view column, std::string_view property) const {
    const Property* found = nullptr;
    for (const PropertyOwner& owner : owners_) {
        if (owner.kind == kKindColumn && owner.name == column) {
            const Property* here = owner.Find(property);
            found = here != nullptr ? here : found;
        }
    }
    return found;
}

void PropertyBlob::Set(std::string_view column, Property property) {
    const std::uint16_t kind = column.empty() ? kKindObject : kKindColumn;
    auto owner = std::find_if(owners_.begin(), owners_.end(),
                              [&](const PropertyOwner& o) { return o.kind == kind && o.name == column; });
    if (owner == owners_.end()) {
        owner = owners_.insert(owners_.end(), PropertyOwner{kind, std::string(column), {}});
    }
    for (Property& present : owner->properties) {
        if (present.name == property.name) {
            present = std::move(property);
            return;
        }
    }
    owner->properties.push_back(std::move(property));
}

bool PropertyBlob::Erase(std::string_view column, std::string_view property) {
    std::size_t erased = 0;
    for (PropertyOwner& owner : owners_) {
        if (owner.kind == kKindColumn && owner.name == column) {
            erased += std::erase_if(owner.properties, [&](const Property& p) { return p.name == property; });
        }
    }
    std::erase_if(owners_, [](const PropertyOwner& owner) {
        return owner.kind == kKindColumn && owner.properties.empty();
    });
    return erased > 0;
}

bool PropertyBlob::EraseColumn(std::string_view column) {
    return std::erase_if(owners_, [&](const PropertyOwner& owner) {
               return owner.kind == kKindColumn && owner.name == column;
           }) > 0;
}

}  // namespace tavrel::jet
