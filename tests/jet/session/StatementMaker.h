// Random statements, and what each should do to the model.
#pragma once

#include <random>

#include <gtest/gtest.h>

#include "jet/session/SessionBench.h"
#include "jet/session/StatementModel.h"

namespace tavrel::testing {

class StatementMaker {
  public:
    /// `hangul`: the database's sort order knows the weights of syllables.
    StatementMaker(SessionBench& bench, unsigned seed, bool hangul)
        : bench_(bench), random_(seed), hangul_(hangul) {}

    [[nodiscard]] const Model& State() const { return model_; }
    [[nodiscard]] bool InTransaction() const { return before_.has_value(); }
    [[nodiscard]] const std::map<std::int32_t, int>& Outcomes() const { return outcomes_; }

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

    /// Every table holds what the model says, as the engine reads it.
    void ExpectRows() {
        for (const auto& [name, table] : model_.tables) {
            ExpectTable(name, table);
        }
    }

  private:
    int Below(std::size_t limit) { return static_cast<int>(random_() % limit); }
    bool Chance(int percent) { return Below(100) < percent; }
    template <typename Container>
    auto& Any(Container& items) {
        return *std::next(std::begin(items), Below(std::size(items)));
    }
    std::string NewName(const char* prefix) {
        return (hangul_ && Chance(30) ? "이름" : prefix) + std::to_string(++lastName_);
    }

    // ---- values

    std::string RandomText(unsigned longest) {
        static constexpr const char* kLetters[] = {"a", "B", "c", "D", "ab", "x y", "-", "'"};
        static constexpr const char* kSyllables[] = {"가", "나다", "힣", "중"};
        std::string text;
        const int length = Chance(80) ? Below(5) : Below(longest + 1);
        if (Chance(40)) {
            return std::to_string(Below(9000)).substr(0, longest);
        }
        while (static_cast<int>(text::Utf16Length(text)) < length) {
            text += hangul_ && Chance(30) ? Any(kSyllables) : Any(kLetters);
        }
        const std::u16string units = text::Utf16FromUtf8(text);
        return text::Utf8FromUtf16(std::u16string_view(units).substr(0, longest));
    }

    Value RandomValue(const ModelTable& table, const ModelColumn& column) {
        if (column.type == ColumnType::Boolean) {
            return Chance(50);
        }
        if (!column.counter && Chance(8)) {
            return Null{};
        }
        switch (column.type) {
            case ColumnType::Integer:
                return std::int64_t{Below(40)} - 5;
            case ColumnType::Long:
                return Chance(95) ? std::int64_t{Below(60)} - 5 : std::int64_t{Below(2'000'000'000)};
            case ColumnType::Double:
                return (Below(80) - 20) / 2.0;
            case ColumnType::Date:
                return jet::Date{36893.0 + Below(4)};
            case ColumnType::Memo:
                return RandomText(table.IsIndexed(column.name) ? 60 : Any(kMemoLengths));
            default:
                return RandomText(column.size);
        }
    }

    static std::string Literal(const Value& value) {
        if (const auto* text = std::get_if<std::string>(&value)) {
            std::string quoted = "'";
            for (const char c : *text) {
                quoted += c == '\'' ? "''" : std::string(1, c);
            }
            return quoted + "'";
        }
        if (const auto* date = std::get_if<jet::Date>(&value)) {
            return "#2001-01-0" + std::to_string(static_cast<int>(date->days) - 36891) + "#";
        }
        if (const auto* boolean = std::get_if<bool>(&value)) {
            return *boolean ? "TRUE" : "FALSE";
        }
        const nlohmann::json json = Model::JsonOf(value);
        return json.is_null() ? "NULL" : json.dump();
    }

    // ---- carrying out

    /// The statement must lead to `after`, or fail as that state deserves and change nothing.
    bool Do(const std::string& statement, Model after, std::set<std::int32_t> deserved = {},
            const std::string& result = {}) {
        SCOPED_TRACE(statement);
        if (deserved.empty()) {
            deserved = after.Violations();
        }
        std::string got;
        std::string text;
        std::int32_t error = 0;
        try {
            got = bench_.Run(statement);
        } catch (const Error& thrown) {
            error = thrown.Number();
            text = thrown.Description();
        }
        ++outcomes_[error];
        // Rows are changed one after the other: what relations forbid on the way may be sound at the end.
        const bool onTheWay = error == errors::kChildRecords && model_.relations.size() > 1;
        EXPECT_TRUE(onTheWay || (deserved.empty() ? error == 0 : deserved.contains(error)))
            << error << " " << text;
        if (error == 0) {
            EXPECT_TRUE(result.empty() || got == result) << got << " instead of " << result;
            model_ = std::move(after);
        }
        return error == 0;
    }

    void ExpectTable(const std::string& name, const ModelTable& table) {
        std::vector<std::string> lines;
        const auto rows = bench_.Session().Execute("SELECT * FROM [" + name + "]").rows;
        EXPECT_EQ(rows->Columns().size(), table.columns.size()) << name;
        while (rows->Next()) {
            nlohmann::json line = nlohmann::json::array();
            for (std::size_t i = 0; i < rows->Columns().size(); ++i) {
                line.push_back(Model::JsonOf(rows->Get(i)));
            }
            lines.push_back(line.dump());
        }
        std::ranges::sort(lines);
        EXPECT_EQ(lines, Model::Lines(table)) << name;
    }

    struct Condition {
        std::string text;
        std::function<bool(const ModelRow&)> holds;
    };

    Condition RandomCondition(const ModelTable& table) {
        const ModelColumn& column = Any(table.columns);
        const std::string name = column.name;
        if (Chance(5)) {
            return {"", [](const ModelRow&) { return true; }};
        }
        Value value = RandomValue(table, column);
        if (!table.rows.empty() && Chance(70)) {
            value = Any(table.rows).at(name);
        }
        if (jet::IsNull(value)) {
            return {" WHERE [" + name + "] IS NULL",
                    [name](const ModelRow& row) { return jet::IsNull(row.at(name)); }};
        }
        const bool less = std::holds_alternative<std::int64_t>(value) && Chance(30);
        return {" WHERE [" + name + "] " + (less ? "<" : "=") + " " + Literal(value),
                [name, value, less](const ModelRow& row) {
                    return less ? !jet::IsNull(row.at(name)) &&
                                      std::get<std::int64_t>(row.at(name)) < std::get<std::int64_t>(value)
                                : Folded(row.at(name)) == Folded(value);
                }};
    }

    // ---- rows

    void Insert() {
        const auto& [name, table] = Any(model_.tables);
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

    // ---- definitions

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

    static constexpr unsigned kMemoLengths[] = {30, 30, 400, 5000};
    SessionBench& bench_;
    std::mt19937 random_;
    bool hangul_;
    int lastName_ = 0;
    Model model_;
    std::optional<Model> before_;  ///< as it was when the transaction began
    std::map<std::int32_t, int> outcomes_;
};

}  // namespace tavrel::testing
