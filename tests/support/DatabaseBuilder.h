// Databases for tests in a few readable lines:
//
//   DatabaseBuilder builder(folder.File("a.mdb"));
//   builder.Add(Table("고객").Counter("번호").Text("이름", 50).Required().Key({"번호"}));
//   builder.Rows("고객", {{jet::Null{}, "홍길동"s}});
//   const std::string path = builder.Finish();
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/database/Database.h"
#include "jet/define/TableWriter.h"

namespace tavrel::testing {

/// A table to be made, put together column by column.  Required, Default and so on speak of the latest
/// column.
class Table {
  public:
    explicit Table(const std::string& name) { spec_.name = name; }

    Table& Column(const std::string& name, jet::ColumnType type, unsigned size = 0);
    Table& Long(const std::string& name) { return Column(name, jet::ColumnType::Long); }
    Table& Text(const std::string& name, unsigned size = 0) {
        return Column(name, jet::ColumnType::Text, size);
    }
    Table& Memo(const std::string& name) { return Column(name, jet::ColumnType::Memo); }
    Table& Counter(const std::string& name);

    Table& Required();
    Table& Default(const std::string& expression);
    Table& ZeroLength(bool allowed);
    Table& Uncompressed();
    Table& Describe(const std::string& description);
    Table& Digits(unsigned precision, unsigned scale);

    Table& Key(const std::vector<std::string>& fields, const std::string& name = "PrimaryKey");
    Table& Index(const std::string& name, const std::vector<std::string>& fields);
    Table& Unique(const std::string& name, const std::vector<std::string>& fields);
    /// The latest index.
    Table& IgnoreNulls();
    Table& NoNulls();
    Table& Descending();

    operator const jet::NewTable&() const { return spec_; }  // NOLINT(google-explicit-constructor)

  private:
    jet::NewTable spec_;
};

class DatabaseBuilder {
  public:
    explicit DatabaseBuilder(const std::string& path, const jet::CreateOptions& options = {});

    jet::Database& Database() { return *database_; }
    void Add(const jet::NewTable& table) { database_->CreateTable(table); }
    void Rows(const std::string& table, const std::vector<std::vector<jet::Value>>& rows);
    void Relate(const jet::RelationInfo& relation) { database_->CreateRelation(relation); }
    /// Writes the file and closes it; returns its path.
    std::string Finish();

  private:
    std::unique_ptr<jet::Database> database_;
};

/// The rows of a table as the engine's own cursor reads them, columns in the order that users see.
std::vector<std::vector<jet::Value>> ReadRows(jet::Database& database, const std::string& table);

std::string ReadWholeFile(const std::string& path);

/// The number of the error that a call throws; 0 when it throws none.
template <typename Call>
std::int32_t ErrorOf(Call call) {
    try {
        call();
    } catch (const Error& error) {
        return error.Number();
    }
    return 0;
}

/// A whole number as a value: `Int(3)` instead of `std::int64_t{3}`.
inline jet::Value Int(std::int64_t number) {
    return number;
}

}  // namespace tavrel::testing
