#include "patch/TableStatement.h"

namespace tavrel::patch {

namespace {

std::string_view NullClause(Nullable nullable) {
    switch (nullable) {
        case Nullable::NotNull:
            return " NOT NULL";
        case Nullable::Null:
            return " NULL";
        case Nullable::Unsaid:
            break;
    }
    return "";
}

}  // namespace

TableStatement::TableStatement(const Table& table) : table_(table) {}

bool TableStatement::Take(const BlockItem& item) {
    if (const Column* column = std::get_if<Column>(&item)) {
        Add(*column);
        return true;
    }
    if (const Columns* several = std::get_if<Columns>(&item)) {
        for (const Column& column : several->columns) {
            Add(column);
        }
        return true;
    }
    return false;
}

void TableStatement::Add(const Column& column) {
    columns_.append("`").append(column.name).append("` ").append(column.type);
    if (column.value != NoDefault) {
        columns_.append(" DEFAULT ").append(column.value == Empty ? "\"\"" : column.value);
    }
    columns_.append(NullClause(column.nullable)).append(", ");
}

std::string TableStatement::Text() const {
    std::string text = "CREATE TABLE `";
    text.append(table_.name).append("` (").append(columns_);
    text.append("PRIMARY KEY (").append(table_.key).append("))");
    return text;
}

std::string ConstraintStatement(const Constraint& constraint) {
    std::string text = "ALTER TABLE ";
    text.append(constraint.child.table).append(" ADD CONSTRAINT ").append(constraint.name);
    text.append(" FOREIGN KEY (").append(constraint.child.column).append(") REFERENCES ");
    text.append(constraint.parent.table).append(" (").append(constraint.parent.column).append(")");
    text.append(" ON UPDATE CASCADE ON DELETE CASCADE");
    return text;
}

}  // namespace tavrel::patch
