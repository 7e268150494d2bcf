// Definition statements carried out on a database that is open for changing.
#pragma once

#include "jet/session/SchemaContext.h"
#include "jet/sql/syntax/SchemaChanges.h"

namespace tavrel::jet {

class SchemaEditor : public sql::SchemaChanges {
  public:
    SchemaEditor(Database& database, TableEdits& edits) : context_(database, edits) {}

    void CreateTable(const sql::TableCreation& table) override;
    void AddColumn(const std::string& table, const sql::ColumnDefinition& column) override;
    void AlterColumn(const std::string& table, const sql::ColumnDefinition& column) override;
    void SetDefault(const std::string& table, const std::string& column, const std::string& text) override;
    void DropColumn(const std::string& table, const std::string& column) override;
    void AddIndex(const std::string& table, const NewIndex& index) override;
    void AddForeignKey(const sql::ForeignKeyDefinition& key) override;
    void DropConstraint(const std::string& table, const std::string& name) override;
    void DropIndex(const std::string& table, const std::string& name) override;
    void DropTable(const std::string& table) override;

  private:
    SchemaContext context_;
};

}  // namespace tavrel::jet
