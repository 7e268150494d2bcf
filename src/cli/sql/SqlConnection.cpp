#include "cli/sql/SqlConnection.h"

#include "db/AdoErrors.h"
#include "db/ConnectionString.h"
#include "jet/sql/syntax/Parser.h"

namespace tavrel::cli {

namespace {

using namespace jet::sql;

std::unique_ptr<db::Connection> Open(const std::string& connectionString) {
    auto connection = std::make_unique<db::Connection>();
    connection->SyncCommits = true;  // it may be the only copy of somebody's data
    connection->Open(connectionString);
    return connection;
}

/// In front: behind the data source and the password everything is data source and password.
std::string ForReading(const std::string& connectionString) {
    return "Mode=Read;" + connectionString;
}

bool ChangesRows(const Statement& statement) {
    return std::holds_alternative<InsertStatement>(statement) ||
           std::holds_alternative<UpdateStatement>(statement) ||
           std::holds_alternative<DeleteStatement>(statement);
}

}  // namespace

SqlConnection::SqlConnection(const std::string& path, const std::string& password)
    : connectionString_(db::ConnectionStringFor(path, password)),
      connection_(Open(ForReading(connectionString_))) {}

StatementResult SqlConnection::Execute(const std::string& text) {
    const Statement statement = db::AsProvider([&] { return ParseStatement(text); });
    if (!changes_ && !std::holds_alternative<Query>(statement)) {
        OpenForChanges();
    }
    std::int32_t affected = 0;
    StatementResult result{.rows = connection_->Execute(text, &affected), .affected = {}};
    if (ChangesRows(statement)) {
        result.affected = affected;
    }
    return result;
}

void SqlConnection::OpenForChanges() {
    connection_.reset();
    try {
        connection_ = Open(connectionString_);
        changes_ = true;
    } catch (const Error&) {
        connection_ = Open(ForReading(connectionString_));
        throw;
    }
}

}  // namespace tavrel::cli
