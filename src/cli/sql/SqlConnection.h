// The file that statements are run on.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "db/Connection.h"

namespace tavrel::cli {

struct StatementResult {
    db::Recordset rows;                    ///< open when the statement was a query
    std::optional<std::int32_t> affected;  ///< INSERT, UPDATE and DELETE only
};

/// The file is opened for reading, and for changing when the first statement comes that changes something: a
/// file that cannot be written to can still be asked.
class SqlConnection {
  public:
    /// Throws db::ProviderError.
    SqlConnection(const std::string& path, const std::string& password);

    /// What a statement changes is on the medium when this returns, but for a transaction that it belongs to.
    /// Throws db::ProviderError; the connection is as before then.
    StatementResult Execute(const std::string& statement);

    /// A transaction was begun and not ended: it is undone when the connection goes.
    [[nodiscard]] bool InTransaction() const {
        return connection_ != nullptr && connection_->TransactionDepth() > 0;
    }

  private:
    void OpenForChanges();

    std::string connectionString_;
    std::unique_ptr<db::Connection> connection_;
    bool changes_ = false;  ///< opened for changing
};

}  // namespace tavrel::cli
