#include "script/Statements.h"

#include <algorithm>

#include "script/DefaultText.h"
#include "script/Names.h"

namespace tavrel::script {

namespace {

std::string InParentheses(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + Quoted(name);
    }
    return "(" + list + ")";
}

/// What stands behind the type, but for Null rules.
std::string Clauses(const details::Column& column) {
    std::string clauses = column.compressed && jet::IsText(column.type) ? " WITH COMPRESSION" : "";
    // A default that no clause can say stays as it is when none is said.
    if (!column.defaultValue.empty() && WritableDefault(column.defaultValue) == column.defaultValue) {
        clauses += " DEFAULT " + column.defaultValue;
    }
    return clauses;
}

std::string ColumnClause(const details::Column& column) {
    return Quoted(column.name) + " " + TypeWords(column) + Clauses(column) +
           (column.required ? " NOT NULL" : "");
}

std::string InTable(const std::string& table) {
    return "ALTER TABLE " + Quoted(table) + " ";
}

}  // namespace

std::string TypeWords(const details::Column& column) {
    using enum jet::ColumnType;
    const std::string length = "(" + std::to_string(column.size) + ")";
    switch (column.type) {
        case Boolean:
            return "BIT";
        case Byte:
            return "BYTE";
        case Integer:
            return "SHORT";
        case Long:
            return column.autonumber ? "COUNTER" : "LONG";
        case Currency:
            return "CURRENCY";
        case Single:
            return "SINGLE";
        case Double:
            return "DOUBLE";
        case Date:
            return "DATETIME";
        case Binary:
        case FixedBinary:
            return "BINARY" + length;
        case Text:
            return (column.fixedWidth ? "CHAR" : "TEXT") + length;
        case Ole:
            return "LONGBINARY";
        case Memo:
            return "MEMO";
        case Guid:
            return "GUID";
        case Numeric:
            return "DECIMAL(" + std::to_string(column.precision) + ", " + std::to_string(column.scale) + ")";
    }
    return {};
}

std::string CreateTable(const details::Table& table) {
    std::string columns;
    for (const details::Column& column : table.columns) {
        columns += (columns.empty() ? "" : ",") + std::string("\n    ") + ColumnClause(column);
    }
    return "CREATE TABLE " + Quoted(table.name) + " (" + columns + ")";
}

std::string DropTable(const std::string& table) {
    return "DROP TABLE " + Quoted(table);
}

std::string AddColumn(const std::string& table, const details::Column& column) {
    return InTable(table) + "ADD COLUMN " + ColumnClause(column);
}

std::string DropColumn(const std::string& table, const std::string& column) {
    return InTable(table) + "DROP COLUMN " + Quoted(column);
}

bool SameStorage(const details::Column& a, const details::Column& b) {
    return a.type == b.type && a.size == b.size && a.precision == b.precision && a.scale == b.scale &&
           a.autonumber == b.autonumber && a.fixedWidth == b.fixedWidth;
}

std::vector<std::string> AlterColumn(const std::string& table, const details::Column& from,
                                     const details::Column& to) {
    const std::string alter = InTable(table) + "ALTER COLUMN " + Quoted(to.name) + " ";
    std::vector<std::string> statements;
    const bool redefined = !SameStorage(from, to) || from.required != to.required;
    if (redefined) {
        const bool spoken = to.required || from.required || !to.autonumber;
        statements.push_back(alter + TypeWords(to) + Clauses(to) +
                             (spoken ? to.required ? " NOT NULL" : " NULL" : ""));
    }
    if (from.defaultValue != to.defaultValue && to.defaultValue.empty()) {
        statements.push_back(alter + "DROP DEFAULT");
    } else if (from.defaultValue != to.defaultValue && !redefined) {
        statements.push_back(alter + "SET DEFAULT " + to.defaultValue);
    }
    return statements;
}

std::string CreateIndex(const std::string& table, const jet::IndexInfo& index) {
    std::string fields;
    std::vector<std::string> names;
    bool descends = false;
    for (const jet::IndexFieldInfo& field : index.fields) {
        fields += (fields.empty() ? "" : ", ") + Quoted(field.name) + (field.descending ? " DESC" : "");
        names.push_back(field.name);
        descends = descends || field.descending;
    }
    if (index.primary && !descends) {
        return InTable(table) + "ADD CONSTRAINT " + Quoted(index.name) + " PRIMARY KEY " +
               InParentheses(names);
    }
    const char* option = index.primary       ? " WITH PRIMARY"
                         : index.required    ? " WITH DISALLOW NULL"
                         : index.ignoreNulls ? " WITH IGNORE NULL"
                                             : "";
    return std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + Quoted(index.name) +
           " ON " + Quoted(table) + " (" + fields + ")" + option;
}

std::string DropIndex(const std::string& table, const std::string& index) {
    return "DROP INDEX " + Quoted(index) + " ON " + Quoted(table);
}

std::string AddRelation(const jet::RelationInfo& relation) {
    return InTable(relation.table) + "ADD CONSTRAINT " + Quoted(relation.name) + " FOREIGN KEY " +
           InParentheses(relation.columns) + " REFERENCES " + Quoted(relation.referencedTable) + " " +
           InParentheses(relation.referencedColumns) + (relation.updateCascade ? " ON UPDATE CASCADE" : "") +
           (relation.deleteCascade    ? " ON DELETE CASCADE"
            : relation.deleteSetsNull ? " ON DELETE SET NULL"
                                      : "");
}

std::string DropRelation(const jet::RelationInfo& relation) {
    return InTable(relation.table) + "DROP CONSTRAINT " + Quoted(relation.name);
}

}  // namespace tavrel::script
