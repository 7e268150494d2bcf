// What runs the statements of a connection: a database that is open for changing, or one for reading.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "db/ConnectionString.h"
#include "jet/sql/statement/Execute.h"

namespace tavrel::db {

class StatementRunner {
  public:
    virtual ~StatementRunner() = default;
    /// Throws the engine's Error.  The rows of the result must be fetched before the next call.
    virtual jet::sql::ExecuteResult Execute(std::string_view statement) = 0;
    /// Transactions that have been begun and not ended, one inside the other.
    [[nodiscard]] virtual unsigned TransactionDepth() const = 0;
};

/// How a database is changed.
struct ChangeOptions {
    bool onMedium = false;  ///< a finished statement has reached the medium
    bool standIns = false;  ///< characters of unknown sort weight get stand-ins: for copies that nobody keeps
};

/// Nobody else may have the file open.  Throws the engine's Error.
std::unique_ptr<StatementRunner> OpenForChanges(const ConnectionSettings& settings,
                                                const ChangeOptions& options);

/// Takes no write access; statements that change something throw 3027.  Throws the engine's Error.
std::unique_ptr<StatementRunner> OpenForReading(const ConnectionSettings& settings);

}  // namespace tavrel::db
