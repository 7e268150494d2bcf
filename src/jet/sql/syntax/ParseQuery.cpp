#include <charconv>

#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

bool Parser::StartsQuery(std::size_t ahead) const {
    return IsWord("SELECT", ahead);
}

std::unique_ptr<Query> Parser::ParseQueryInParentheses(std::int32_t error) {
    ExpectSymbol("(", error);
    auto query = std::make_unique<Query>(ParseQuery());
    if (!AcceptSymbol(")")) {
        FailBehindExpression(error);
    }
    return query;
}

Query Parser::ParseQuery() {
    const Level level(*this);
    Query query;
    query.parts.push_back(ParseCore());
    while (AcceptWord("UNION")) {
        query.all.push_back(AcceptWord("ALL"));
        query.parts.push_back(ParseCore());
    }
    if (AcceptWord("ORDER")) {
        ExpectWord("BY", sqlErrors::kInOrderBy);
        query.orderBy = ParseOrderBy();
    }
    return query;
}

SelectCore Parser::ParseCore() {
    ExpectWord("SELECT", sqlErrors::kInSelectList);
    SelectCore core;
    if (!AcceptWord("ALL") && !AcceptWord("DISTINCTROW")) {
        core.distinct = AcceptWord("DISTINCT");
    }
    core.top = ParseTop();
    do {
        core.items.push_back(ParseItem());
    } while (AcceptSymbol(","));
    if (AcceptWord("FROM")) {
        core.from = ParseFrom();
    }
    if (AcceptWord("WHERE")) {
        core.where = ParseExpression(sqlErrors::kInExpression);
    }
    if (AcceptWord("GROUP")) {
        ExpectWord("BY", sqlErrors::kInSelectList);
        core.groupBy = ParseExpressions(sqlErrors::kInSelectList);
    }
    if (AcceptWord("HAVING")) {
        core.having = ParseExpression(sqlErrors::kInExpression);
    }
    return core;
}

std::optional<Top> Parser::ParseTop() {
    if (!AcceptWord("TOP")) {
        return std::nullopt;
    }
    const std::int32_t count = TakeInteger(sqlErrors::kInSelectList);
    if (count < 0) {
        Fail(sqlErrors::kInSelectList);
    }
    return Top{static_cast<std::uint64_t>(count), AcceptWord("PERCENT")};
}

SelectItem Parser::ParseItem() {
    SelectItem item;
    if (AcceptSymbol("*")) {
        sawExpression_ = false;
        return item;
    }
    if (IsName() && IsSymbol(".", 1) && IsSymbol("*", 2)) {
        item.qualifier = TakeName(sqlErrors::kInSelectList);
        at_ += 2;
        sawExpression_ = false;
        return item;
    }
    item.expression = ParseExpression(sqlErrors::kInSelectList);
    item.alias = ParseAlias(sqlErrors::kInSelectList);
    return item;
}

std::string Parser::ParseAlias(std::int32_t error) {
    return AcceptWord("AS") || IsName() ? TakeName(error) : std::string();
}

std::vector<TableReference> Parser::ParseFrom() {
    std::vector<TableReference> tables;
    do {
        tables.push_back(ParseJoined());
    } while (AcceptSymbol(","));
    if (!AtEnd() && Peek().kind != TokenKind::Symbol && !IsReservedWord(Peek().text)) {
        Fail(sqlErrors::kInFrom);
    }
    return tables;
}

TableReference Parser::ParseJoined() {
    const Level level(*this);
    TableReference table = ParseTable();
    std::size_t joins = 0;
    while (const auto kind = AcceptJoin()) {
        TableReference joined;
        joined.join = *kind;
        joined.left = std::make_unique<TableReference>(std::move(table));
        joined.right = std::make_unique<TableReference>(ParseTable());
        ExpectWord("ON", sqlErrors::kInJoin);
        joined.condition = ParseExpression(sqlErrors::kInJoin);
        table = std::move(joined);
        if (++joins > 100) {
            throw MakeError(sqlErrors::kTooComplex);
        }
    }
    return table;
}

std::optional<JoinKind> Parser::AcceptJoin() {
    struct Operator {
        std::string_view word;
        JoinKind kind;
    };
    static constexpr Operator kOperators[] = {
        {"LEFT", JoinKind::Left}, {"RIGHT", JoinKind::Right}, {"INNER", JoinKind::Inner}};
    for (const Operator& candidate : kOperators) {
        if (AcceptWord(candidate.word)) {
            if (candidate.kind != JoinKind::Inner) {
                AcceptWord("OUTER");
            }
            ExpectWord("JOIN", sqlErrors::kInJoin);
            return candidate.kind;
        }
    }
    if (IsWord("JOIN")) {
        Fail(sqlErrors::kInFrom);
    }
    return std::nullopt;
}

TableReference Parser::ParseTable() {
    sawExpression_ = false;
    TableReference table;
    if (IsSymbol("(")) {
        if (StartsQuery(1)) {
            table.query = ParseQueryInParentheses(sqlErrors::kInFrom);
            AcceptWord("AS");
            table.alias = TakeName(sqlErrors::kInFrom);
            sawExpression_ = false;
            return table;
        }
        Take();
        table = ParseJoined();
        if (!AcceptSymbol(")")) {
            Fail(sqlErrors::kInFrom);
        }
        sawExpression_ = false;
        return table;
    }
    table.name = TakeName(sqlErrors::kInFrom);
    table.alias = ParseAlias(sqlErrors::kInFrom);
    if (table.alias.empty()) {
        table.alias = table.name;
    }
    return table;
}

std::vector<OrderItem> Parser::ParseOrderBy() {
    std::vector<OrderItem> items;
    do {
        OrderItem item;
        item.expression = ParseExpression(sqlErrors::kInOrderBy);
        item.descending = AcceptWord("DESC");
        if (!item.descending) {
            AcceptWord("ASC");
        }
        items.push_back(std::move(item));
    } while (AcceptSymbol(","));
    return items;
}

}  // namespace tavrel::jet::sql
