// Random statements about rows.
#pragma once

#include "jet/session/StatementBase.h"

namespace tavrel::testing {

class RowStatements : public StatementBase {
  public:
    using StatementBase::StatementBase;

  protected:
    void Insert() {
        const auto [name, table] =
            Any(model_.tables);  // a copy: the model is replaced when the row has gone in
        Model after = model_;
        ModelRow row;
        std::string names;
        std::string values;
        std::set<std::int32_t> deserved;
        std::string counter;
        for (const ModelColumn& column : table.columns) {
            if (column.counter) {
                counter = column.name;
                row[column.name] = Null{};
                continue;
            }
            if (Chance(85)) {
                row[column.name] = RandomValue(table, column);
                names += (names.empty() ? "[" : ", [") + column.name + "]";
                values += (values.empty() ? "" : ", ") + Literal(row[column.name]);
            } else {
                row[column.name] = column.type == ColumnType::Boolean && jet::IsNull(column.defaultValue)
                                       ? Value{false}
                                       : column.defaultValue;
            }
            if (column.required && jet::IsNull(row[column.name])) {
                deserved.insert(errors::kRequiredField);
            }
        }
        if (names.empty()) {
            return;
        }
        row[counter.empty() ? table.columns.front().name : counter] =
            counter.empty() ? row[table.columns.front().name] : Value{std::int64_t{-1}};
        after.tables[name].rows.push_back(row);
        deserved.merge(after.Violations());
        if (Do("INSERT INTO [" + name + "] (" + names + ") VALUES (" + values + ")", after, deserved, "1") &&
            !counter.empty()) {
            ModelTable& grown = model_.tables[name];
            const Value number = Int(std::stoll(bench_.Run("SELECT @@IDENTITY")));
            for (const ModelRow& other : grown.rows) {
                EXPECT_NE(other.at(counter), number) << name;
            }
            grown.rows.back().at(counter) = number;
        }
    }

    void Update() {
        const auto& [name, table] = Any(model_.tables);
        std::vector<ModelColumn> free;
        for (const ModelColumn& column : table.columns) {
            if (!column.counter) {
                free.push_back(column);
            }
        }
        if (free.empty()) {
            return;
        }
        const ModelColumn column = Any(free);
        const Condition condition = RandomCondition(table);
        const auto selected = std::ranges::count_if(table.rows, condition.holds);
        if (selected > 1 && (table.IsIndexed(column.name) || model_.InRelation(name, column.name))) {
            return;  // the order of the rows would decide
        }
        const Value value = RandomValue(table, column);
        const bool adds = column.type == ColumnType::Double && Chance(50);
        Model after = model_;
        std::vector<std::pair<Value, Value>> changed;
        for (ModelRow& row : after.tables[name].rows) {
            if (condition.holds(row)) {
                Value& cell = row.at(column.name);
                const Value old = cell;
                cell = !adds ? value : jet::IsNull(cell) ? cell : Value{std::get<double>(cell) + 1.5};
                changed.emplace_back(old, cell);
            }
        }
        for (const auto& [from, to] : changed) {
            after.CascadeUpdate(name, column.name, from, to);
        }
        std::set<std::int32_t> deserved = after.Violations();
        if (column.required &&
            std::ranges::any_of(changed, [](const auto& change) { return jet::IsNull(change.second); })) {
            deserved.insert(errors::kRequiredField);
        }
        Do("UPDATE [" + name + "] SET [" + column.name +
               "] = " + (adds ? "[" + column.name + "] + 1.5" : Literal(value)) + condition.text,
           after, deserved, std::to_string(selected));
    }

    void Delete() {
        const auto& [name, table] = Any(model_.tables);
        const Condition condition = RandomCondition(table);
        const auto selected = std::ranges::count_if(table.rows, condition.holds);
        const bool ownParent = std::ranges::any_of(
            model_.relations, [&](const ModelRelation& r) { return r.parent == name && r.child == name; });
        if (ownParent && selected > 1) {
            return;
        }
        Model after = model_;
        after.Delete(name, condition.holds);
        Do("DELETE FROM [" + name + "]" + condition.text, after, {}, std::to_string(selected));
    }

    void Query() {
        const auto& [name, table] = Any(model_.tables);
        const Condition condition = RandomCondition(table);
        SCOPED_TRACE(name + condition.text);
        EXPECT_EQ(bench_.Run("SELECT COUNT(*) FROM [" + name + "]" + condition.text),
                  std::to_string(std::ranges::count_if(table.rows, condition.holds)));
    }
};

}  // namespace tavrel::testing
