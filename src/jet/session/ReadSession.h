// Statements on a database that is open for reading.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "jet/database/Database.h"
#include "jet/sql/statement/Execute.h"

namespace tavrel::jet {

/// Runs queries.  Transactions begin and end as in a session that changes something, but there is nothing for
/// them to keep or to undo.
class ReadSession {
  public:
    /// Takes no write access to the file.  Throws like Database::Open.
    static std::unique_ptr<ReadSession> Open(const std::string& path, const OpenOptions& options);
    virtual ~ReadSession() = default;

    /// Throws what the statement raises, 3027 when it would change something.  The rows of the result must be
    /// fetched before the next call.
    virtual sql::ExecuteResult Execute(std::string_view statement) = 0;
    /// Transactions that have been begun and not ended, one inside the other.
    [[nodiscard]] virtual unsigned TransactionDepth() const = 0;
};

}  // namespace tavrel::jet
