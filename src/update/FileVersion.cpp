#include "update/FileVersion.h"

#include <array>

#include "platform/VersionResource.h"
#include "text/Utf.h"
#include "update/ResumeAfterError.h"

namespace tavrel::modFile {

namespace {

constexpr std::array<std::u16string_view, 12> kKeys = {
    u"CompanyName",    u"FileDescription",  u"FileVersion",  u"InternalName",
    u"LegalCopyright", u"OriginalFilename", u"ProductName",  u"ProductVersion",
    u"Comments",       u"LegalTrademarks",  u"PrivateBuild", u"SpecialBuild"};
constexpr std::size_t kFileVersionEntry = 2;
constexpr std::string_view kLanguageKey = "Language";
constexpr std::u16string_view kTextBlock = u"StringFileInfo";
/// The type word of a text entry; it precedes the key.
constexpr char16_t kTextType = 1;

// The run-time's errors for a text where a list is needed, and for a length below 0.
constexpr std::int32_t kTypeMismatch = 13;
constexpr std::int32_t kBadCall = 5;

constexpr const char* kProcedure = "GetFileVer";
constexpr const char* kModule = "Module mdlFile";

/// The resource as characters.  The buffer has as many of them as the resource has bytes, so that half of it
/// is zeros and every text in it ends.
std::u16string BufferOf(const std::vector<std::uint8_t>& resource) {
    std::u16string buffer(resource.size(), u'\0');
    for (std::size_t i = 0; i < resource.size(); ++i) {
        buffer[i / 2] = static_cast<char16_t>(buffer[i / 2] | resource[i] << 8U * (i % 2));
    }
    return buffer;
}

bool IsZeroAt(const std::u16string& buffer, std::size_t at) {
    return at < buffer.size() && buffer[at] == u'\0';
}

/// What stands at `start` up to the next zero.
std::string TextAt(const std::u16string& buffer, std::size_t start) {
    const std::u16string_view rest =
        start < buffer.size() ? std::u16string_view(buffer).substr(start) : std::u16string_view();
    return text::Utf8FromUtf16(rest.substr(0, rest.find(u'\0')));
}

std::string ValueOf(const std::u16string& buffer, std::u16string_view key) {
    const std::size_t marker = buffer.find(kTextType + std::u16string(key));
    if (marker == std::u16string::npos) {
        return "Not specified";
    }
    // The key's terminator, and one more zero where the value would else not stand at a multiple of 32 bits.
    const std::size_t behind = marker + 1 + key.size();
    if (IsZeroAt(buffer, behind + 1)) {
        return TextAt(buffer, behind + 2);
    }
    return TextAt(buffer, IsZeroAt(buffer, behind) ? behind + 1 : behind);
}

std::string LanguageEntry(const std::u16string& buffer) {
    const std::size_t block = buffer.find(kTextType + std::u16string(kTextBlock));
    if (block == std::u16string::npos) {
        return std::string(kLanguageKey);
    }
    const std::size_t table = buffer.find(kTextType, block + 1 + kTextBlock.size());
    const std::string code = table == std::u16string::npos ? std::string() : TextAt(buffer, table + 1);
    return std::string(kLanguageKey) + ": " + GetLanguageName(code);
}

bool IsNumber(std::string_view digits) {
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

/// A whole number without leading zeros; anything else as it is.
std::string InNumberFormat(const std::string& component) {
    const std::size_t first = component.find_first_not_of(' ');
    const std::size_t last = component.find_last_not_of(' ');
    const std::string digits =
        first == std::string::npos ? std::string() : component.substr(first, last - first + 1);
    if (!IsNumber(digits)) {
        return component;
    }
    const std::size_t significant = digits.find_first_not_of('0');
    return significant == std::string::npos ? "0" : digits.substr(significant);
}

std::string VersionOf(const std::vector<std::string>& information, bool normalizeLast) {
    if (information.empty()) {
        throw MakeError(kTypeMismatch);
    }
    const std::string& entry = information[kFileVersionEntry];
    const std::string version = entry.substr(entry.find(' ') + 1);
    const std::size_t point = version.find_last_of('.');
    if (normalizeLast) {
        return version.substr(0, point + 1) + InNumberFormat(version.substr(point + 1));
    }
    if (point == std::string::npos) {
        throw MakeError(kBadCall);
    }
    return version.substr(0, point);
}

}  // namespace

std::vector<std::string> GetFileVerInfo(const std::string& path, platform::MessageBox& messages) {
    const update::ResumeAfterError resume(messages, kProcedure, kModule);
    std::vector<std::uint8_t> resource;
    resume.Run([&] { resource = platform::ReadVersionResource(path); });
    if (resource.empty()) {
        return {};
    }
    const std::u16string buffer = BufferOf(resource);
    std::vector<std::string> information;
    information.reserve(kKeys.size() + 1);
    for (const std::u16string_view key : kKeys) {
        information.push_back(text::Utf8FromUtf16(key) + ": " + ValueOf(buffer, key));
    }
    information.push_back(LanguageEntry(buffer));
    return information;
}

std::string GetFileVer(const std::string& path, bool normalizeLast, bool silent,
                       platform::MessageBox& messages) {
    try {
        return VersionOf(GetFileVerInfo(path, messages), normalizeLast);
    } catch (const Error& error) {
        if (!silent) {
            messages.Say(ProcedureErrorText(error, kProcedure, kModule));
        }
        return {};
    }
}

}  // namespace tavrel::modFile
