// JSON as a stream: members are written as they come, nothing is kept.
//
// Two layouts: OneLine puts everything behind ", " and ": "; Indented gives each member its own line, one
// space for each level.  An object or array inside an Indented one may ask for OneLine, and with it all that
// it holds.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::report {

enum class JsonText {
    Ascii,  ///< \uXXXX for everything outside 20..7E
    Utf8    ///< only what JSON asks for, and surrogates without partner (which UTF-8 cannot hold)
};
enum class JsonLayout { OneLine, Indented };

/// The text in quotes, escaped.
std::string JsonQuoted(std::string_view utf8, JsonText text);

class JsonWriter {
  public:
    /// Keeps a reference to `out`.
    JsonWriter(std::ostream& out, JsonText text, JsonLayout layout);

    void BeginObject() { Begin('{', '}', layout_); }
    void BeginObject(JsonLayout layout) { Begin('{', '}', layout); }
    void EndObject() { End(); }
    void BeginArray() { Begin('[', ']', layout_); }
    void BeginArray(JsonLayout layout) { Begin('[', ']', layout); }
    void EndArray() { End(); }

    /// REQUIRES: an object is open, and a value follows.
    void Key(std::string_view name);

    void String(std::string_view utf8);
    void Integer(std::int64_t value);
    /// Shortest form that reads back; NaN and the infinities as bare words.
    void Double(double value);
    void Boolean(bool value);
    void Null();

    void Member(std::string_view name, std::string_view value);
    void Member(std::string_view name, const char* value) { Member(name, std::string_view(value)); }
    void Member(std::string_view name, std::int64_t value);
    void Member(std::string_view name, bool value);

  private:
    struct Level {
        char close;
        JsonLayout layout;
        bool empty;
    };

    void Begin(char open, char close, JsonLayout layout);
    void End();
    void BeforeItem();
    void NewLine();

    std::ostream& out_;
    JsonText text_;
    JsonLayout layout_;
    std::vector<Level> levels_;
    bool afterKey_ = false;
};

}  // namespace tavrel::report
