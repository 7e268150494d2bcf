#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Utf.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::size_t kMaxUnits = 64000;

}  // namespace

Statement ParseStatement(std::string_view statement) {
    if (statement.size() > kMaxUnits && text::Utf16Length(statement) > kMaxUnits) {
        throw MakeError(sqlErrors::kTooComplex);
    }
    return Parser(statement).ParseOneStatement();
}

Statement Parser::ParseOneStatement() {
    Statement statement = ParseVerb();
    if (AcceptSymbol(";")) {
        if (!AtEnd()) {
            throw MakeError(sqlErrors::kAfterEnd);
        }
    } else if (!AtEnd()) {
        FailBehindExpression(sqlErrors::kAfterEnd);
    }
    return statement;
}

Statement Parser::ParseVerb() {
    if (IsWord("SELECT")) {
        return ParseQuery();
    }
    if (AcceptWord("INSERT")) {
        return ParseInsert();
    }
    if (AcceptWord("UPDATE")) {
        return ParseUpdate();
    }
    if (AcceptWord("DELETE")) {
        return ParseDelete();
    }
    if (AcceptWord("CREATE")) {
        return ParseCreate();
    }
    if (AcceptWord("ALTER")) {
        Statement statement = ParseAlter();
        ExpectEnd(sqlErrors::kInAlterTable);
        return statement;
    }
    if (AcceptWord("DROP")) {
        Statement statement = ParseDrop();
        ExpectEnd(sqlErrors::kInDrop);
        return statement;
    }
    if (AcceptWord("BEGIN")) {
        return ParseTransaction(TransactionStatement::Begin);
    }
    if (AcceptWord("COMMIT")) {
        return ParseTransaction(TransactionStatement::Commit);
    }
    if (AcceptWord("ROLLBACK")) {
        return ParseTransaction(TransactionStatement::Rollback);
    }
    Fail(sqlErrors::kNoSqlVerb);
}

TransactionStatement Parser::ParseTransaction(TransactionStatement kind) {
    if (!AcceptWord("TRANSACTION")) {
        AcceptWord("WORK");
    }
    ExpectEnd(sqlErrors::kInTransaction);
    return kind;
}

Statement Parser::ParseCreate() {
    if (AcceptWord("TABLE")) {
        return ParseCreateTable();
    }
    const bool unique = AcceptWord("UNIQUE");
    if (AcceptWord("INDEX")) {
        return ParseCreateIndex(unique);
    }
    Fail(unique ? sqlErrors::kInCreateIndex : sqlErrors::kInCreateTable);
}

Statement Parser::ParseDrop() {
    if (AcceptWord("TABLE")) {
        return DropTableStatement{TakeName(sqlErrors::kInDrop)};
    }
    ExpectWord("INDEX", sqlErrors::kInDrop);
    DropIndexStatement statement;
    statement.name = TakeName(sqlErrors::kInDrop);
    ExpectWord("ON", sqlErrors::kInDrop);
    statement.table = TakeName(sqlErrors::kInDrop);
    return statement;
}

}  // namespace tavrel::jet::sql
