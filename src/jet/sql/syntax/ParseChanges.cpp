// INSERT, UPDATE, DELETE.
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

InsertStatement Parser::ParseInsert() {
    ExpectWord("INTO", sqlErrors::kInInsert);
    InsertStatement statement;
    statement.table = TakeName(sqlErrors::kInInsert);
    if (IsSymbol("(") && !StartsQuery(1)) {
        statement.columns = TakeNames(sqlErrors::kInInsert);
    }
    if (AcceptWord("VALUES")) {
        ExpectSymbol("(", sqlErrors::kInInsert);
        statement.values = ParseExpressions(sqlErrors::kInInsert);
        if (!AcceptSymbol(")")) {
            FailBehindExpression(sqlErrors::kInInsert);
        }
        sawExpression_ = false;
        return statement;
    }
    if (IsSymbol("(") && StartsQuery(1)) {
        statement.query = ParseQueryInParentheses(sqlErrors::kInInsert);
    } else if (StartsQuery()) {
        statement.query = std::make_unique<Query>(ParseQuery());
    } else {
        Fail(sqlErrors::kInInsert);
    }
    return statement;
}

UpdateStatement Parser::ParseUpdate() {
    UpdateStatement statement;
    if (!IsName() && !IsSymbol("(")) {
        Fail(sqlErrors::kInUpdate);
    }
    statement.table = ParseJoined();
    ExpectWord("SET", sqlErrors::kInUpdate);
    do {
        Assignment assignment;
        if (!IsName()) {
            Fail(sqlErrors::kInUpdate);
        }
        assignment.target = ParseColumnName();
        ExpectSymbol("=", sqlErrors::kInUpdate);
        assignment.value = ParseExpression(sqlErrors::kInUpdate);
        statement.assignments.push_back(std::move(assignment));
    } while (AcceptSymbol(","));
    if (AcceptWord("WHERE")) {
        statement.where = ParseExpression(sqlErrors::kInUpdate);
    }
    return statement;
}

DeleteStatement Parser::ParseDelete() {
    if (!AcceptSymbol("*") && IsName() && IsSymbol(".", 1) && IsSymbol("*", 2)) {
        at_ += 3;
    }
    ExpectWord("FROM", sqlErrors::kInDelete);
    DeleteStatement statement;
    statement.table = TakeName(sqlErrors::kInDelete);
    statement.alias = AcceptWord("AS") || IsName() ? TakeName(sqlErrors::kInDelete) : statement.table;
    if (AcceptWord("WHERE")) {
        statement.where = ParseExpression(sqlErrors::kInDelete);
    } else if (!AtEnd() && !IsSymbol(";")) {
        Fail(sqlErrors::kInDelete);
    }
    return statement;
}

}  // namespace tavrel::jet::sql
