#include "Translation.h"

#include <regex>
#include <utility>

namespace tavrel::bench {

namespace {

constexpr std::pair<const char*, const char*> kWords[] = {
    {" AUTOINCREMENT", " INTEGER"},
    {"\"\"", "''"},
    {"Now()", "'2026-01-01 00:00:00'"},
    {"NOW()", "'2026-01-01 00:00:00'"},
    {" & ", " || "},
    {"ISNUMERIC(code)", "code NOT GLOB '*[^0-9]*'"},
    {"LEN(", "LENGTH("},
};

std::string WithWords(std::string text) {
    for (const auto& [ours, theirs] : kWords) {
        const std::string from = ours;
        const std::string to = theirs;
        for (std::size_t at = text.find(from); at != std::string::npos;
             at = text.find(from, at + to.size())) {
            text.replace(at, from.size(), to);
        }
    }
    return text;
}

}  // namespace

std::optional<std::string> Translate(const std::string& statement, NewColumns newColumns) {
    static const std::regex kAlter("ALTER TABLE .* ALTER COLUMN .*");
    static const std::regex kRelation(
        R"(ALTER TABLE (\S+) ADD CONSTRAINT (\S+) FOREIGN KEY \(([^)]*)\) REFERENCES .*)");
    static const std::regex kAdd("(ALTER TABLE .* ADD COLUMN .*) DEFAULT .* NOT NULL");
    std::smatch match;
    if (std::regex_match(statement, kAlter)) {
        return std::nullopt;
    }
    if (std::regex_match(statement, match, kRelation)) {
        return "CREATE INDEX relation_" + match.str(2) + " ON " + match.str(1) + " (" + match.str(3) + ")";
    }
    if (newColumns == NewColumns::Null && std::regex_match(statement, match, kAdd)) {
        return WithWords(match.str(1));
    }
    return WithWords(statement);
}

}  // namespace tavrel::bench
