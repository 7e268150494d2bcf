#include "report/JsonWriter.h"

#include "text/Format.h"
#include "text/Utf.h"

namespace tavrel::report {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

void AppendUnit(std::string& out, char32_t unit) {
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        out += kDigits[unit >> shift & 0xF];
    }
}

void AppendEscaped(std::string& out, char32_t codePoint) {
    if (codePoint >= 0x10000) {
        AppendUnit(out, 0xD800 + ((codePoint - 0x10000) >> 10));
        AppendUnit(out, 0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        return;
    }
    AppendUnit(out, codePoint);
}

/// The letter behind the backslash for those that have one; 0 for the others.
char ShortEscape(unsigned char byte) {
    switch (byte) {
        case '"':
            return '"';
        case '\\':
            return '\\';
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '\t':
            return 't';
        case '\f':
            return 'f';
        case '\b':
            return 'b';
        default:
            return 0;
    }
}

void AppendAscii(std::string& out, unsigned char byte, JsonText text) {
    if (const char letter = ShortEscape(byte); letter != 0) {
        out += '\\';
        out += letter;
    } else if (byte < 0x20 || (byte == 0x7F && text == JsonText::Ascii)) {
        AppendUnit(out, byte);
    } else {
        out += static_cast<char>(byte);
    }
}

void AppendWide(std::string& out, char32_t codePoint, JsonText text) {
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (text == JsonText::Ascii || surrogate) {
        AppendEscaped(out, codePoint);
    } else {
        text::AppendUtf8(out, codePoint);
    }
}

}  // namespace

std::string JsonQuoted(std::string_view utf8, JsonText text) {
    std::string out;
    out.reserve(utf8.size() + 2);
    out += '"';
    for (std::size_t at = 0; at < utf8.size();) {
        const auto byte = static_cast<unsigned char>(utf8[at]);
        if (byte < 0x80) {
            AppendAscii(out, byte, text);
            ++at;
        } else {
            AppendWide(out, text::NextCodePoint(utf8, at), text);
        }
    }
    out += '"';
    return out;
}

JsonWriter::JsonWriter(std::ostream& out, JsonText text, JsonLayout layout)
    : out_(out), text_(text), layout_(layout) {}

void JsonWriter::Begin(char open, char close, JsonLayout layout) {
    BeforeItem();
    out_ << open;
    if (!levels_.empty() && levels_.back().layout == JsonLayout::OneLine) {
        layout = JsonLayout::OneLine;
    }
    levels_.push_back({.close = close, .layout = layout, .empty = true});
}

void JsonWriter::End() {
    const Level level = levels_.back();
    levels_.pop_back();
    if (!level.empty && level.layout == JsonLayout::Indented) {
        NewLine();
    }
    out_ << level.close;
}

void JsonWriter::NewLine() {
    out_ << '\n' << std::string(levels_.size(), ' ');
}

void JsonWriter::BeforeItem() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (levels_.empty()) {
        return;
    }
    Level& level = levels_.back();
    const bool indented = level.layout == JsonLayout::Indented;
    if (!level.empty) {
        out_ << (indented ? "," : ", ");
    }
    if (indented) {
        NewLine();
    }
    level.empty = false;
}

void JsonWriter::Key(std::string_view name) {
    BeforeItem();
    out_ << JsonQuoted(name, text_) << ": ";
    afterKey_ = true;
}

void JsonWriter::String(std::string_view utf8) {
    BeforeItem();
    out_ << JsonQuoted(utf8, text_);
}

void JsonWriter::Integer(std::int64_t value) {
    BeforeItem();
    out_ << std::to_string(value);
}

void JsonWriter::Double(double value) {
    BeforeItem();
    out_ << text::FormatDouble(value);
}

void JsonWriter::Boolean(bool value) {
    BeforeItem();
    out_ << (value ? "true" : "false");
}

void JsonWriter::Null() {
    BeforeItem();
    out_ << "null";
}

void JsonWriter::Member(std::string_view name, std::string_view value) {
    Key(name);
    String(value);
}

void JsonWriter::Member(std::string_view name, std::int64_t value) {
    Key(name);
    Integer(value);
}

void JsonWriter::Member(std::string_view name, bool value) {
    Key(name);
    Boolean(value);
}

}  // namespace tavrel::report
