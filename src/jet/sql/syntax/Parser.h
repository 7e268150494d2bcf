// Recursive descent over the tokens of one statement.  The parts of the grammar are spread over several
// files: ParseStatement.cpp, ParseQuery.cpp, ParseChanges.cpp, ParseDefinition.cpp, ParseConstraint.cpp,
// ParseExpression.cpp.
#pragma once

#include <initializer_list>

#include "jet/sql/syntax/Ast.h"
#include "jet/sql/syntax/Token.h"

namespace tavrel::jet::sql {

/// Parses one statement.  Throws 3129 for an unknown verb, the clause's own number (3131, 3134 …) or 3075 for
/// mistakes, 3142 for what stands behind a semicolon, 3035 for nesting beyond reason and for more than 64,000
/// UTF-16 units.
Statement ParseStatement(std::string_view statement);

/// Parses a text that is an expression and nothing else, as defaults are.  Throws 3355.
ExpressionPtr ParseDefault(std::string_view text);

class Parser {
  public:
    explicit Parser(std::string_view statement) : tokens_(Tokenize(statement)) {}

    Statement ParseOneStatement();
    ExpressionPtr ParseOneExpression(std::int32_t error);

  private:
    /// Bounds the nesting: statements come from outside.
    class Level {
      public:
        explicit Level(Parser& parser);
        ~Level() { --parser_.level_; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

      private:
        Parser& parser_;
    };

    // ---- tokens
    [[nodiscard]] const Token& Peek(std::size_t ahead = 0) const;
    const Token& Take();
    [[nodiscard]] bool AtEnd() const { return Peek().kind == TokenKind::End; }
    [[nodiscard]] bool IsWord(std::string_view word, std::size_t ahead = 0) const;
    [[nodiscard]] bool IsSymbol(std::string_view symbol, std::size_t ahead = 0) const;
    [[nodiscard]] bool IsName(std::size_t ahead = 0) const;
    bool AcceptWord(std::string_view word);
    bool AcceptWords(std::initializer_list<std::string_view> words);
    bool AcceptSymbol(std::string_view symbol);
    void ExpectWord(std::string_view word, std::int32_t error);
    void ExpectSymbol(std::string_view symbol, std::int32_t error);
    /// Nothing but a semicolon may follow.
    void ExpectEnd(std::int32_t error) const;
    std::string TakeName(std::int32_t error);
    std::vector<std::string> TakeNames(std::int32_t error);
    std::int32_t TakeInteger(std::int32_t error);
    [[nodiscard]] std::string_view SourceFrom(std::size_t firstToken) const;

    // ---- failures
    [[noreturn]] void Fail(std::int32_t error) const;
    /// At a token that can neither go on with the expression nor follow it.
    [[noreturn]] void FailBehindExpression(std::int32_t errorAtEnd) const;
    [[noreturn]] void FailInExpression(std::string_view reason) const;
    [[nodiscard]] std::string ExpressionText() const;

    // ---- statements
    Statement ParseVerb();
    Statement ParseCreate();
    Statement ParseAlter();
    Statement ParseDrop();
    TransactionStatement ParseTransaction(TransactionStatement kind);
    InsertStatement ParseInsert();
    UpdateStatement ParseUpdate();
    DeleteStatement ParseDelete();

    // ---- queries
    Query ParseQuery();
    SelectCore ParseCore();
    std::optional<Top> ParseTop();
    SelectItem ParseItem();
    std::string ParseAlias(std::int32_t error);
    std::vector<TableReference> ParseFrom();
    TableReference ParseJoined();
    TableReference ParseTable();
    std::optional<JoinKind> AcceptJoin();
    std::vector<OrderItem> ParseOrderBy();
    std::unique_ptr<Query> ParseQueryInParentheses(std::int32_t error);
    [[nodiscard]] bool StartsQuery(std::size_t ahead = 0) const;

    // ---- definitions
    CreateTableStatement ParseCreateTable();
    void ParseTableElement(TableCreation& table);
    CreateIndexStatement ParseCreateIndex(bool unique);
    void ParseIndexOptions(NewIndex& index);
    ColumnDefinition ParseColumn(Constraints& constraints);
    void ParseType(ColumnDefinition& column);
    void ParseCounterSeed(ColumnDefinition& column);
    bool ParseColumnAttribute(ColumnDefinition& column, Constraints& constraints);
    void SetNullable(ColumnDefinition& column, bool nullable);
    std::string ParseDefaultText(std::int32_t error);
    [[nodiscard]] bool StartsConstraint() const;
    void ParseTableConstraint(Constraints& constraints);
    bool ParseColumnConstraint(const std::string& column, Constraints& constraints);
    void ParseReferences(ForeignKeyDefinition& key);
    void ParseReferentialAction(ForeignKeyDefinition& key);
    Statement ParseAlterColumn(std::string table);

    // ---- expressions, loosest first
    /// `emptyError` is the number for a place where no expression begins at all.
    ExpressionPtr ParseExpression(std::int32_t emptyError);
    std::vector<ExpressionPtr> ParseExpressions(std::int32_t emptyError);
    [[nodiscard]] bool IsLoneLiteral() const;
    ExpressionPtr ParseDisjunction();
    ExpressionPtr ParseConjunction();
    ExpressionPtr ParseNegation();
    ExpressionPtr ParseComparison();
    ExpressionPtr ParsePredicate(ExpressionPtr left, std::size_t first);
    ExpressionPtr ParseIn(ExpressionPtr left);
    ExpressionPtr ParseBinaryLevel(std::size_t level);
    ExpressionPtr ParseSign();
    ExpressionPtr ParsePrimary();
    ExpressionPtr ParseLiteral();
    ExpressionPtr ParseNumber();
    ExpressionPtr ParseDate();
    ExpressionPtr ParseWordPrimary();
    ExpressionPtr ParseCall();
    ExpressionPtr ParseColumnName();
    ExpressionPtr Finish(ExpressionPtr node, std::size_t firstToken) const;
    ExpressionPtr Combine(ExpressionKind kind, std::vector<ExpressionPtr> arguments,
                          std::size_t firstToken) const;
    ExpressionPtr CombineBinary(BinaryOperator op, ExpressionPtr left, ExpressionPtr right,
                                std::size_t firstToken) const;

    std::deque<Token> tokens_;
    std::size_t at_ = 0;
    std::size_t level_ = 0;
    std::size_t expressionStart_ = 0;  ///< token where the last outermost expression begins
    bool inExpression_ = false;
    bool sawExpression_ = false;  ///< the clause being read ends in an expression
};

}  // namespace tavrel::jet::sql
