// The syntax tree: a statement as written, names not yet looked up.  Slices (`source`) lie in the statement's
// text, which must outlive the tree.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "jet/catalog/Value.h"
#include "jet/sql/syntax/SchemaChanges.h"

namespace tavrel::jet::sql {

struct Query;

enum class ExpressionKind : std::uint8_t {
    Literal,
    Column,     ///< [qualifier.]name
    Negate,     ///< - a
    Not,        ///< NOT a
    Binary,     ///< a op b
    IsNull,     ///< a IS [NOT] NULL
    Like,       ///< a [NOT] LIKE b
    Between,    ///< a [NOT] BETWEEN b AND c
    In,         ///< a [NOT] IN (b, c, …)
    InQuery,    ///< a [NOT] IN (SELECT …)
    Exists,     ///< EXISTS (SELECT …)
    Scalar,     ///< (SELECT …)
    Function,   ///< name(a, …)
    Aggregate,  ///< name(a); no argument: COUNT(*)
    Identity    ///< @@IDENTITY
};

enum class BinaryOperator : std::uint8_t {
    Or,
    Xor,
    And,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Concatenate,
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo
};

struct Expression {
    ExpressionKind kind = ExpressionKind::Literal;
    BinaryOperator op = BinaryOperator::Or;
    bool negated = false;     ///< the NOT of IS NULL, LIKE, BETWEEN, IN
    bool holdsQuery = false;  ///< a query stands somewhere below
    unsigned depth = 1;       ///< of the tree below, itself included
    Value literal;
    std::string qualifier;                               ///< empty when none was written
    std::string name;                                    ///< of a column; of a function in upper case
    std::vector<std::unique_ptr<Expression>> arguments;  ///< operands in the order written
    std::unique_ptr<Query> query;
    std::string_view source;
};
using ExpressionPtr = std::unique_ptr<Expression>;

enum class JoinKind : std::uint8_t { Inner, Left, Right };

/// A table, a query in parentheses, or two of them joined.
struct TableReference {
    std::string name;   ///< of a table
    std::string alias;  ///< as written, or the name
    std::unique_ptr<Query> query;
    std::unique_ptr<TableReference> left;  ///< a join when set
    std::unique_ptr<TableReference> right;
    JoinKind join = JoinKind::Inner;
    ExpressionPtr condition;
};

/// An expression, or * (no expression), or table.* (no expression, qualifier set).
struct SelectItem {
    ExpressionPtr expression;
    std::string alias;
    std::string qualifier;
};

struct OrderItem {
    ExpressionPtr expression;
    bool descending = false;
};

struct Top {
    std::uint64_t count = 0;
    bool percent = false;
};

/// One SELECT without the ORDER BY.
struct SelectCore {
    bool distinct = false;
    std::optional<Top> top;
    std::vector<SelectItem> items;
    std::vector<TableReference> from;
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
};

struct Query {
    std::vector<SelectCore> parts;  ///< more than one: a UNION
    std::vector<bool> all;          ///< for each part but the first: UNION ALL
    std::vector<OrderItem> orderBy;
};

struct InsertStatement {
    std::string table;
    std::vector<std::string> columns;   ///< empty: all
    std::vector<ExpressionPtr> values;  ///< or
    std::unique_ptr<Query> query;
};

struct Assignment {
    ExpressionPtr target;  ///< a Column
    ExpressionPtr value;
};

struct UpdateStatement {
    TableReference table;
    std::vector<Assignment> assignments;
    ExpressionPtr where;
};

struct DeleteStatement {
    std::string table;
    std::string alias;
    ExpressionPtr where;
};

struct CreateTableStatement {
    TableCreation table;
};

/// What a column definition or a constraint clause may add beside the column.
struct Constraints {
    std::vector<NewIndex> indexes;
    std::vector<ForeignKeyDefinition> foreignKeys;
};

struct AddColumnStatement {
    std::string table;
    ColumnDefinition column;
    Constraints constraints;
};

struct AlterColumnStatement {
    std::string table;
    ColumnDefinition column;
    Constraints constraints;
};

struct AddConstraintStatement {
    std::string table;
    Constraints constraints;
};

struct SetDefaultStatement {
    std::string table, column, text;
};

struct DropColumnStatement {
    std::string table, column;
};

struct DropConstraintStatement {
    std::string table, name;
};

struct CreateIndexStatement {
    std::string table;
    NewIndex index;
};

struct DropTableStatement {
    std::string table;
};

struct DropIndexStatement {
    std::string table, name;
};

enum class TransactionStatement : std::uint8_t { Begin, Commit, Rollback };

using Statement =
    std::variant<Query, InsertStatement, UpdateStatement, DeleteStatement, CreateTableStatement,
                 AddColumnStatement, AlterColumnStatement, AddConstraintStatement, SetDefaultStatement,
                 DropColumnStatement, DropConstraintStatement, CreateIndexStatement, DropTableStatement,
                 DropIndexStatement, TransactionStatement>;

}  // namespace tavrel::jet::sql
