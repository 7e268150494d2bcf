// A query of a repair routine: open it, walk over its rows, close it.
#pragma once

#include <memory>
#include <string>

#include "db/Session.h"

namespace tavrel::patch {

class Query {
  public:
    /// A failure has been reported; then there are -1 rows.
    explicit Query(const std::string& statement)
        : rowCount_(modDBsub::DBOpenRs(rows_, statement, kForwardOnly, kReadOnly, kCommandText)) {}
    ~Query() { modDBsub::DBCloseRs(rows_); }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    [[nodiscard]] bool HasRows() const { return rowCount_ > 0; }
    /// Throws Error when the query could not be opened.
    [[nodiscard]] bool AtEnd() const { return rows_->Eof(); }
    void MoveNext() { rows_->MoveNext(); }
    /// A column of the current row as text, counted from 0; Null is the empty text.
    [[nodiscard]] std::string Text(std::int32_t column) const {
        return modDBsub::DBNullToStr(rows_->Fields(column).Value);
    }

  private:
    static constexpr std::int32_t kForwardOnly = 0;
    static constexpr std::int32_t kReadOnly = 1;
    static constexpr std::int32_t kCommandText = 1;

    std::unique_ptr<db::Recordset> rows_;
    std::int32_t rowCount_;
};

}  // namespace tavrel::patch
