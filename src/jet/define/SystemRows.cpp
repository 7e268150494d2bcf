#include "jet/define/SystemRows.h"

#include "jet/catalog/RowCursor.h"

namespace tavrel::jet {

namespace {

/// The Admins SID repeats two blocks of 8 bytes; it is cut off in the last one.
ByteVector AdminsSid() {
    constexpr std::array<std::uint8_t, 8> kFirst = {0xDB, 0x87, 0x93, 0x20, 0x81, 0x4F, 0xAB, 0x38};
    constexpr std::array<std::uint8_t, 8> kZeros = {0xDF, 0x56, 0x1A, 0x17, 0x23, 0x6A, 0x4B, 0x11};
    constexpr std::array<std::uint8_t, 8> kOther = {0x72, 0xCC, 0x76, 0xE4, 0x77, 0x6C, 0xB1, 0x72};
    constexpr std::size_t kBytes = 102;
    ByteVector sid = {0x01};
    for (const auto* block : {&kFirst, &kZeros, &kOther, &kZeros, &kZeros, &kZeros, &kZeros, &kOther, &kZeros,
                              &kZeros, &kZeros, &kZeros, &kZeros}) {
        AppendBytes(sid, *block);
    }
    sid.resize(kBytes);
    return sid;
}

Value Number(std::int32_t value) {
    return std::int64_t{value};
}
Value Number(std::uint32_t bits) {
    return std::int64_t{static_cast<std::int32_t>(bits)};
}

}  // namespace

namespace accounts {
const ByteVector kEngine = {0x02, 0x03};
const ByteVector kAdmin = {0x03, 0x01};
const ByteVector kUsers = {0x02, 0x01};
const ByteVector kCreator = {0x02, 0x04};
const ByteVector kAdmins = AdminsSid();
}  // namespace accounts

RowPointer SystemRows::AddRow(PageNumber page, const NamedValues& values) {
    EditedTable& table = edits_.Edit(page);
    std::vector<Value> row(table.Definition().columns.size());
    for (const auto& [name, value] : values) {
        const std::size_t place = table.Definition().FindColumnByName(name);
        if (place == TableDefinition::npos) {
            ThrowDamaged("시스템 테이블에 열 " + std::string(name) + "이(가) 없음");
        }
        row[place] = value;
    }
    return table.Insert(row);
}

RowPointer SystemRows::Add(const NewObject& object) {
    return AddRow(kObjectsPage,
                  {{"Id", Number(object.id)},
                   {"ParentId", Number(object.parentId)},
                   {"Name", object.name},
                   {"Type", Number(std::int32_t{static_cast<std::int16_t>(object.type)})},
                   {"DateCreate", Date{object.created}},
                   {"DateUpdate", Date{object.created}},
                   {"Owner", object.owner},
                   {"Flags", Number(object.flags)},
                   {"LvProp", object.properties.empty() ? Value{Null{}} : Value{object.properties}}});
}

/// The Admins group belongs to the workgroup that a database was made under: its account is the one with the
/// long identifier among those that may do everything with the container of the tables.
const ByteVector& SystemRows::Admins() {
    constexpr std::size_t kLeastBytes = 100;
    if (admins_) {
        return *admins_;
    }
    WriteContext& context = edits_.Context();
    const TableDefinition& aces = edits_.Edit(kAcesPage).Definition();
    const std::size_t object = aces.FindColumnByName("ObjectId");
    const std::size_t account = aces.FindColumnByName("SID");
    if (object == TableDefinition::npos || account == TableDefinition::npos) {
        ThrowDamaged("시스템 테이블에 열 ObjectId 또는 SID이(가) 없음");
    }
    for (RowCursor cursor(context.pager, aces, context.ownerKey); !admins_ && cursor.Next();) {
        const Value sid = cursor.Get(account);
        const auto* bytes = std::get_if<ByteVector>(&sid);
        if (bytes != nullptr && bytes->size() >= kLeastBytes &&
            cursor.Get(object) == Number(kTablesContainer)) {
            admins_ = *bytes;
        }
    }
    return admins_ ? *admins_ : admins_.emplace(accounts::kAdmins);
}

void SystemRows::Add(const Permission& permission) {
    const bool admins = permission.account == &accounts::kAdmins && permission.objectId != kTablesContainer;
    AddRow(kAcesPage, {{"ObjectId", Number(permission.objectId)},
                       {"SID", admins ? Admins() : *permission.account},
                       {"ACM", Number(permission.mask)},
                       {"FInheritable", permission.inheritable}});
}

void SystemRows::Add(const RelationRow& row) {
    AddRow(kRelationshipsPage, {{"szRelationship", row.name},
                                {"grbit", Number(row.grbit)},
                                {"ccolumn", Number(row.columnCount)},
                                {"icolumn", Number(row.column)},
                                {"szObject", row.childTable},
                                {"szColumn", row.childColumn},
                                {"szReferencedObject", row.parentTable},
                                {"szReferencedColumn", row.parentColumn}});
}

}  // namespace tavrel::jet
