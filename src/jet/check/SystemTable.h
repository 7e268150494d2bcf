// Rows of an engine table, read as far as they can be: what is damaged is left out.  (TableCheck tells of the
// damage.)
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/FindingLog.h"

namespace tavrel::jet::check {

class SystemTable {
  public:
    /// A row's values by column name; an absent or null value is 0 or empty.  Throws 3428.
    class Row {
      public:
        Row(const SystemTable& table, ByteView row) : table_(table), view_(table.shape_, row) {}
        [[nodiscard]] std::int32_t Long(std::string_view column) const;
        [[nodiscard]] std::string Text(std::string_view column) const;
        /// As stored; long values are descriptors.
        [[nodiscard]] ByteVector Bytes(std::string_view column) const;
        /// Owner and SID columns.
        [[nodiscard]] ByteVector Deciphered(std::string_view column) const;

      private:
        const SystemTable& table_;
        RowView view_;
    };
    using Visitor = std::function<void(RowPointer at, const Row& row)>;

    /// Throws 3428 when the definition cannot be read.
    SystemTable(Pager& pager, PageNumber definitionPage, std::uint32_t ownerKey);
    SystemTable(const SystemTable&) = delete;
    SystemTable& operator=(const SystemTable&) = delete;

    void ForEach(const Visitor& visitor);

  private:
    Pager& pager_;
    std::uint32_t ownerKey_;
    TableDefinition definition_;
    RowShape shape_;
};

}  // namespace tavrel::jet::check
