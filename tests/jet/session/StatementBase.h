// Random values and conditions, and statements carried out beside the model.
#pragma once

#include <random>

#include <gtest/gtest.h>

#include "jet/session/SessionBench.h"
#include "jet/session/StatementModel.h"

namespace tavrel::testing {

class StatementBase {
  public:
    /// `hangul`: the database's sort order knows the weights of syllables.
    StatementBase(SessionBench& bench, unsigned seed, bool hangul)
        : bench_(bench), random_(seed), hangul_(hangul) {}

    [[nodiscard]] const Model& State() const { return model_; }
    [[nodiscard]] bool InTransaction() const { return before_.has_value(); }
    [[nodiscard]] const std::map<std::int32_t, int>& Outcomes() const { return outcomes_; }

    /// Every table holds what the model says, as the engine reads it.
    void ExpectRows() {
        for (const auto& [name, table] : model_.tables) {
            ExpectTable(name, table);
        }
    }

  protected:
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
