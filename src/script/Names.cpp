#include "script/Names.h"

#include <algorithm>
#include <array>

#include "jet/index/KeyEncoder.h"
#include "jet/sql/syntax/Token.h"
#include "jet/sql/syntax/TypeNames.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::script {

namespace {

constexpr std::size_t kMaxUnits = 64;
constexpr std::u16string_view kForbidden = u".!`[]";

// Words that some engines of the dialect keep for themselves, beside those that the parser here does.
constexpr auto kKeptElsewhere = std::to_array<std::string_view>({"ABSOLUTE",
                                                                 "ACTION",
                                                                 "ALPHANUMERIC",
                                                                 "ASC",
                                                                 "ASSERTION",
                                                                 "AUTHORIZATION",
                                                                 "AVG",
                                                                 "BAND",
                                                                 "BEGIN",
                                                                 "BNOT",
                                                                 "BOR",
                                                                 "BXOR",
                                                                 "CASCADE",
                                                                 "CASE",
                                                                 "CAST",
                                                                 "CATALOG",
                                                                 "CHECK",
                                                                 "CLOSE",
                                                                 "COLLATE",
                                                                 "COMMIT",
                                                                 "COMP",
                                                                 "COMPRESSION",
                                                                 "COUNT",
                                                                 "CURRENT",
                                                                 "CURSOR",
                                                                 "DATABASE",
                                                                 "DAY",
                                                                 "DESC",
                                                                 "DESCRIBE",
                                                                 "DISALLOW",
                                                                 "DISTINCTROW",
                                                                 "ELSE",
                                                                 "END",
                                                                 "ESCAPE",
                                                                 "EXCLUSIVECONNECT",
                                                                 "EXEC",
                                                                 "EXECUTE",
                                                                 "FALSE",
                                                                 "FETCH",
                                                                 "FIRST",
                                                                 "FOR",
                                                                 "FUNCTION",
                                                                 "GLOBAL",
                                                                 "GRANT",
                                                                 "HOUR",
                                                                 "IDENTITY",
                                                                 "IGNORE",
                                                                 "IMP",
                                                                 "EQV",
                                                                 "INTERVAL",
                                                                 "ISOLATION",
                                                                 "LAST",
                                                                 "LEVEL",
                                                                 "MAX",
                                                                 "MIN",
                                                                 "MINUTE",
                                                                 "MOD",
                                                                 "MODULE",
                                                                 "MONTH",
                                                                 "NAME",
                                                                 "NO",
                                                                 "OFF",
                                                                 "OPTION",
                                                                 "OUTER",
                                                                 "OWNERACCESS",
                                                                 "PARAMETERS",
                                                                 "PASSWORD",
                                                                 "PERCENT",
                                                                 "PIVOT",
                                                                 "POSITION",
                                                                 "PRIVILEGES",
                                                                 "PROC",
                                                                 "PROCEDURE",
                                                                 "PUBLIC",
                                                                 "READ",
                                                                 "RESTRICT",
                                                                 "REVOKE",
                                                                 "ROLLBACK",
                                                                 "SCHEMA",
                                                                 "SECOND",
                                                                 "SECTION",
                                                                 "SELECTSCHEMA",
                                                                 "SESSION",
                                                                 "SIZE",
                                                                 "SOME",
                                                                 "SQL",
                                                                 "STDEV",
                                                                 "STDEVP",
                                                                 "SUM",
                                                                 "TEMPORARY",
                                                                 "THEN",
                                                                 "TO",
                                                                 "TRANSACTION",
                                                                 "TRANSFORM",
                                                                 "TRUE",
                                                                 "UNKNOWN",
                                                                 "UPDATEIDENTITY",
                                                                 "UPDATEOWNER",
                                                                 "USAGE",
                                                                 "USER",
                                                                 "USING",
                                                                 "VALUE",
                                                                 "VAR",
                                                                 "VARP",
                                                                 "VIEW",
                                                                 "WHEN",
                                                                 "WITH",
                                                                 "WORK",
                                                                 "WRITE",
                                                                 "XOR",
                                                                 "YEAR",
                                                                 "YES",
                                                                 "ZONE"});

bool IsKept(std::string_view name) {
    const std::string upper = text::Upper(name);
    return jet::sql::IsReservedWord(upper) || jet::sql::FindTypeName(upper) != nullptr ||
           std::ranges::find(kKeptElsewhere, upper) != kKeptElsewhere.end();
}

bool IsAsciiLetter(char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool IsHangul(char16_t unit) {
    return unit >= 0xAC00 && unit <= 0xD7A3;
}

bool IsBareUnit(char16_t unit) {
    return IsAsciiLetter(unit) || IsHangul(unit) || unit == u'_' || (unit >= u'0' && unit <= u'9');
}

/// No half of a pair alone: a script is UTF-8, which cannot hold one.
bool IsWhole(std::u16string_view units) {
    for (std::size_t i = 0; i < units.size(); ++i) {
        const bool high = units[i] >= 0xD800 && units[i] < 0xDC00;
        const bool low = units[i] >= 0xDC00 && units[i] < 0xE000;
        const bool paired = high && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
        if (low || (high && !paired)) {
            return false;
        }
        i += paired ? 1 : 0;
    }
    return true;
}

}  // namespace

bool CanBeNamed(std::string_view name) {
    const std::u16string units = text::Utf16FromUtf8(name);
    return !units.empty() && units.size() <= kMaxUnits && units.front() != u' ' && IsWhole(units) &&
           text::Utf8FromUtf16(units) == name && std::ranges::all_of(units, [](char16_t unit) {
               return unit >= u' ' && unit != 0x7F && kForbidden.find(unit) == kForbidden.npos;
           });
}

bool CanBeEntered(std::string_view name, std::uint16_t sortOrder) {
    return CanBeNamed(name) && jet::EncodeTextKey(text::Utf16FromUtf8(name), sortOrder).has_value();
}

std::string Quoted(std::string_view name) {
    const std::u16string units = text::Utf16FromUtf8(name);
    const bool bare = (IsAsciiLetter(units.front()) || IsHangul(units.front())) &&
                      std::ranges::all_of(units, IsBareUnit) && !IsKept(name);
    return bare ? std::string(name) : "[" + std::string(name) + "]";
}

}  // namespace tavrel::script
