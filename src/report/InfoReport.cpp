#include "report/InfoReport.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "platform/FileSystem.h"
#include "report/JsonWriter.h"
#include "report/ValueText.h"

namespace tavrel::report {

namespace {

constexpr std::string_view kVersion = "Jet 4.0";

struct SortOrderName {
    std::uint16_t lcid;
    std::string_view name;
};

// Ascending.
constexpr SortOrderName kSortOrders[] = {
    {0x0401, "아랍어"},       {0x0404, "중국어(번체)"}, {0x0405, "체코어"},       {0x0406, "덴마크어"},
    {0x0407, "독일어"},       {0x0408, "그리스어"},     {0x0409, "일반"},         {0x040A, "스페인어(전통)"},
    {0x040B, "핀란드어"},     {0x040C, "프랑스어"},     {0x040D, "히브리어"},     {0x040E, "헝가리어"},
    {0x040F, "아이슬란드어"}, {0x0411, "일본어"},       {0x0412, "한국어"},       {0x0413, "네덜란드어"},
    {0x0414, "노르웨이어"},   {0x0415, "폴란드어"},     {0x0418, "루마니아어"},   {0x0419, "러시아어"},
    {0x041A, "크로아티아어"}, {0x041B, "슬로바키아어"}, {0x041D, "스웨덴어"},     {0x041E, "태국어"},
    {0x041F, "터키어"},       {0x0422, "우크라이나어"}, {0x0424, "슬로베니아어"}, {0x0425, "에스토니아어"},
    {0x0426, "라트비아어"},   {0x0427, "리투아니아어"}, {0x042A, "베트남어"},     {0x0804, "중국어(간체)"},
    {0x0C0A, "스페인어"}};

std::string_view SortOrderText(std::uint16_t lcid) {
    const auto* found = std::lower_bound(std::begin(kSortOrders), std::end(kSortOrders), lcid,
                                         [](const SortOrderName& a, std::uint16_t b) { return a.lcid < b; });
    return found != std::end(kSortOrders) && found->lcid == lcid ? found->name : "알 수 없음";
}

/// 0x0412
std::string LcidText(std::uint16_t lcid) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += kDigits[lcid >> shift & 0xF];
    }
    return text;
}

struct TableCounts {
    std::int64_t user = 0;
    std::int64_t system = 0;
    std::int64_t linked = 0;
};

TableCounts CountTables(jet::Database& database) {
    TableCounts counts;
    for (const jet::CatalogObject& object : database.Catalog().Objects()) {
        if (object.IsTable()) {
            ++(object.IsSystem() ? counts.system : counts.user);
        } else if (object.IsLinked()) {
            ++counts.linked;
        }
    }
    return counts;
}

}  // namespace

void WriteInfoText(std::ostream& out, jet::Database& database, const TextStyle& style) {
    const jet::FileHeader& header = database.Header();
    const TableCounts tables = CountTables(database);
    const std::array<std::pair<std::string_view, std::string>, 10> facts = {
        {{"파일", database.Path()},
         {"크기", std::to_string(platform::FileSize(database.Path())) + "바이트"},
         {"버전", std::string(kVersion)},
         {"엔진 빌드", std::to_string(header.build)},
         {"만든 날짜", DateText(header.created)},
         {"정렬 순서", LcidText(header.sortOrder) + " " + std::string(SortOrderText(header.sortOrder))},
         {"코드 페이지", std::to_string(header.codePage)},
         {"암호", header.password.empty() ? "없음" : "있음"},
         {"페이지 암호화", header.pageKey == 0 ? "안 함" : "함"},
         {"테이블", "사용자 " + std::to_string(tables.user) + ", 시스템 " + std::to_string(tables.system) +
                        ", 연결 " + std::to_string(tables.linked)}}};
    TextTable table(2, style);
    for (const auto& [name, value] : facts) {
        table.Measure(std::array<TextCell, 2>{{{name, Paint::None}, {value, Paint::None}}});
    }
    for (const auto& [name, value] : facts) {
        table.Write(out, std::array<TextCell, 2>{{{name, Paint::Caption}, {value, Paint::None}}});
    }
}

void WriteInfoJson(std::ostream& out, jet::Database& database) {
    const jet::FileHeader& header = database.Header();
    const TableCounts tables = CountTables(database);
    JsonWriter json(out, JsonText::Utf8, JsonLayout::Indented);
    json.BeginObject();
    json.Member("file", database.Path());
    json.Member("size", static_cast<std::int64_t>(platform::FileSize(database.Path())));
    json.Member("version", kVersion);
    json.Member("build", std::int64_t{header.build});
    json.Member("created", DateText(header.created));
    json.Key("collation");
    json.BeginObject(JsonLayout::OneLine);
    json.Member("lcid", LcidText(header.sortOrder));
    json.Member("name", SortOrderText(header.sortOrder));
    json.EndObject();
    json.Member("code_page", std::int64_t{header.codePage});
    json.Member("password", !header.password.empty());
    json.Member("page_encryption", header.pageKey != 0);
    json.Key("tables");
    json.BeginObject(JsonLayout::OneLine);
    json.Member("user", tables.user);
    json.Member("system", tables.system);
    json.Member("linked", tables.linked);
    json.EndObject();
    json.EndObject();
    out << '\n';
}

}  // namespace tavrel::report
