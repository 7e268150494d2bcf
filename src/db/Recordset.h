// A result set as ADO shows it with a client-side cursor: fetched wholly when it is opened, independent of
// the database from then on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "jet/catalog/Value.h"

namespace tavrel::jet::sql {
class ResultSet;
}  // namespace tavrel::jet::sql

namespace tavrel::db {

class Connection;
class FetchedRows;

/// What State answers.
enum ObjectState : std::int32_t { adStateClosed = 0, adStateOpen = 1 };

/// One column of the current row: a copy.
struct RecordsetField {
    std::string Name;
    jet::Value Value;
};

/// Every member but State and Close throws Error 3704 on a result set that is not open: a new one, one whose
/// Open failed, a closed one, and the one that a statement without rows gives.
class Recordset {
  public:
    Recordset();
    ~Recordset();
    Recordset(Recordset&& other) noexcept;
    Recordset& operator=(Recordset&& other) noexcept;

    /// Runs `source` on the connection and fetches every row.  A statement that gives no rows is executed and
    /// leaves the result set closed.  Cursor type, lock type and options are taken for what all callers
    /// pass: a static, read-only copy of what a command text gives. Throws Error: 91 without a connection,
    /// 3709 when the connection is closed, 3705 when this result set is open already, else the provider's
    /// number.
    void Open(const std::string& source, Connection* connection, std::int32_t cursorType = 0,
              std::int32_t lockType = 1, std::int32_t options = -1);

    /// Number of rows, exact for every cursor type; the largest 32-bit number when there are more.
    [[nodiscard]] std::int32_t RecordCount() const;
    /// ADO's EOF (a macro in C++): true behind the last row, and from the start when there is no row.
    [[nodiscard]] bool Eof() const;
    /// To the next row.  Throws Error 3021 when Eof already.
    void MoveNext();

    /// Back to the first row.
    void MoveFirst();

    /// Number of columns.
    [[nodiscard]] std::int32_t FieldCount() const;
    /// A column of the current row, counted from 0.  Throws Error 3021 at Eof, 3265 outside the columns.
    [[nodiscard]] RecordsetField Fields(std::int32_t index) const;
    /// The same by name, letter case ignored.
    [[nodiscard]] RecordsetField Fields(std::string_view name) const;
    /// A column's name; there need be no row.  Throws Error 3265 outside the columns.
    [[nodiscard]] const std::string& FieldName(std::int32_t index) const;

    /// adStateOpen or adStateClosed.
    [[nodiscard]] std::int32_t State() const { return rows_ ? adStateOpen : adStateClosed; }
    /// Gives the rows back.  Throws Error 3704 when it is not open.
    void Close();

  private:
    friend class Connection;
    /// Fetches at most `maxRows` rows.
    Recordset(jet::sql::ResultSet& result, std::uint64_t maxRows);
    [[nodiscard]] FetchedRows& Rows() const;

    std::unique_ptr<FetchedRows> rows_;  ///< null = closed
};

}  // namespace tavrel::db
