// CREATE TABLE, ALTER TABLE, CREATE INDEX.
#include <algorithm>

#include "jet/sql/syntax/Parser.h"
#include "jet/sql/syntax/TypeNames.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

constexpr unsigned kMaxTextSize = 255;
constexpr unsigned kMaxBinarySize = 510;
constexpr int kMaxPrecision = 28;

/// A number is the length of a text or binary column; 0 stands for the greatest text.
void SetLength(NewColumn& column, std::int32_t length) {
    const unsigned limit = column.type == ColumnType::Binary ? kMaxBinarySize : kMaxTextSize;
    if (length < 0) {
        throw MakeError(sqlErrors::kInFieldDefinition);
    }
    if (static_cast<unsigned>(length) > limit) {
        throw MakeError(sqlErrors::kFieldSizeTooLong, {column.name});
    }
    column.size = length == 0 ? kMaxTextSize : static_cast<unsigned>(length);
}

void SetScale(NewColumn& column, std::int32_t precision, std::int32_t scale) {
    if (precision < 1 || precision > kMaxPrecision || scale < 0 || scale > precision) {
        throw MakeError(sqlErrors::kInFieldDefinition);
    }
    column.precision = static_cast<std::uint8_t>(precision);
    column.scale = static_cast<std::uint8_t>(scale);
}

}  // namespace

CreateTableStatement Parser::ParseCreateTable() {
    CreateTableStatement statement;
    statement.table.name = TakeName(sqlErrors::kInCreateTable);
    ExpectSymbol("(", sqlErrors::kInCreateTable);
    do {
        ParseTableElement(statement.table);
    } while (AcceptSymbol(","));
    ExpectSymbol(")", sqlErrors::kInCreateTable);
    ExpectEnd(sqlErrors::kInCreateTable);
    for (ForeignKeyDefinition& key : statement.table.foreignKeys) {
        key.relation.table = statement.table.name;
    }
    return statement;
}

void Parser::ParseTableElement(TableCreation& table) {
    Constraints constraints;
    if (StartsConstraint()) {
        ParseTableConstraint(constraints);
    } else {
        table.columns.push_back(ParseColumn(constraints));
    }
    std::ranges::move(constraints.indexes, std::back_inserter(table.indexes));
    std::ranges::move(constraints.foreignKeys, std::back_inserter(table.foreignKeys));
}

ColumnDefinition Parser::ParseColumn(Constraints& constraints) {
    ColumnDefinition column;
    column.column.compressed = false;
    column.column.name = TakeName(sqlErrors::kInFieldDefinition);
    ParseType(column);
    while (ParseColumnAttribute(column, constraints)) {
    }
    if (!AtEnd() && !IsSymbol(",") && !IsSymbol(")") && !IsSymbol(";")) {
        Fail(sqlErrors::kInFieldDefinition);
    }
    return column;
}

void Parser::ParseType(ColumnDefinition& column) {
    const TypeName* type = Peek().kind == TokenKind::Word ? FindTypeName(Take().text) : nullptr;
    if (type == nullptr) {
        Fail(sqlErrors::kInFieldDefinition);
    }
    // The words that belong to longer spellings: DOUBLE PRECISION, NATIONAL CHARACTER VARYING …
    if (type->name == "DOUBLE") {
        AcceptWord("PRECISION");
    } else if (type->name == "NATIONAL" && !AcceptWord("CHARACTER")) {
        ExpectWord("CHAR", sqlErrors::kInFieldDefinition);
    }
    const bool hasLength =
        type->arguments == TypeArguments::Length || type->arguments == TypeArguments::Padded;
    const bool varying = hasLength && AcceptWord("VARYING");
    NewColumn& wanted = column.column;
    wanted.type = type->type;
    wanted.fixedLength = type->arguments == TypeArguments::Padded && !varying;
    const bool counter = (type->name == "INT" || type->name == "INTEGER") && AcceptWord("IDENTITY");
    const TypeArguments arguments = counter ? TypeArguments::Seed : type->arguments;
    wanted.autonumber = arguments == TypeArguments::Seed;
    if (!AcceptSymbol("(")) {
        wanted.size = hasLength ? kMaxTextSize : 0;
        wanted.type = arguments == TypeArguments::TextOrMemo ? ColumnType::Memo : wanted.type;
        return;
    }
    if (arguments == TypeArguments::None) {
        Fail(sqlErrors::kInFieldDefinition);
    }
    const std::int32_t first = TakeInteger(sqlErrors::kInFieldDefinition);
    if (arguments == TypeArguments::Scale) {
        SetScale(wanted, first, AcceptSymbol(",") ? TakeInteger(sqlErrors::kInFieldDefinition) : 0);
    } else if (arguments == TypeArguments::Seed) {
        column.seedGiven = true;
        column.seed = first;
        column.increment = AcceptSymbol(",") ? TakeInteger(sqlErrors::kInFieldDefinition) : 1;
    } else {
        SetLength(wanted, first);
    }
    ExpectSymbol(")", sqlErrors::kInFieldDefinition);
}

bool Parser::ParseColumnAttribute(ColumnDefinition& column, Constraints& constraints) {
    if (AcceptWord("DEFAULT")) {
        if (column.defaultGiven) {
            Fail(sqlErrors::kInFieldDefinition);
        }
        column.column.defaultValue = ParseDefaultText(sqlErrors::kInFieldDefinition);
        column.defaultGiven = true;
        return true;
    }
    if (AcceptWord("NULL")) {
        SetNullable(column, true);
        return true;
    }
    if (AcceptWord("NOT")) {
        ExpectWord("NULL", sqlErrors::kInFieldDefinition);
        SetNullable(column, false);
        return true;
    }
    if (AcceptWord("WITH")) {
        if (!AcceptWord("COMPRESSION")) {
            ExpectWord("COMP", sqlErrors::kInFieldDefinition);
        }
        column.column.compressed = true;
        return true;
    }
    return ParseColumnConstraint(column.column.name, constraints);
}

void Parser::SetNullable(ColumnDefinition& column, bool nullable) {
    if (column.nullable) {
        throw MakeError(sqlErrors::kBothNulls);
    }
    column.nullable = nullable;
    column.column.required = !nullable;
}

/// The text stays as written: what users see of a default is its spelling.
std::string Parser::ParseDefaultText(std::int32_t error) {
    const std::size_t first = at_;
    if (AcceptSymbol("(")) {
        ParseExpression(error);
        if (!AcceptSymbol(")")) {
            FailBehindExpression(error);
        }
    } else if (IsName() && IsSymbol("(", 1)) {
        ParseCall();
    } else {
        const bool sign = AcceptSymbol("-") || AcceptSymbol("+");
        const TokenKind kind = Peek().kind;
        const bool number = kind == TokenKind::Number;
        if (!number &&
            (sign || (kind != TokenKind::Text && kind != TokenKind::Date && !IsWord("NULL") && !IsName()))) {
            Fail(error);
        }
        Take();
    }
    sawExpression_ = false;
    return std::string(SourceFrom(first));
}

Statement Parser::ParseAlter() {
    ExpectWord("TABLE", sqlErrors::kInAlterTable);
    const std::string table = TakeName(sqlErrors::kInAlterTable);
    if (AcceptWord("ADD")) {
        Constraints constraints;
        if (!AcceptWord("COLUMN") && StartsConstraint()) {
            ParseTableConstraint(constraints);
            for (ForeignKeyDefinition& key : constraints.foreignKeys) {
                key.relation.table = table;
            }
            return AddConstraintStatement{table, std::move(constraints)};
        }
        ColumnDefinition column = ParseColumn(constraints);
        for (ForeignKeyDefinition& key : constraints.foreignKeys) {
            key.relation.table = table;
        }
        return AddColumnStatement{table, std::move(column), std::move(constraints)};
    }
    if (AcceptWord("ALTER")) {
        return ParseAlterColumn(table);
    }
    ExpectWord("DROP", sqlErrors::kInAlterTable);
    if (AcceptWord("CONSTRAINT")) {
        return DropConstraintStatement{table, TakeName(sqlErrors::kInAlterTable)};
    }
    AcceptWord("COLUMN");
    return DropColumnStatement{table, TakeName(sqlErrors::kInAlterTable)};
}

Statement Parser::ParseAlterColumn(std::string table) {
    AcceptWord("COLUMN");
    if (IsName() && IsWord("SET", 1)) {
        SetDefaultStatement statement{std::move(table), TakeName(sqlErrors::kInAlterTable), {}};
        Take();
        ExpectWord("DEFAULT", sqlErrors::kInAlterTable);
        statement.text = ParseDefaultText(sqlErrors::kInAlterTable);
        return statement;
    }
    if (IsName() && IsWord("DROP", 1)) {
        SetDefaultStatement statement{std::move(table), TakeName(sqlErrors::kInAlterTable), {}};
        Take();
        ExpectWord("DEFAULT", sqlErrors::kInAlterTable);
        return statement;
    }
    AlterColumnStatement statement;
    statement.column = ParseColumn(statement.constraints);
    for (ForeignKeyDefinition& key : statement.constraints.foreignKeys) {
        key.relation.table = table;
    }
    statement.table = std::move(table);
    return statement;
}

CreateIndexStatement Parser::ParseCreateIndex(bool unique) {
    CreateIndexStatement statement;
    statement.index.unique = unique;
    statement.index.name = TakeName(sqlErrors::kInCreateIndex);
    ExpectWord("ON", sqlErrors::kInCreateIndex);
    statement.table = TakeName(sqlErrors::kInCreateIndex);
    ExpectSymbol("(", sqlErrors::kInCreateIndex);
    do {
        IndexFieldInfo field;
        field.name = TakeName(sqlErrors::kInCreateIndex);
        field.descending = AcceptWord("DESC");
        if (!field.descending) {
            AcceptWord("ASC");
        }
        statement.index.fields.push_back(std::move(field));
    } while (AcceptSymbol(","));
    ExpectSymbol(")", sqlErrors::kInCreateIndex);
    if (AcceptWord("WITH")) {
        ParseIndexOptions(statement.index);
    }
    ExpectEnd(sqlErrors::kInCreateIndex);
    return statement;
}

void Parser::ParseIndexOptions(NewIndex& index) {
    if (AcceptWord("PRIMARY")) {
        index.primary = true;
        index.unique = true;
        index.required = true;
    } else if (AcceptWords({"DISALLOW", "NULL"})) {
        index.required = true;
    } else if (AcceptWords({"IGNORE", "NULL"})) {
        index.ignoreNulls = true;
    } else {
        Fail(sqlErrors::kInCreateIndex);
    }
}

}  // namespace tavrel::jet::sql
