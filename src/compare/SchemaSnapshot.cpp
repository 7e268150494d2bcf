#include "compare/SchemaSnapshot.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "db/DatabaseOpening.h"
#include "text/Case.h"

namespace tavrel::compare {

namespace {

namespace cell = grid::cell;

constexpr std::int16_t kTextType = 10;
constexpr std::string_view kMember = "v";
constexpr std::string_view kSystemPrefix = "MSYS";

struct TypeName {
    std::int16_t code;
    std::string_view name;
};
constexpr std::array<TypeName, 8> kTypeNames = {{{1, "Boolean"},
                                                 {3, "Integer"},
                                                 {4, "Long"},
                                                 {5, "Currency"},
                                                 {7, "Double"},
                                                 {8, "Date"},
                                                 {10, "Text"},
                                                 {12, "Memo"}}};

std::string TypeCell(std::int16_t code) {
    for (const TypeName& type : kTypeNames) {
        if (type.code == code) {
            return std::string(type.name);
        }
    }
    return std::to_string(code);
}

/// The engine's own tables are never listed, whatever the filter names.
bool IsListed(const std::string& table, const std::string& filter) {
    return (filter.empty() || text::EqualIgnoringCase(table, filter)) &&
           !text::Upper(table).starts_with(kSystemPrefix);
}

std::string_view YesNo(bool yes) {
    return yes ? "O" : "X";
}

/// Writes one side, a row after the other.
class SideWriter {
  public:
    SideWriter(grid::ResultGrid& grid, int offset) : grid_(grid), offset_(offset) {}

    void WriteTable(db::TableDef& table) {
        const int first = row_;
        for (const db::Field& field : table.Fields()) {
            WriteField(table.Name(), field);
        }
        for (const db::Index& index : table.Indexes()) {
            MarkMembers(index, first);
        }
    }

  private:
    void Put(int column, std::string_view text) { grid_.PutText(offset_ + column, row_, text); }

    void WriteField(const std::string& table, const db::Field& field) {
        ++row_;
        if (row_ > grid_.RowCount()) {
            grid_.SetRowCount(grid_.RowCount() + 1);
        }
        Put(cell::kTable, table);
        Put(cell::kField, field.Name);
        Put(cell::kKey, table + "." + field.Name);
        Put(cell::kType, TypeCell(field.Type));
        if (field.Type == kTextType) {
            grid_.PutText(offset_ + cell::kSize, row_, std::int64_t{field.Size});
            Put(cell::kZeroLength, YesNo(field.AllowZeroLength));
        }
        Put(cell::kDefault, field.DefaultValue);
        Put(cell::kNull, YesNo(!field.Required));
    }

    /// Below the last row written this side is empty, so the search ends there.
    void MarkMembers(const db::Index& index, int afterRow) {
        const int column = index.Primary ? cell::kPrimary : index.Foreign ? cell::kForeign : cell::kIndexed;
        for (const db::IndexField& field : index.Fields) {
            const int found = grid_.FindInColumn(offset_ + cell::kField, afterRow, row_, field.Name, 0);
            if (found > 0) {
                grid_.PutText(offset_ + column, found, kMember);
            }
        }
    }

    grid::ResultGrid& grid_;
    int offset_;
    int row_ = 0;
};

}  // namespace

bool LoadSchemaSnapshot(const SnapshotTarget& target, const std::string& path, bool sideA,
                        const std::string& password, const std::string& tableFilter) {
    if (sideA) {
        target.grid.SetRowCount(0);
    }
    std::unique_ptr<db::Database> db;
    if (!modCmpDB::MyOpenDB(db, path, 0, password, target.messages)) {
        return false;
    }
    const int offset = sideA ? 0 : grid::kSideBOffset;
    target.grid.PutText(offset + cell::kTable, grid::kTopHeaderRow, path);
    db::TableDefs& tables = db->TableDefs();
    target.progress.SetMaximum(tables.Count());
    target.progress.SetValue(0);
    SideWriter writer(target.grid, offset);
    for (db::TableDef& table : tables) {
        if (IsListed(table.Name(), tableFilter)) {
            writer.WriteTable(table);
        }
        target.progress.Advance();
    }
    modCmpDB::CloseDatabase(db);
    return true;
}

bool ListsTable(const std::string& path, const std::string& password, const std::string& table) {
    const std::string connect = password.empty() ? std::string() : ";pwd=" + password;
    const auto database = db::DBEngine::Instance().OpenDatabase(path, 0, false, connect);
    return std::ranges::any_of(database->TableDefs(),
                               [&](const db::TableDef& listed) { return IsListed(listed.Name(), table); });
}

}  // namespace tavrel::compare
