#include "jet/storage/FileHeader.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "jet/storage/Rc4.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::uint32_t kHeaderKey = 0x6B39DAC7;  // C7 DA 39 6B
constexpr std::size_t kCipherStart = 0x18;
constexpr std::size_t kCipherBytes = 128;
constexpr std::size_t kPassword = 0x42;
constexpr std::size_t kPasswordBytes = 40;
constexpr std::size_t kCounters = 0xE00;
constexpr std::array<std::uint8_t, 4> kSignature = {0, 1, 0, 0};
constexpr std::string_view kJetName{"Standard Jet DB\0", 16};
constexpr std::string_view kAceName{"Standard ACE DB\0", 16};
/// Global maps (page 1, rows 0 and 1) and the definition pages of the four engine tables.
constexpr std::array<std::uint32_t, 9> kFixedPlaces = {0x100, 0x101, 2, 3, 4, 5, 0, 0, 0};
constexpr std::uint32_t kEngineMark = 0x654;
constexpr std::uint32_t kVersionText = 0x00302E34;  // "4.0"

bool HasText(ByteView page, std::size_t offset, std::string_view text) {
    return std::equal(text.begin(), text.end(), page.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

std::array<std::uint8_t, 4> PasswordMask(double created) {
    // A date beyond the range of the mask cannot come from an engine; it masks with zero.
    const bool usable = std::isfinite(created) && std::fabs(created) < 2147483648.0;
    const auto day = usable ? static_cast<std::uint32_t>(static_cast<std::int32_t>(created)) : 0U;
    std::array<std::uint8_t, 4> mask{};
    PutU32(mask, 0, day);
    return mask;
}

void MaskPassword(std::span<std::uint8_t> header, double created) {
    const auto mask = PasswordMask(created);
    for (std::size_t i = 0; i < kPasswordBytes; ++i) {
        header[kPassword + i] ^= mask[i % 4];
    }
}

/// Every second byte from 42 to 78 of the header, password unmasked, shifted by its place and XORed into the
/// date.
std::uint32_t OwnerKey(ByteView header) {
    std::uint32_t key = U32(header, 0x72);
    for (unsigned i = 0; i < 28; ++i) {
        key ^= std::uint32_t{header[kPassword + 2 * i]} << (i % 24);
    }
    return key;
}

void RefuseOtherFormats(ByteView page, std::string_view path) {
    if (page.size() < kCipherStart || (!HasText(page, 4, kJetName) && !HasText(page, 4, kAceName))) {
        throw MakeError(errors::kUnrecognizedFormat, {path});
    }
    const std::uint32_t version = U32(page, 0x14);
    if (HasText(page, 4, kAceName) || version > 1) {
        throw MakeError(errors::kUnrecognizedFormat, {path}, "Jet 4.0보다 새로운 버전의 파일");
    }
    if (version == 0) {
        throw MakeError(errors::kOldVersion, {path}, "Jet 3.x 파일");
    }
    if (page.size() < kPageSize) {
        throw MakeError(errors::kCannotOpen, {path}, "파일이 너무 짧음");
    }
}

bool ConstantsRight(ByteView header) {
    for (std::size_t i = 0; i < kFixedPlaces.size(); ++i) {
        if (U32(header, kCipherStart + 4 * i) != kFixedPlaces[i]) {
            return false;
        }
    }
    return std::equal(kSignature.begin(), kSignature.end(), header.begin()) &&
           U32(header, 0x98) == kEngineMark && U32(header, 0x9C) == kVersionText;
}

}  // namespace

FileHeader ParseHeader(ByteView page, std::string_view path) {
    RefuseOtherFormats(page, path);
    Page plain{};
    std::copy_n(page.begin(), kPageSize, plain.begin());
    Rc4(kHeaderKey, std::span(plain).subspan(kCipherStart, kCipherBytes));
    FileHeader header;
    header.constantsRight = ConstantsRight(plain);
    header.codePage = U16(plain, 0x3C);
    header.pageKey = U32(plain, 0x3E);
    header.build = U32(plain, 0x6A);
    header.sortOrder = U16(plain, 0x6E);
    header.created = DoubleOf(U64(plain, 0x72));
    MaskPassword(plain, header.created);
    header.ownerKey = OwnerKey(plain);
    const std::string password = text::Utf8FromUtf16Le(ByteView(plain).subspan(kPassword, kPasswordBytes));
    header.password = password.substr(0, password.find('\0'));
    return header;
}

void BuildHeader(FileHeader& header, Page& page) {
    page.fill(0);
    std::copy(kSignature.begin(), kSignature.end(), page.begin());
    std::copy(kJetName.begin(), kJetName.end(), page.begin() + 4);
    PutU32(page, 0x14, 1);
    for (std::size_t i = 0; i < kFixedPlaces.size(); ++i) {
        PutU32(page, kCipherStart + 4 * i, kFixedPlaces[i]);
    }
    PutU16(page, 0x3C, header.codePage);
    PutU32(page, 0x3E, header.pageKey);
    const std::u16string password = text::Utf16FromUtf8(header.password);
    if (password.size() * 2 > kPasswordBytes) {
        throw MakeError(errors::kBadPassword, {}, "암호는 20자까지");
    }
    for (std::size_t i = 0; i < password.size(); ++i) {
        PutU16(page, kPassword + 2 * i, password[i]);
    }
    PutU32(page, 0x6A, header.build);
    PutU16(page, 0x6E, header.sortOrder);
    PutU64(page, 0x72, BitsOf(header.created));
    header.ownerKey = OwnerKey(page);
    MaskPassword(page, header.created);
    Rc4(kHeaderKey, std::span(page).subspan(kCipherStart, kCipherBytes));
    PutU32(page, 0x98, kEngineMark);
    PutU32(page, 0x9C, kVersionText);
    for (std::size_t i = kCounters; i < kPageSize; i += 2) {
        PutU16(page, i, 0x0100);
    }
}

}  // namespace tavrel::jet
