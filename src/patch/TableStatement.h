// CREATE TABLE and literal constraints as statements.
#pragma once

#include <string>

#include "patch/Item.h"

namespace tavrel::patch {

/// Put together column by column.
class TableStatement {
  public:
    explicit TableStatement(const Table& table);

    /// Adds the columns of a Column or Columns item; false for any other item.
    bool Take(const BlockItem& item);
    /// The whole statement, the key at its end.
    [[nodiscard]] std::string Text() const;

  private:
    void Add(const Column& column);

    const Table& table_;
    std::string columns_;
};

std::string ConstraintStatement(const Constraint& constraint);

}  // namespace tavrel::patch
