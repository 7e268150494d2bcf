// Rows of the engine's own tables: objects, permissions and relations.  They are stored at once; the indexes
// and counts of these tables follow at Save, so that many objects can be made without building an index for
// each.
#pragma once

#include <map>
#include <memory>
#include <string_view>

#include "jet/catalog/Catalog.h"
#include "jet/engine/RowWriter.h"

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
    explicit SystemRows(WriteContext& context) : context_(context) {}

    RowPointer Add(const NewObject& object);
    void Add(const Permission& permission);
    void Add(const RelationRow& row);

    /// Builds the indexes of the tables that have new rows and writes their definitions.
    void Save();
    /// Pages were rolled back: everything is to be read again from the rows that are left.
    void Forget();

  private:
    struct Table {
        std::unique_ptr<RowWriter> writer;  ///< null = not read yet
        bool changed = false;               ///< rows are stored that the indexes do not name yet
    };
    using NamedValues = std::initializer_list<std::pair<std::string_view, Value>>;
    RowWriter& WriterOf(PageNumber page);
    RowPointer AddRow(PageNumber page, const NamedValues& values);

    WriteContext& context_;
    std::map<PageNumber, Table> tables_;  ///< by definition page
};

}  // namespace tavrel::jet
