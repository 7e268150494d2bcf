// Random statements of every kind, definitions and transactions among them.
#pragma once

#include "jet/session/RowStatements.h"

namespace tavrel::testing {

class StatementMaker : public RowStatements {
  public:
    using RowStatements::RowStatements;

    void Step() {
        static constexpr struct {
            int share;
            void (StatementMaker::*make)();
        } kKinds[] = {
            {30, &StatementMaker::Insert},     {14, &StatementMaker::Update},
            {8, &StatementMaker::Delete},      {3, &StatementMaker::CreateTable},
            {1, &StatementMaker::DropTable},   {4, &StatementMaker::AddColumn},
            {3, &StatementMaker::DropColumn},  {5, &StatementMaker::AlterColumn},
            {4, &StatementMaker::CreateIndex}, {2, &StatementMaker::DropIndex},
            {3, &StatementMaker::AddRelation}, {2, &StatementMaker::DropRelation},
            {3, &StatementMaker::Transaction}, {4, &StatementMaker::Query},
        };
        int left = Below(86);
        for (const auto& kind : kKinds) {
            left -= kind.share;
            if (left < 0) {
                (model_.tables.empty() ? CreateTable() : (this->*kind.make)());
                return;
            }
        }
    }

    void EndTransaction() {
        if (before_) {
            bench_.Run("COMMIT");
            before_.reset();
        }
    }

  private:
    ModelColumn RandomColumn() {
        static constexpr ColumnType kTypes[] = {ColumnType::Long,   ColumnType::Long, ColumnType::Integer,
                                                ColumnType::Text,   ColumnType::Text, ColumnType::Memo,
                                                ColumnType::Double, ColumnType::Date, ColumnType::Boolean};
        ModelColumn column;
        column.name = NewName("c");
        column.type = Any(kTypes);
        column.size = column.type == ColumnType::Text ? 1 + static_cast<unsigned>(Below(60)) : 0;
        column.required = column.type != ColumnType::Boolean && Chance(10);
        if (Chance(25) && column.type != ColumnType::Memo) {
            column.defaultValue = RandomValue({}, column);
            column.defaultText = Literal(column.defaultValue);
        }
        return column;
    }

    static std::string TypeText(const ModelColumn& column) {
        switch (column.type) {
            case ColumnType::Text:
                return "TEXT(" + std::to_string(column.size) + ")";
            case ColumnType::Memo:
                return "MEMO";
            case ColumnType::Integer:
                return "SHORT";
            case ColumnType::Double:
                return "DOUBLE";
            case ColumnType::Date:
                return "DATETIME";
            case ColumnType::Boolean:
                return "BIT";
            default:
                return column.counter ? "COUNTER" : "LONG";
        }
    }
    static std::string DefinitionOf(const ModelColumn& column) {
        return "[" + column.name + "] " + TypeText(column) +
               (column.defaultText.empty() ? "" : " DEFAULT " + column.defaultText) +
               (column.required ? " NOT NULL" : "");
    }

    void CreateTable() {
        if (model_.tables.size() >= 6) {
            return DropTable();
        }
        const std::string name = NewName("t");
        ModelTable table;
        std::string columns;
        for (int left = 1 + Below(6); left >= 0; --left) {
            ModelColumn column = RandomColumn();
            if (left == 0 && Chance(30)) {
                column = {column.name, ColumnType::Long, 0, false, true, "", {}};
            }
            columns += (columns.empty() ? "" : ", ") + DefinitionOf(column);
            table.columns.push_back(column);
            ++table.numbers;
        }
        if (Chance(60)) {
            const ModelColumn& key = Any(table.columns);
            table.indexes.push_back({NewName("p"), {key.name}, true, true});
            columns += ", CONSTRAINT [" + table.indexes[0].name + "] PRIMARY KEY ([" + key.name + "])";
        }
        Model after = model_;
        after.tables[name] = table;
        Do("CREATE TABLE [" + name + "] (" + columns + ")", after);
    }

    void DropTable() {
        const std::string name = Any(model_.tables).first;
        Model after = model_;
        after.tables.erase(name);
        const bool used = std::ranges::any_of(
            model_.relations, [&](const ModelRelation& r) { return r.parent == name && r.child != name; });
        std::erase_if(after.relations, [&](const ModelRelation& r) { return r.child == name; });
        Do("DROP TABLE [" + name + "]", used ? model_ : after,
           used ? std::set<std::int32_t>{3281} : std::set<std::int32_t>{});
    }

    void AddColumn() {
        const std::string name = Any(model_.tables).first;
        Model after = model_;
        ModelTable& table = after.tables[name];
        if (table.columns.size() > 12 || table.numbers > 250) {
            return;
        }
        const ModelColumn column = RandomColumn();
        for (ModelRow& row : table.rows) {
            row[column.name] = column.type == ColumnType::Boolean ? Value{false} : Value{Null{}};
        }
        table.columns.push_back(column);
        ++table.numbers;
        Do("ALTER TABLE [" + name + "] ADD COLUMN " + DefinitionOf(column), after);
    }

    void DropColumn() {
        const std::string name = Any(model_.tables).first;
        Model after = model_;
        ModelTable& table = after.tables[name];
        if (table.columns.size() < 2) {
            return;
        }
        const std::string column = Any(table.columns).name;
        std::set<std::int32_t> deserved;
        if (table.IsIndexed(column)) {
            deserved = {3280, 3303};
        } else if (model_.InRelation(name, column)) {
            deserved = {3303};
        }
        std::erase_if(table.columns, [&](const ModelColumn& c) { return c.name == column; });
        Do("ALTER TABLE [" + name + "] DROP COLUMN [" + column + "]", deserved.empty() ? after : model_,
           deserved);
    }

    void AlterColumn() {
        const std::string name = Any(model_.tables).first;
        Model after = model_;
        ModelTable& table = after.tables[name];
        const ModelColumn old = Any(table.columns);
        static constexpr ColumnType kTargets[] = {ColumnType::Long, ColumnType::Integer, ColumnType::Text,
                                                  ColumnType::Text, ColumnType::Memo,    ColumnType::Double};
        ModelColumn column = old;
        column.type = Any(kTargets);
        column.size = column.type == ColumnType::Text ? 3 + static_cast<unsigned>(Below(60)) : 0;
        const bool real = old.type == ColumnType::Double;
        const bool odd = old.type == ColumnType::Boolean || old.type == ColumnType::Date || old.counter ||
                         (real && (column.type == ColumnType::Text || column.type == ColumnType::Memo));
        if (odd || !old.defaultText.empty() || table.numbers > 250 ||
            (column.type == ColumnType::Memo && table.IsIndexed(old.name))) {
            return;
        }
        std::set<std::int32_t> deserved;
        const bool changes = column.type != old.type || column.size != old.size;
        if (changes && model_.InRelation(name, old.name)) {
            deserved = {3720};
        }
        for (ModelRow& row : table.rows) {
            row.at(old.name) = Converted(row.at(old.name), column.type, column.size);
        }
        *std::ranges::find(table.columns, old.name, &ModelColumn::name) = column;
        ++table.numbers;
        column.required = false;  // nothing is said of Null: as before
        Do("ALTER TABLE [" + name + "] ALTER COLUMN " + DefinitionOf(column),
           deserved.empty() ? after : model_, deserved);
    }

    void CreateIndex() {
        const std::string name = Any(model_.tables).first;
        Model after = model_;
        ModelTable& table = after.tables[name];
        if (table.indexes.size() >= 6) {
            return DropIndex();
        }
        ModelIndex index{NewName("i"), {}, Chance(40), false};
        std::string columns;
        for (int left = Below(3); left >= 0; --left) {
            const ModelColumn& column = Any(table.columns);
            if (column.type != ColumnType::Memo &&
                std::ranges::find(index.columns, column.name) == index.columns.end()) {
                index.columns.push_back(column.name);
                columns += (columns.empty() ? "[" : ", [") + column.name + "]" + (Chance(25) ? " DESC" : "");
            }
        }
        if (index.columns.empty()) {
            return;
        }
        const bool unique = index.unique;
        const bool hasKey =
            std::ranges::any_of(table.indexes, [](const ModelIndex& other) { return other.primary; });
        index.primary = unique && !hasKey && Chance(30);
        table.indexes.push_back(index);
        const std::string end = index.primary ? " WITH PRIMARY" : "";
        Do(std::string(unique ? "CREATE UNIQUE" : "CREATE") + " INDEX [" + index.name + "] ON [" + name +
               "] (" + columns + ")" + end,
           after);
    }

    void DropIndex() {
        const std::string name = Any(model_.tables).first;
        Model after = model_;
        ModelTable& table = after.tables[name];
        if (table.indexes.empty()) {
            return;
        }
        const auto index = std::next(table.indexes.begin(), Below(table.indexes.size()));
        const bool parent = std::ranges::any_of(model_.relations, [&](const ModelRelation& r) {
            return r.parent == name && index->columns == std::vector{r.parentColumn} && index->unique;
        });
        if (parent) {
            return;  // which of several unique indexes the relation leans on is the engine's choice
        }
        const std::string statement = "DROP INDEX [" + index->name + "] ON [" + name + "]";
        table.indexes.erase(index);
        Do(statement, after);
    }

    void AddRelation() {
        if (model_.relations.size() >= 5) {
            return DropRelation();
        }
        for (int tries = 0; tries < 30; ++tries) {
            const auto& [parent, parentTable] = Any(model_.tables);
            const auto& [child, childTable] = Any(model_.tables);
            const ModelColumn& childColumn = Any(childTable.columns);
            for (const ModelIndex& index : parentTable.indexes) {
                const ModelColumn& parentColumn = parentTable.Column(index.columns[0]);
                if (index.unique && index.columns.size() == 1 && parentColumn.type == childColumn.type &&
                    childColumn.type != ColumnType::Memo && !childColumn.counter &&
                    (parent != child || (parentColumn.name != childColumn.name && !parentColumn.counter))) {
                    return AddRelation({NewName("r"), child, childColumn.name, parent, parentColumn.name,
                                        Chance(50), Chance(50)});
                }
            }
        }
    }
    void AddRelation(const ModelRelation& relation) {
        Model after = model_;
        after.relations.push_back(relation);
        Do("ALTER TABLE [" + relation.child + "] ADD CONSTRAINT [" + relation.name + "] FOREIGN KEY ([" +
               relation.childColumn + "]) REFERENCES [" + relation.parent + "] ([" + relation.parentColumn +
               "])" + (relation.cascadesUpdate ? " ON UPDATE CASCADE" : "") +
               (relation.cascadesDelete ? " ON DELETE CASCADE" : ""),
           after);
    }

    void DropRelation() {
        if (model_.relations.empty()) {
            return;
        }
        Model after = model_;
        const auto relation = std::next(after.relations.begin(), Below(after.relations.size()));
        const std::string statement =
            "ALTER TABLE [" + relation->child + "] DROP CONSTRAINT [" + relation->name + "]";
        after.relations.erase(relation);
        Do(statement, after);
    }

    void Transaction() {
        if (!before_) {
            bench_.Run("BEGIN TRANSACTION");
            before_ = model_;
        } else if (Chance(50)) {
            EndTransaction();
        } else {
            bench_.Run("ROLLBACK");
            model_ = std::move(*before_);
            before_.reset();
        }
    }
};

}  // namespace tavrel::testing
