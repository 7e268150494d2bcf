#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "report/JsonWriter.h"

namespace tavrel::report {
namespace {

struct QuotedCase {
    const char* name;
    std::string text;
    const char* ascii;
    const char* utf8;
};

TEST(JsonQuoted, EscapesAsEachTextFormAsks) {
    const QuotedCase cases[] = {{"plain", "abc ~", R"("abc ~")", R"("abc ~")"},
                                {"quotes", "a\"b\\c", R"("a\"b\\c")", R"("a\"b\\c")"},
                                {"controls", std::string("\0\x01\n\r\t\f\b\x1f", 8),
                                 R"("\u0000\u0001\n\r\t\f\b\u001f")", R"("\u0000\u0001\n\r\t\f\b\u001f")"},
                                {"delete", "\x7f", R"("\u007f")", "\"\x7f\""},
                                {"slash stays", "</script>", R"("</script>")", R"("</script>")"},
                                {"hangul", "가", R"("\uac00")", R"("가")"},
                                {"beyond the first plane", "😀", R"("\ud83d\ude00")", R"("😀")"},
                                {"surrogate without partner", "\xed\xa0\xbd", R"("\ud83d")", R"("\ud83d")"},
                                {"no UTF-8", "\xff", R"("\ufffd")", "\"\xef\xbf\xbd\""}};
    for (const QuotedCase& c : cases) {
        EXPECT_EQ(JsonQuoted(c.text, JsonText::Ascii), c.ascii) << c.name;
        EXPECT_EQ(JsonQuoted(c.text, JsonText::Utf8), c.utf8) << c.name;
    }
}

void WriteSample(JsonWriter& json) {
    json.BeginObject();
    json.Member("n", std::int64_t{-7});
    json.Key("empty");
    json.BeginArray();
    json.EndArray();
    json.Key("list");
    json.BeginArray();
    json.Boolean(true);
    json.Null();
    json.BeginObject(JsonLayout::OneLine);
    json.Member("x", "y");
    json.Member("z", false);
    json.EndObject();
    json.EndArray();
    json.EndObject();
}

TEST(JsonWriter, LaysOutOneLineAndIndented) {
    std::ostringstream oneLine;
    JsonWriter first(oneLine, JsonText::Ascii, JsonLayout::OneLine);
    WriteSample(first);
    EXPECT_EQ(oneLine.str(), R"({"n": -7, "empty": [], "list": [true, null, {"x": "y", "z": false}]})");

    std::ostringstream indented;
    JsonWriter second(indented, JsonText::Ascii, JsonLayout::Indented);
    WriteSample(second);
    EXPECT_EQ(indented.str(),
              "{\n \"n\": -7,\n \"empty\": [],\n \"list\": [\n  true,\n  null,\n  {\"x\": \"y\", \"z\": "
              "false}\n ]\n}");
}

TEST(JsonWriter, WritesDoublesInTheShortestForm) {
    std::ostringstream out;
    JsonWriter json(out, JsonText::Ascii, JsonLayout::OneLine);
    json.BeginArray();
    for (const double value : {0.1, 3.0, 1e16, 1e-5, static_cast<double>(0.1F)}) {
        json.Double(value);
    }
    json.Double(std::numeric_limits<double>::infinity());
    json.EndArray();
    EXPECT_EQ(out.str(), "[0.1, 3.0, 1e+16, 1e-05, 0.10000000149011612, Infinity]");
}

}  // namespace
}  // namespace tavrel::report
