// Rows into one table, in bulk: the indexes are built when all rows are there.
#pragma once

#include <memory>
#include <vector>

#include "jet/table/RowWriter.h"

namespace tavrel::jet {

class Writer;

class TableWriter {
  public:
    /// Made by Database::Append.  Must not outlive the database.
    TableWriter(Writer& writer, std::unique_ptr<RowWriter> rows);
    /// Finishes when that was not done; a failure then makes the database's next Flush fail.
    ~TableWriter();
    TableWriter(const TableWriter&) = delete;
    TableWriter& operator=(const TableWriter&) = delete;

    /// Appends a row; one value for each column, in the order that users see.  Null in an autonumber column
    /// takes the next number.  Default values are not filled in.  A row that is refused leaves nothing behind
    /// and the writer goes on: 3047 (row or index key too long), 3058 (null in a primary or required index),
    /// 3163 (text or binary too long), 3314 (required), 3315 (zero length), 3346 (number of values), 3349
    /// (number out of range), 3464 (wrong type), 3990 (character of unknown weight in an index).
    void Append(const std::vector<Value>& values);

    /// Builds the indexes.  Throws 3022 (duplicate in a unique index) and 3201 (no related record in the
    /// parent table); the table is then as it was before the first Append.
    void Finish();

  private:
    void CheckParents() const;
    void Close();

    Writer& writer_;
    std::unique_ptr<RowWriter> rows_;  ///< null = finished
    std::vector<std::size_t> order_;   ///< places in the definition, in the order that users see
    std::vector<Value> row_;           ///< by place
    bool appended_ = false;
};

}  // namespace tavrel::jet
