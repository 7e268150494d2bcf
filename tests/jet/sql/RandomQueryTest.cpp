// Random joins, conditions and groups against an evaluator that knows nothing but nested loops.
#include <algorithm>
#include <functional>
#include <map>
#include <random>

#include <gmock/gmock.h>

#include "jet/sql/values/Values.h"
#include "support/MemoryTables.h"

namespace tavrel::test {
namespace {

using jet::IsNull;
using jet::Null;
using jet::Value;
using jet::sql::Truth;

/// A row of each table that is joined so far; null where an outer join found no partner.
using Combination = std::vector<const MemoryTable::Row*>;

struct Condition {
    std::string sql;
    std::function<Truth(const Combination&)> holds;
};

constexpr std::size_t kNumber = 0;
constexpr std::size_t kText = 1;
constexpr std::size_t kDouble = 2;
constexpr const char* kColumns[] = {"k", "s", "d"};

class RandomQueries {
  public:
    explicit RandomQueries(unsigned seed) : random_(seed) {
        for (int table = 0; table < 3; ++table) {
            const std::string name = "t" + std::to_string(table);
            database_.Run("CREATE TABLE " + name + " (k LONG, s VARCHAR(5), d DOUBLE)");
            for (std::size_t row = Below(12); row > 0; --row) {
                database_.Table(name).rows.push_back(RandomRow());
            }
            if (Below(2) == 0) {
                database_.Table(name).claimedRows = Below(2) == 0 ? 1 : 100000;  // other plans
            }
            for (const char* columns : {"(k)", "(s, k)", "(d DESC)"}) {
                if (Below(2) == 0) {
                    database_.Run("CREATE INDEX i" + std::to_string(columns[1]) + " ON " + name + columns);
                }
            }
        }
    }

    void Compare() {
        Combinations();
        std::string sql = from_;
        if (Below(3) > 0) {
            const Condition where = RandomCondition(tables_, 2);
            sql += " WHERE " + where.sql;
            std::erase_if(rows_, [&](const Combination& row) { return where.holds(row) != Truth::True; });
        }
        if (Below(3) == 0) {
            Expect("SELECT t0.k, COUNT(*), SUM(t1.k), MIN(t1.d)" + sql + " GROUP BY t0.k", Grouped());
        } else {
            Expect("SELECT t0.k, t1.s, t1.d" + sql, Plain());
        }
    }

  private:
    std::size_t Below(std::size_t limit) { return random_() % limit; }

    MemoryTable::Row RandomRow() {
        static const char* const kTexts[] = {"a", "A", "b", "ab", "가", ""};
        MemoryTable::Row row(3, Null{});
        row[kNumber] = Below(6) == 0 ? row[kNumber] : Value(static_cast<std::int64_t>(Below(5)));
        row[kText] = Below(6) == 0 ? row[kText] : Value(std::string(kTexts[Below(6)]));
        row[kDouble] = Below(6) == 0 ? row[kDouble] : Value(static_cast<double>(Below(8)) / 2);
        return row;
    }

    static const Value& At(const Combination& row, std::size_t table, std::size_t column) {
        static const Value kMissing = Null{};
        return row[table] == nullptr ? kMissing : (*row[table])[column];
    }

    /// A comparison, a test or a combination of them over tables 0 .. tables - 1.
    Condition RandomCondition(std::size_t tables, std::size_t depth) {
        if (depth > 0 && Below(2) == 0) {
            const Condition a = RandomCondition(tables, depth - 1);
            const Condition b = RandomCondition(tables, depth - 1);
            const bool both = Below(3) > 0;
            return {"(" + a.sql + (both ? " AND " : " OR ") + b.sql + ")",
                    [a, b, both](const Combination& row) {
                        const Truth left = a.holds(row);
                        const Truth right = b.holds(row);
                        const Truth decisive = both ? Truth::False : Truth::True;
                        if (left == decisive || right == decisive) {
                            return decisive;
                        }
                        return left == Truth::Unknown ? left : right;
                    }};
        }
        if (Below(8) == 0) {
            const Condition inner = RandomCondition(tables, 0);
            return {"NOT (" + inner.sql + ")",
                    [inner](const Combination& row) { return Not(inner.holds(row)); }};
        }
        return Below(4) == 0 ? NullTest(Below(tables)) : Comparison(Below(tables), tables);
    }

    Condition NullTest(std::size_t table) {
        const std::size_t column = Below(3);
        return {Name(table, column) + " IS NULL",
                [=](const Combination& row) { return jet::sql::ToTruth(IsNull(At(row, table, column))); }};
    }

    Condition Comparison(std::size_t table, std::size_t tables) {
        static const char* const kOperators[] = {"=", "=", "=", "<>", "<", ">="};
        const std::string op = kOperators[Below(6)];
        const std::size_t column = Below(3);
        if (Below(2) == 0) {
            const Value constant =
                column == kText ? Value(std::string("A")) : Value(static_cast<std::int64_t>(Below(4)));
            const std::string spelled = column == kText ? "'A'" : Shown(constant);
            return Compared(
                Name(table, column) + " " + op + " " + spelled, op,
                [=](const Combination& row) { return At(row, table, column); },
                [=](const Combination&) { return constant; });
        }
        const std::size_t other = Below(tables);
        const std::size_t otherColumn = column == kText ? kText : Below(2) == 0 ? kNumber : kDouble;
        return Compared(
            Name(table, column) + " " + op + " " + Name(other, otherColumn), op,
            [=](const Combination& row) { return At(row, table, column); },
            [=](const Combination& row) { return At(row, other, otherColumn); });
    }

    using Getter = std::function<Value(const Combination&)>;
    Condition Compared(const std::string& sql, const std::string& op, const Getter& left,
                       const Getter& right) {
        return {sql, [this, op, left, right](const Combination& row) {
                    const Value a = left(row);
                    const Value b = right(row);
                    if (IsNull(a) || IsNull(b)) {
                        return Truth::Unknown;
                    }
                    const int order = jet::sql::CompareValues(a, b, database_.texts);
                    return jet::sql::ToTruth(op == "="    ? order == 0
                                             : op == "<>" ? order != 0
                                             : op == "<"  ? order < 0
                                                          : order >= 0);
                }};
    }

    static std::string Name(std::size_t table, std::size_t column) {
        return "t" + std::to_string(table) + "." + kColumns[column];
    }

    std::vector<const MemoryTable::Row*> RowsOf(std::size_t table) {
        std::vector<const MemoryTable::Row*> rows;
        for (const auto& row : database_.Table("t" + std::to_string(table)).rows) {
            rows.push_back(&*row);
        }
        return rows;
    }

    /// ((t0 join t1) join t2), or a list with commas.
    void Combinations() {
        rows_.clear();
        for (const auto* row : RowsOf(0)) {
            rows_.push_back({row});
        }
        from_ = "t0";
        tables_ = 2 + Below(2);
        for (std::size_t table = 1; table < tables_; ++table) {
            const std::size_t kind = Below(4);
            static const char* const kJoins[] = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN ", ", "};
            const bool comma = kind == 3;
            const Condition on = comma ? Condition{"", [](const Combination&) { return Truth::True; }}
                                       : RandomCondition(table + 1, 1);
            const std::string name = "t" + std::to_string(table);
            from_ = comma ? from_ + ", " + name
                          : (from_.find(',') == std::string::npos ? "(" + from_ + ")" : from_) +
                                kJoins[kind] + name + " ON " + on.sql;
            Join(table, on, kind);
            if (comma) {
                tables_ = table + 1;  // a join behind a comma would only see the last table
            }
        }
        from_ = " FROM " + from_;
    }

    void Join(std::size_t table, const Condition& on, std::size_t kind) {
        std::vector<Combination> joined;
        std::vector<const MemoryTable::Row*> matched;
        for (const Combination& row : rows_) {
            bool any = false;
            for (const auto* partner : RowsOf(table)) {
                Combination both = row;
                both.push_back(partner);
                if (on.holds(both) == Truth::True) {
                    joined.push_back(both);
                    matched.push_back(partner);
                    any = true;
                }
            }
            if (!any && kind == 1) {
                joined.push_back(row);
                joined.back().push_back(nullptr);
            }
        }
        for (const auto* partner : RowsOf(table)) {
            if (kind == 2 && std::ranges::find(matched, partner) == matched.end()) {
                joined.emplace_back(table, nullptr);
                joined.back().push_back(partner);
            }
        }
        rows_ = std::move(joined);
    }

    std::vector<std::string> Plain() const {
        std::vector<std::string> lines;
        for (const Combination& row : rows_) {
            lines.push_back(Shown(At(row, 0, kNumber)) + "|" + Shown(At(row, 1, kText)) + "|" +
                            Shown(At(row, 1, kDouble)));
        }
        return lines;
    }

    std::vector<std::string> Grouped() const {
        struct Group {
            int count = 0;
            std::optional<double> sum, least;
        };
        std::map<std::string, Group> groups;
        for (const Combination& row : rows_) {
            Group& group = groups[Shown(At(row, 0, kNumber))];
            ++group.count;
            if (const Value& number = At(row, 1, kNumber); !IsNull(number)) {
                group.sum = group.sum.value_or(0) + jet::sql::NumberOf(number);
            }
            if (const Value& number = At(row, 1, kDouble); !IsNull(number)) {
                group.least = std::min(group.least.value_or(1e9), jet::sql::NumberOf(number));
            }
        }
        const auto shown = [](std::optional<double> number) { return number ? Shown(Value(*number)) : "~"; };
        std::vector<std::string> lines;
        for (const auto& [key, group] : groups) {
            lines.push_back(key + "|" + std::to_string(group.count) + "|" + shown(group.sum) + "|" +
                            shown(group.least));
        }
        return lines;
    }

    void Expect(const std::string& sql, std::vector<std::string> expected) {
        std::vector<std::string> seen;
        std::string all = database_.Run(sql) + ";";
        for (std::size_t at = 0, end = 0; (end = all.find(';', at)) != std::string::npos; at = end + 1) {
            if (all != ";") {
                seen.push_back(all.substr(at, end - at));
            }
        }
        std::ranges::sort(seen);
        std::ranges::sort(expected);
        ASSERT_EQ(seen, expected) << sql;
    }

    std::mt19937 random_;
    MemoryDatabase database_;
    std::vector<Combination> rows_;
    std::string from_;
    std::size_t tables_ = 0;
};

TEST(RandomQuery, AgreesWithNestedLoops) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        RandomQueries queries(seed);
        for (int i = 0; i < 40 && !::testing::Test::HasFailure(); ++i) {
            queries.Compare();
        }
        ASSERT_FALSE(::testing::Test::HasFailure()) << "seed " << seed;
    }
}

}  // namespace
}  // namespace tavrel::test
