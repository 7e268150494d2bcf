// The provider's connection strings taken apart.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::db {

struct ConnectionSettings {
    std::string provider;  ///< as written; empty when there is no such clause
    std::string dataSource;
    std::string password;
    bool readOnly = false;  ///< Mode=Read
};

/// Clauses are "key=value" with ";" between them; letter case of keys and blanks round them do not matter. A
/// clause ends only where the next key that is known here begins, so that a path may hold semicolons; the
/// password clause goes to the end of the text, as it was typed. Keys: Provider, Data Source, Mode, User ID,
/// Password, Persist Security Info, Jet OLEDB:Database Password.  Of clauses given twice the last holds. Text
/// in front of the first known key is ignored.
ConnectionSettings ParseConnectionString(std::string_view text);

/// "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" and the path, and when the password is not empty ";Jet
/// OLEDB:Database Password=" and the password.
std::string ConnectionStringFor(const std::string& path, const std::string& password);

/// The only provider there is; letter case is ignored.
inline constexpr std::string_view kJetProvider = "Microsoft.Jet.OLEDB.4.0";

}  // namespace tavrel::db
