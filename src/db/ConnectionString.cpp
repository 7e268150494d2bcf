#include "db/ConnectionString.h"

#include <array>
#include <optional>

#include "text/Case.h"

namespace tavrel::db {

namespace {

enum class Key { Provider, DataSource, Mode, DatabasePassword, Other };

struct KeyLine {
    std::string_view name;
    Key key;
};

constexpr std::array kKeys = {
    KeyLine{"Provider", Key::Provider},
    KeyLine{"Data Source", Key::DataSource},
    KeyLine{"Mode", Key::Mode},
    KeyLine{"User ID", Key::Other},
    KeyLine{"Password", Key::Other},
    KeyLine{"Persist Security Info", Key::Other},
    KeyLine{"Jet OLEDB:Database Password", Key::DatabasePassword},
};

struct Clause {
    Key key;
    std::size_t start;  ///< of the key
    std::size_t value;  ///< behind the "="
};

std::string_view WithoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

/// The clause that begins at `start`, when a known key stands there.
std::optional<Clause> ClauseAt(std::string_view text, std::size_t start) {
    const std::size_t equals = text.find_first_of("=;", start);
    if (equals == std::string_view::npos || text[equals] == ';') {
        return std::nullopt;
    }
    const std::string_view name = WithoutBlanks(text.substr(start, equals - start));
    for (const KeyLine& line : kKeys) {
        if (text::EqualIgnoringCase(name, line.name)) {
            return Clause{line.key, start, equals + 1};
        }
    }
    return std::nullopt;
}

/// The next clause that begins at `from` or behind a semicolon after it.
std::optional<Clause> NextClause(std::string_view text, std::size_t from) {
    for (std::size_t start = from; start <= text.size();) {
        if (const auto clause = ClauseAt(text, start)) {
            return clause;
        }
        const std::size_t semicolon = text.find(';', start);
        start = semicolon == std::string_view::npos ? text.size() + 1 : semicolon + 1;
    }
    return std::nullopt;
}

std::optional<Clause> ClauseBehind(std::string_view text, const Clause& clause) {
    const std::size_t semicolon = text.find(';', clause.value);
    return semicolon == std::string_view::npos ? std::nullopt : NextClause(text, semicolon + 1);
}

void Take(ConnectionSettings& settings, Key key, std::string_view value) {
    switch (key) {
        case Key::Provider:
            settings.provider = WithoutBlanks(value);
            break;
        case Key::DataSource:
            settings.dataSource = value;
            break;
        case Key::Mode:
            settings.readOnly = text::EqualIgnoringCase(WithoutBlanks(value), "Read");
            break;
        case Key::DatabasePassword:
            settings.password = value;
            break;
        case Key::Other:
            break;
    }
}

}  // namespace

ConnectionSettings ParseConnectionString(std::string_view text) {
    ConnectionSettings settings;
    for (auto clause = NextClause(text, 0); clause;) {
        if (clause->key == Key::DatabasePassword) {
            Take(settings, clause->key, text.substr(clause->value));
            break;
        }
        const auto next = ClauseBehind(text, *clause);
        std::size_t end = next ? next->start - 1 : text.size();
        if (!next && end > clause->value && text[end - 1] == ';') {
            --end;
        }
        Take(settings, clause->key, text.substr(clause->value, end - clause->value));
        clause = next;
    }
    return settings;
}

std::string ConnectionStringFor(const std::string& path, const std::string& password) {
    std::string text = "Provider=";
    text.append(kJetProvider).append(";Data Source=").append(path);
    if (!password.empty()) {
        text.append(";Jet OLEDB:Database Password=").append(password);
    }
    return text;
}

}  // namespace tavrel::db
