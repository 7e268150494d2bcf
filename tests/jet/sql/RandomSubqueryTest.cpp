// Random queries inside queries against a literal reading of them: nested loops that evaluate every inner
// query anew for every row.  For longer and other runs TAVREL_STATEMENTS says how many and TAVREL_SEED which.
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <random>

#include <gmock/gmock.h>

#include "jet/sql/values/Values.h"
#include "support/MemoryTables.h"

namespace tavrel::test {
namespace {

using jet::IsNull;
using jet::Null;
using jet::Value;
using jet::sql::Not;
using jet::sql::ToTruth;
using jet::sql::Truth;

using Row = MemoryTable::Row;
/// What the tables in reach stand on, those of outer queries first: q0, q1 …  Null where a join found no
/// partner.
using Standing = std::vector<const Row*>;

/// A piece of SQL and what it means.
template <typename Result>
struct Piece {
    std::string sql;
    std::function<Result(const Standing&)> of;
};
using Operand = Piece<Value>;
using Condition = Piece<Truth>;
/// What stands behind SELECT …; the rows that it finds inside an outer one.
using Rows = Piece<std::vector<Standing>>;

enum class Kind : std::uint8_t { Number, Text };

class RandomSubqueries {
  public:
    explicit RandomSubqueries(unsigned seed) : random_(seed) {
        for (int table = 0; table < 3; ++table) {
            const std::string name = "t" + std::to_string(table);
            database_.Run("CREATE TABLE " + name + " (k LONG, s VARCHAR(9), d DOUBLE)");
            for (std::size_t row = Below(7); row > 0; --row) {
                database_.Table(name).rows.push_back(RandomRow());
            }
            PretendSize(database_.Table(name));
            for (const char* columns : {"(k)", "(s, k)", "(d DESC)"}) {
                if (Below(3) == 0) {
                    database_.Run("CREATE INDEX i" + std::to_string(columns[1]) + " ON " + name + columns);
                }
            }
        }
    }

    void Compare() {
        switch (Below(4)) {
            case 0:
                return CompareDelete();
            case 1:
                return CompareUpdate();
            default:
                return CompareSelect();
        }
    }

  private:
    std::size_t Below(std::size_t limit) { return random_() % limit; }
    bool OneIn(std::size_t times) { return Below(times) == 0; }
    template <typename T, std::size_t count>
    const T& OneOf(const T (&list)[count]) {
        return list[Below(count)];
    }

    Row RandomRow() {
        static const char* const kTexts[] = {"a", "A", "b", "aa", ""};
        return {OneIn(6) ? Value(Null{}) : Value(static_cast<std::int64_t>(Below(4))),
                OneIn(6) ? Value(Null{}) : Value(std::string(OneOf(kTexts))),
                OneIn(6) ? Value(Null{}) : Value(static_cast<double>(Below(6)) / 2)};
    }

    /// Small tables are planned as large ones are, so that indexes and joins of every kind have their turn.
    void PretendSize(MemoryTable& table) {
        static constexpr std::uint64_t kSizes[] = {1, 50, 100000};
        if (!OneIn(4)) {
            table.claimedRows = OneOf(kSizes);
        }
        table.refusesSeeks = OneIn(8);
    }

    // What is asked of the engine, and compared.

    void CompareSelect() {
        const Rows rows = RandomRows(0, 2);
        const Operand extra = RandomOperand(Kind::Number, 1, 1);
        std::vector<std::string> expected;
        for (const Standing& row : rows.of({})) {
            expected.push_back(Shown(Column(row, 0, 0)) + "|" + Shown(Column(row, 0, 1)) + "|" +
                               Shown(extra.of({row.front()})));
        }
        const std::string sql = "SELECT q0.k, q0.s, " + extra.sql + rows.sql;
        std::vector<std::string> seen = Split(database_.Run(sql));
        std::ranges::sort(seen);
        std::ranges::sort(expected);
        EXPECT_EQ(seen, expected) << sql;
    }

    void CompareDelete() {
        const Condition where = RandomCondition(1, 2);
        CompareChange("DELETE FROM t0 AS q0 WHERE " + where.sql, [&](std::optional<Row>& row) {
            row = where.of({&*row}) == Truth::True ? std::nullopt : row;
        });
    }

    void CompareUpdate() {
        const Condition where = RandomCondition(1, 2);
        const Operand value = RandomOperand(Kind::Number, 1, 2);
        CompareChange("UPDATE t0 AS q0 SET q0.d = " + value.sql + " WHERE " + where.sql,
                      [&](std::optional<Row>& row) {
                          if (where.of({&*row}) == Truth::True) {
                              (*row)[2] = value.of({&*row});
                          }
                      });
    }

    /// All rows are judged as they were before the first change; afterwards they are that again.
    void CompareChange(const std::string& sql, const std::function<void(std::optional<Row>&)>& change) {
        auto& rows = database_.Table("t0").rows;
        const auto before = rows;
        auto expected = before;
        std::ranges::for_each(expected, change);
        database_.Run(sql);
        EXPECT_EQ(Lines(database_.Table("t0").rows), Lines(expected)) << sql;
        database_.Table("t0").rows = before;
    }

    static std::vector<std::string> Lines(const std::vector<std::optional<Row>>& rows) {
        std::vector<std::string> lines;
        for (const auto& row : rows) {
            lines.push_back(row ? Shown((*row)[0]) + "|" + Shown((*row)[1]) + "|" + Shown((*row)[2]) : "-");
        }
        return lines;
    }

    static std::vector<std::string> Split(const std::string& all) {
        std::vector<std::string> lines;
        for (std::size_t at = 0, end = 0; !all.empty() && end != std::string::npos; at = end + 1) {
            end = all.find(';', at);
            lines.push_back(all.substr(at, end - at));
        }
        return lines;
    }

    // FROM and WHERE.

    /// FROM … WHERE … with one table or two behind those that are in reach already.
    Rows RandomRows(std::size_t reach, std::size_t depth) {
        static const char* const kJoins[] = {", ", " INNER JOIN ", " LEFT JOIN "};
        const std::size_t tables = OneIn(3) ? 2 : 1;
        const std::string join = OneOf(kJoins);
        const Rows first = RandomSource(reach, reach, depth);
        const Rows second = RandomSource(reach, reach + 1, depth);
        const Condition on = join == ", " ? Condition{"", [](const Standing&) { return Truth::True; }}
                                          : RandomCondition(reach + 2, OneIn(4) ? depth / 2 : 0);
        const Condition where = RandomCondition(reach + tables, depth);
        std::string sql = " FROM " + first.sql;
        if (tables == 2) {
            sql += join + second.sql + (join == ", " ? "" : " ON " + on.sql);
        }
        return {sql + " WHERE " + where.sql, [=](const Standing& outer) {
                    std::vector<Standing> found;
                    for (const Standing& row : first.of(outer)) {
                        std::vector<Standing> joined = {row};
                        if (tables == 2) {
                            joined = Joined(outer, row, second, on, join == " LEFT JOIN ");
                        }
                        std::ranges::copy_if(joined, std::back_inserter(found), [&](const Standing& both) {
                            return where.of(both) == Truth::True;
                        });
                    }
                    return found;
                }};
    }

    static std::vector<Standing> Joined(const Standing& outer, const Standing& row, const Rows& second,
                                        const Condition& on, bool keep) {
        std::vector<Standing> joined;
        for (const Standing& partner : second.of(outer)) {
            Standing both = row;
            both.push_back(partner.back());
            if (on.of(both) == Truth::True) {
                joined.push_back(both);
            }
        }
        if (joined.empty() && keep) {
            joined.push_back(row);
            joined.back().push_back(nullptr);
        }
        return joined;
    }

    /// A table, or some rows of it by a query of its own, which sees the outer queries but not its
    /// neighbours.
    Rows RandomSource(std::size_t reach, std::size_t place, std::size_t depth) {
        const std::string name = "t" + std::to_string(Below(3));
        const std::string alias = " AS q" + std::to_string(place);
        const auto all = [this, name](const Standing& outer) {
            std::vector<Standing> rows;
            for (const auto& row : database_.Table(name).rows) {
                rows.push_back(outer);
                rows.back().push_back(&*row);
            }
            return rows;
        };
        if (!OneIn(5)) {
            return {name + alias, all};
        }
        const Condition where = RandomCondition(reach + 1, depth / 2);
        return {
            "(SELECT * FROM " + name + " AS q" + std::to_string(reach) + " WHERE " + where.sql + ")" + alias,
            [=](const Standing& outer) {
                std::vector<Standing> rows = all(outer);
                std::erase_if(rows, [&](const Standing& row) { return where.of(row) != Truth::True; });
                return rows;
            }};
    }

    // Conditions over the tables q0 … q(reach - 1).

    Condition RandomCondition(std::size_t reach, std::size_t depth, std::size_t breadth = 1) {
        if (breadth > 0 && OneIn(2)) {
            return Both(RandomCondition(reach, depth, breadth - 1), RandomCondition(reach, depth, 0),
                        OneIn(4));
        }
        if (OneIn(9)) {
            const Condition inner = RandomCondition(reach, depth, 0);
            return {"NOT (" + inner.sql + ")", [inner](const Standing& row) { return Not(inner.of(row)); }};
        }
        const Kind kind = OneIn(3) ? Kind::Text : Kind::Number;
        if (depth > 0 && !OneIn(4)) {
            switch (Below(3)) {
                case 0:
                    return Exists(RandomRows(reach, depth - 1));
                case 1:
                    return InQuery(kind, reach, depth);
                default:
                    return Comparison(RandomOperand(kind, reach, depth), Scalar(kind, reach, depth));
            }
        }
        if (OneIn(6)) {
            const Operand operand = RandomOperand(kind, reach, 0);
            return {operand.sql + " IS NULL",
                    [operand](const Standing& row) { return ToTruth(IsNull(operand.of(row))); }};
        }
        return Comparison(RandomOperand(kind, reach, 0), RandomOperand(kind, reach, 0));
    }

    static Condition Both(const Condition& a, const Condition& b, bool either) {
        return {"(" + a.sql + (either ? " OR " : " AND ") + b.sql + ")", [=](const Standing& row) {
                    const Truth left = a.of(row);
                    const Truth right = b.of(row);
                    const Truth decisive = ToTruth(either);
                    return left == decisive || right == decisive               ? decisive
                           : left == Truth::Unknown || right == Truth::Unknown ? Truth::Unknown
                                                                               : Not(decisive);
                }};
    }

    Truth Compared(const Value& a, const std::string& op, const Value& b) const {
        if (IsNull(a) || IsNull(b)) {
            return Truth::Unknown;
        }
        const int order = jet::sql::CompareValues(a, b, database_.texts);
        return ToTruth(op == "=" ? order == 0 : op == "<>" ? order != 0 : op == "<" ? order < 0 : order >= 0);
    }

    Condition Comparison(const Operand& a, const Operand& b) {
        static const char* const kOperators[] = {"=", "=", "=", "<>", "<", ">="};
        const std::string op = OneOf(kOperators);
        return {a.sql + " " + op + " " + b.sql,
                [=, this](const Standing& row) { return Compared(a.of(row), op, b.of(row)); }};
    }

    static Condition Exists(const Rows& rows) {
        return {"EXISTS (SELECT *" + rows.sql + ")",
                [rows](const Standing& row) { return ToTruth(!rows.of(row).empty()); }};
    }

    Condition InQuery(Kind kind, std::size_t reach, std::size_t depth) {
        const Operand sought = RandomOperand(kind, reach, 0);
        const Piece<std::vector<Value>> list = RandomList(kind, reach, depth);
        const bool negated = OneIn(3);
        return {sought.sql + (negated ? " NOT IN (" : " IN (") + list.sql + ")",
                [=, this](const Standing& row) {
                    const Value value = sought.of(row);
                    Truth found = Truth::False;
                    for (const Value& candidate : list.of(row)) {
                        const Truth equal = Compared(value, "=", candidate);
                        found = found == Truth::True || equal == Truth::False ? found : equal;
                    }
                    return negated ? Not(found) : found;
                }};
    }

    /// A query of one column: plain, distinct, grouped or united.
    Piece<std::vector<Value>> RandomList(Kind kind, std::size_t reach, std::size_t depth) {
        const Rows rows = RandomRows(reach, depth - 1);
        if (OneIn(5)) {
            return GroupedList(kind, reach, rows);
        }
        const Operand item = RandomOperand(kind, reach + 1, 0);
        const std::string sql = (OneIn(4) ? "SELECT DISTINCT " : "SELECT ") + item.sql + rows.sql;
        const auto items = [=](const Standing& outer) {
            std::vector<Value> values;
            std::ranges::transform(rows.of(outer), std::back_inserter(values), item.of);
            return values;
        };
        if (!OneIn(5)) {
            return {sql, items};
        }
        const auto others = RandomList(kind, reach, depth);
        return {sql + (OneIn(2) ? " UNION " : " UNION ALL ") + others.sql, [=](const Standing& outer) {
                    std::vector<Value> values = items(outer);
                    std::ranges::copy(others.of(outer), std::back_inserter(values));
                    return values;
                }};
    }

    /// The keys of the groups that have more rows than an operand of the outer query says.
    Piece<std::vector<Value>> GroupedList(Kind kind, std::size_t reach, const Rows& rows) {
        const std::size_t column = kind == Kind::Text ? 1 : 0;
        const Operand key = ColumnOf(reach, column);
        const Operand least = reach == 0 ? Constant(Kind::Number) : RandomOperand(Kind::Number, reach, 0);
        return {"SELECT " + key.sql + rows.sql + " GROUP BY " + key.sql + " HAVING COUNT(*) >= " + least.sql,
                [=, this](const Standing& outer) {
                    std::vector<Value> keys;
                    const std::vector<Standing> found = rows.of(outer);
                    for (const Standing& row : found) {
                        const auto size = std::ranges::count_if(found, [&](const Standing& other) {
                            return Shown(key.of(row)) == Shown(key.of(other)) ||
                                   Compared(key.of(row), "=", key.of(other)) == Truth::True;
                        });
                        if (Compared(std::int64_t{size}, ">=", least.of(outer)) == Truth::True) {
                            keys.push_back(key.of(row));
                        }
                    }
                    return keys;
                }};
    }

    // Operands.

    static Value Column(const Standing& row, std::size_t place, std::size_t column) {
        return row[place] == nullptr ? Value(Null{}) : (*row[place])[column];
    }
    static Operand ColumnOf(std::size_t place, std::size_t column) {
        static const char* const kNames[] = {"k", "s", "d"};
        return {"q" + std::to_string(place) + "." + kNames[column],
                [=](const Standing& row) { return Column(row, place, column); }};
    }

    Operand Constant(Kind kind) {
        const Value value =
            kind == Kind::Text ? Value(std::string("A")) : Value(static_cast<std::int64_t>(Below(4)));
        return {kind == Kind::Text ? "'A'" : Shown(value), [value](const Standing&) { return value; }};
    }

    Operand RandomOperand(Kind kind, std::size_t reach, std::size_t depth) {
        if (depth > 0 && OneIn(4)) {
            return Scalar(kind, reach, depth);
        }
        if (OneIn(4)) {
            return Calculation(kind, ColumnOperand(kind, reach), ColumnOperand(kind, reach));
        }
        return OneIn(6) ? Constant(kind) : ColumnOperand(kind, reach);
    }

    Operand ColumnOperand(Kind kind, std::size_t reach) {
        const std::size_t place = OneIn(2) ? reach - 1 : Below(reach);
        return ColumnOf(place, kind == Kind::Text ? 1 : OneIn(3) ? 2 : 0);
    }

    Operand Calculation(Kind kind, const Operand& a, const Operand& b) {
        if (kind == Kind::Text) {
            return {"(" + a.sql + " & " + b.sql + ")", [=](const Standing& row) {
                        const Value left = a.of(row);
                        const Value right = b.of(row);
                        return IsNull(left) && IsNull(right)
                                   ? Value(Null{})
                                   : Value(jet::sql::ValueText(left) + jet::sql::ValueText(right));
                    }};
        }
        const bool times = OneIn(2);
        return {"(" + a.sql + (times ? " * " : " + ") + b.sql + ")", [=](const Standing& row) {
                    const Value left = a.of(row);
                    const Value right = b.of(row);
                    if (IsNull(left) || IsNull(right)) {
                        return Value(Null{});
                    }
                    const double x = jet::sql::NumberOf(left);
                    const double y = jet::sql::NumberOf(right);
                    return Value(times ? x * y : x + y);
                }};
    }

    /// A query with one row: an aggregate over what it finds.
    Operand Scalar(Kind kind, std::size_t reach, std::size_t depth) {
        const Rows rows = RandomRows(reach, depth - 1);
        if (kind == Kind::Number && OneIn(3)) {
            return {"(SELECT COUNT(*)" + rows.sql + ")", [rows](const Standing& outer) {
                        return Value(static_cast<std::int64_t>(rows.of(outer).size()));
                    }};
        }
        const Operand item = RandomOperand(kind, reach + 1, 0);
        const bool greatest = OneIn(2);
        return {(greatest ? "(SELECT MAX(" : "(SELECT MIN(") + item.sql + ")" + rows.sql + ")",
                [=, this](const Standing& outer) {
                    Value best = Null{};
                    for (const Standing& row : rows.of(outer)) {
                        const Value value = item.of(row);
                        const bool better = IsNull(best) || Compared(value, "<", best) == ToTruth(!greatest);
                        best = !IsNull(value) && better ? value : best;
                    }
                    return best;
                }};
    }

    std::mt19937 random_;
    MemoryDatabase database_;
};

unsigned Chosen(const char* name, unsigned usual) {
    const char* chosen = std::getenv(name);
    return chosen != nullptr ? static_cast<unsigned>(std::atoi(chosen)) : usual;
}

TEST(RandomSubquery, AgreesWithALiteralReading) {
    constexpr unsigned kPerDatabase = 25;
    const unsigned first = Chosen("TAVREL_SEED", 0) * 1000000;
    const unsigned databases = Chosen("TAVREL_STATEMENTS", 2000) / kPerDatabase;
    for (unsigned seed = first; seed < first + databases && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSubqueries queries(seed);
        for (unsigned i = 0; i < kPerDatabase && !HasFailure(); ++i) {
            queries.Compare();
        }
    }
}

}  // namespace
}  // namespace tavrel::test
