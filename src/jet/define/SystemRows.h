// Rows of the engine's own tables: objects, permissions and relations.
#pragma once

#include <string_view>

#include "jet/catalog/Catalog.h"
#include "jet/table/TableEdits.h"

namespace tavrel::jet {

/// Accounts as they stand, deciphered, in Owner and SID columns.
namespace accounts {
extern const ByteVector kEngine;
extern const ByteVector kAdmin;
extern const ByteVector kUsers;
extern const ByteVector kCreator;
/// The Admins group of the workgroup that nearly all databases were made under.
extern const ByteVector kAdmins;
}  // namespace accounts

struct NewObject {
    std::int32_t id = 0;
    std::int32_t parentId = 0;
    std::string name;
    ObjectType type = ObjectType::Table;
    std::uint32_t flags = 0;
    ByteVector owner;
    double created = 0;     ///< days since 1899-12-30
    ByteVector properties;  ///< LvProp; empty = null
};

struct Permission {
    std::int32_t objectId = 0;
    const ByteVector* account = nullptr;
    std::uint32_t mask = 0;
    bool inheritable = false;
};

class SystemRows {
  public:
    explicit SystemRows(TableEdits& edits) : edits_(edits) {}

    RowPointer Add(const NewObject& object);
    /// `accounts::kAdmins` stands for this database's own Admins group.
    void Add(const Permission& permission);
    void Add(const RelationRow& row);

  private:
    using NamedValues = std::initializer_list<std::pair<std::string_view, Value>>;
    RowPointer AddRow(PageNumber page, const NamedValues& values);
    const ByteVector& Admins();

    TableEdits& edits_;
    std::optional<ByteVector> admins_;
};

}  // namespace tavrel::jet
