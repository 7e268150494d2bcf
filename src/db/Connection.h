// A connection to a database file as ADO shows it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "db/Recordset.h"

namespace tavrel::db {

class StatementRunner;

/// Every failure is an Error with the number that the provider raises (negative 32-bit numbers, see
/// AdoErrors.h) or ADO's own (small positive ones), and the description of the engine's table.
class Connection {
  public:
    Connection();
    /// Closes.
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // ---- settings: taken by Open, changing them later has no effect on an open connection
    /// Clauses "key=value" between semicolons, see ConnectionString.h; password and data source may hold
    /// semicolons.
    std::string ConnectionString;
    /// Seconds.  A file that is in use is refused at once all the same.
    std::int32_t ConnectionTimeout = 15;
    /// 3 = client side.  Result sets are client-side ones whatever is set.
    std::int32_t CursorLocation = 2;
    /// False: a statement is written out when it returns, the system brings it to the medium when it likes (a
    /// killed process loses nothing, a power failure may).  True: it is on the medium when it returns.
    bool SyncCommits = false;
    /// For copies that nobody keeps: indexed texts may hold characters of unknown sort weight.  False: such a
    /// statement fails (engine's number 3990).
    bool StandInWeights = false;

    /// Opens the file that the connection string names; an empty `connectionString` stands for the setting of
    /// that name, `user` and `password` are not looked at. With Mode=Read in the string the file is opened
    /// for reading only.  Throws Error 3705 when the connection is open, 3706 for another provider, else the
    /// provider's number. A connection that could not be opened is closed.
    void Open(const std::string& connectionString = {}, const std::string& user = {},
              const std::string& password = {}, std::int32_t options = -1);

    /// Runs one statement; its result set is open when the statement is a query.  `recordsAffected`, when
    /// given, receives the number of rows that it changed (0 for queries and definitions, the largest 32-bit
    /// number when there are more); it is left alone when the statement fails.  The database is then as
    /// before.  Throws Error 3704 when the connection is closed.
    Recordset Execute(const std::string& statement, std::int32_t* recordsAffected = nullptr,
                      std::int32_t options = -1);
    /// The same for callers who look at the first row alone: rows behind it are not read.
    Recordset ExecuteFirstRow(const std::string& statement);

    /// Transactions that statements have begun and not ended, one inside the other: 0 to 5.  They are undone
    /// when the connection goes.
    [[nodiscard]] unsigned TransactionDepth() const;
    /// adStateOpen or adStateClosed.
    [[nodiscard]] std::int32_t State() const { return runner_ ? adStateOpen : adStateClosed; }
    /// Rolls an open transaction back and gives the file back.  Throws Error 3704 when it is not open.
    void Close();

  private:
    Recordset Run(const std::string& statement, std::int32_t* recordsAffected, std::uint64_t maxRows);

    std::unique_ptr<StatementRunner> runner_;  ///< null = closed
};

}  // namespace tavrel::db
