// What of a structure no statement can touch, because it cannot be named.
#pragma once

#include <set>
#include <string>

#include "details/Schema.h"

namespace tavrel::script {

/// Statements speak of names with letter case ignored: what shares its name with another, or whose name no
/// quotes hold, stays as it is, and so does what it rests on: the columns of an index, the columns and the
/// parent's key of a relation.
class Fixtures {
  public:
    explicit Fixtures(const details::Schema& schema);

    [[nodiscard]] bool Fixed(const details::Table& table) const;
    [[nodiscard]] bool Fixed(const details::Table& table, const details::Column& column) const;
    [[nodiscard]] bool Fixed(const details::Table& table, const jet::IndexInfo& index) const;
    [[nodiscard]] bool Fixed(const jet::RelationInfo& relation) const;

  private:
    void FixUnnamed(const details::Table& table);
    void FixWhatRelationsRestOn(const details::Schema& schema);

    // Names in upper case, a line feed between table and column.
    std::set<std::string> tables_, columns_, indexes_, relations_;
};

/// A unique index over exactly these columns, in any order: what a relation needs of its parent.
bool IsKeyOver(const jet::IndexInfo& index, const std::vector<std::string>& columns);

}  // namespace tavrel::script
