#include <algorithm>
#include <charconv>
#include <utility>

#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/Dates.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

constexpr unsigned kMaxDepth = 1000;

struct OperatorSymbol {
    std::string_view symbol;
    BinaryOperator op;
};
constexpr OperatorSymbol kComparisons[] = {
    {"=", BinaryOperator::Equal},        {"<>", BinaryOperator::NotEqual},
    {"<=", BinaryOperator::LessOrEqual}, {">=", BinaryOperator::GreaterOrEqual},
    {"<", BinaryOperator::Less},         {">", BinaryOperator::Greater}};

/// Operators below the comparisons, loosest first.
struct LeveledOperator {
    std::size_t level;
    std::string_view symbol;
    BinaryOperator op;
};
constexpr LeveledOperator kArithmetic[] = {
    {0, "&", BinaryOperator::Concatenate}, {1, "+", BinaryOperator::Add},
    {1, "-", BinaryOperator::Subtract},    {2, "*", BinaryOperator::Multiply},
    {2, "/", BinaryOperator::Divide},      {2, "\\", BinaryOperator::IntegerDivide},
    {2, "MOD", BinaryOperator::Modulo}};
constexpr std::size_t kLevels = 3;

constexpr std::string_view kAggregates[] = {"COUNT", "MIN", "MAX", "SUM", "AVG", "FIRST", "LAST"};

struct WordLiteral {
    std::string_view word;
    Value value;
};
const WordLiteral* FindWordLiteral(std::string_view word) {
    static const WordLiteral kWords[] = {{"NULL", Null{}}, {"TRUE", true}, {"YES", true}, {"ON", true},
                                         {"FALSE", false}, {"NO", false},  {"OFF", false}};
    const auto* found = std::ranges::find(kWords, word, &WordLiteral::word);
    return found == std::end(kWords) ? nullptr : found;
}

}  // namespace

ExpressionPtr ParseDefault(std::string_view text) {
    return Parser(text).ParseOneExpression(sqlErrors::kDefaultSyntax);
}

ExpressionPtr Parser::ParseOneExpression(std::int32_t error) {
    ExpressionPtr expression = ParseExpression(error);
    if (!AtEnd()) {
        throw MakeError(error);
    }
    return expression;
}

ExpressionPtr Parser::Finish(ExpressionPtr node, std::size_t firstToken) const {
    node->holdsQuery = node->query != nullptr;
    for (const ExpressionPtr& argument : node->arguments) {
        node->holdsQuery |= argument->holdsQuery;
        node->depth = std::max(node->depth, argument->depth + 1);
    }
    if (node->depth > kMaxDepth) {
        throw MakeError(sqlErrors::kTooComplex);
    }
    node->source = SourceFrom(firstToken);
    return node;
}

ExpressionPtr Parser::Combine(ExpressionKind kind, std::vector<ExpressionPtr> arguments,
                              std::size_t firstToken) const {
    auto node = std::make_unique<Expression>();
    node->kind = kind;
    node->arguments = std::move(arguments);
    return Finish(std::move(node), firstToken);
}

ExpressionPtr Parser::CombineBinary(BinaryOperator op, ExpressionPtr left, ExpressionPtr right,
                                    std::size_t firstToken) const {
    auto node = std::make_unique<Expression>();
    node->kind = ExpressionKind::Binary;
    node->op = op;
    node->arguments.push_back(std::move(left));
    node->arguments.push_back(std::move(right));
    return Finish(std::move(node), firstToken);
}

ExpressionPtr Parser::ParseExpression(std::int32_t emptyError) {
    const bool outermost = !inExpression_;
    if (outermost) {
        expressionStart_ = at_;
        sawExpression_ = true;
        const Token& first = Peek();
        const bool literal = first.kind == TokenKind::Word && FindWordLiteral(first.text) != nullptr;
        const bool starts = first.kind != TokenKind::Word || !IsReservedWord(first.text) || literal ||
                            IsWord("NOT") || IsWord("EXISTS") || IsSymbol("(", 1);
        if (!starts || AtEnd() || IsSymbol(",") || IsSymbol(")")) {
            sawExpression_ = false;
            Fail(emptyError);
        }
    }
    inExpression_ = true;
    ExpressionPtr expression = ParseDisjunction();
    inExpression_ = !outermost;
    return expression;
}

std::vector<ExpressionPtr> Parser::ParseExpressions(std::int32_t emptyError) {
    std::vector<ExpressionPtr> list;
    do {
        list.push_back(ParseExpression(emptyError));
    } while (AcceptSymbol(","));
    return list;
}

ExpressionPtr Parser::ParseDisjunction() {
    const Level level(*this);
    if (IsLoneLiteral()) {
        return ParsePrimary();
    }
    const std::size_t first = at_;
    ExpressionPtr left = ParseConjunction();
    while (IsWord("OR") || IsWord("XOR")) {
        const BinaryOperator op = Take().text == "OR" ? BinaryOperator::Or : BinaryOperator::Xor;
        left = CombineBinary(op, std::move(left), ParseConjunction(), first);
    }
    return left;
}

ExpressionPtr Parser::ParseConjunction() {
    const std::size_t first = at_;
    ExpressionPtr left = ParseNegation();
    while (AcceptWord("AND")) {
        left = CombineBinary(BinaryOperator::And, std::move(left), ParseNegation(), first);
    }
    return left;
}

ExpressionPtr Parser::ParseNegation() {
    const std::size_t first = at_;
    std::size_t count = 0;
    while (AcceptWord("NOT")) {
        ++count;
    }
    ExpressionPtr operand = ParseComparison();
    if (count % 2 == 0) {
        return operand;
    }
    std::vector<ExpressionPtr> arguments;
    arguments.push_back(std::move(operand));
    return Combine(ExpressionKind::Not, std::move(arguments), first);
}

ExpressionPtr Parser::ParseComparison() {
    const std::size_t first = at_;
    ExpressionPtr left = ParseBinaryLevel(0);
    for (const OperatorSymbol& comparison : kComparisons) {
        if (AcceptSymbol(comparison.symbol)) {
            return CombineBinary(comparison.op, std::move(left), ParseBinaryLevel(0), first);
        }
    }
    return ParsePredicate(std::move(left), first);
}

/// IS NULL, LIKE, BETWEEN, IN behind an operand, or the operand alone.
ExpressionPtr Parser::ParsePredicate(ExpressionPtr left, std::size_t first) {
    std::vector<ExpressionPtr> arguments;
    ExpressionPtr node;
    bool negated = false;
    if (AcceptWord("IS")) {
        negated = AcceptWord("NOT");
        if (!AcceptWord("NULL")) {
            FailBehindExpression(sqlErrors::kInExpression);
        }
        arguments.push_back(std::move(left));
        node = Combine(ExpressionKind::IsNull, std::move(arguments), first);
    } else {
        negated = AcceptWord("NOT");
        if (AcceptWord("LIKE")) {
            arguments.push_back(std::move(left));
            arguments.push_back(ParseBinaryLevel(0));
            node = Combine(ExpressionKind::Like, std::move(arguments), first);
        } else if (AcceptWord("BETWEEN")) {
            arguments.push_back(std::move(left));
            arguments.push_back(ParseBinaryLevel(0));
            if (!AcceptWord("AND")) {
                FailBehindExpression(sqlErrors::kInExpression);
            }
            arguments.push_back(ParseBinaryLevel(0));
            node = Combine(ExpressionKind::Between, std::move(arguments), first);
        } else if (AcceptWord("IN")) {
            node = Finish(ParseIn(std::move(left)), first);
        } else if (negated) {
            FailBehindExpression(sqlErrors::kInExpression);
        } else {
            return left;
        }
    }
    node->negated = negated;
    return node;
}

ExpressionPtr Parser::ParseIn(ExpressionPtr left) {
    auto node = std::make_unique<Expression>();
    node->arguments.push_back(std::move(left));
    if (IsSymbol("(") && StartsQuery(1)) {
        node->kind = ExpressionKind::InQuery;
        node->query = ParseQueryInParentheses(sqlErrors::kInExpression);
        return node;
    }
    node->kind = ExpressionKind::In;
    if (!AcceptSymbol("(")) {
        FailBehindExpression(sqlErrors::kInExpression);
    }
    std::ranges::move(ParseExpressions(sqlErrors::kInExpression), std::back_inserter(node->arguments));
    if (!AcceptSymbol(")")) {
        FailBehindExpression(sqlErrors::kInExpression);
    }
    return node;
}

ExpressionPtr Parser::ParseBinaryLevel(std::size_t level) {
    if (level == kLevels) {
        return ParseSign();
    }
    const std::size_t first = at_;
    ExpressionPtr left = ParseBinaryLevel(level + 1);
    for (;;) {
        const auto* found =
            std::ranges::find_if(kArithmetic, [this, level](const LeveledOperator& candidate) {
                return candidate.level == level && (IsSymbol(candidate.symbol) || IsWord(candidate.symbol));
            });
        if (found == std::end(kArithmetic)) {
            return left;
        }
        Take();
        left = CombineBinary(found->op, std::move(left), ParseBinaryLevel(level + 1), first);
    }
}

ExpressionPtr Parser::ParseSign() {
    const std::size_t first = at_;
    bool negative = false;
    while (IsSymbol("+") || IsSymbol("-")) {
        negative ^= Take().source == "-";
    }
    ExpressionPtr operand = ParsePrimary();
    if (!negative) {
        return operand;
    }
    std::vector<ExpressionPtr> arguments;
    arguments.push_back(std::move(operand));
    return Combine(ExpressionKind::Negate, std::move(arguments), first);
}

ExpressionPtr Parser::ParsePrimary() {
    const std::size_t first = at_;
    switch (Peek().kind) {
        case TokenKind::Number:
            return Finish(ParseNumber(), first);
        case TokenKind::Date:
            return Finish(ParseDate(), first);
        case TokenKind::Text:
            return Finish(ParseLiteral(), first);
        case TokenKind::Identity:
            Take();
            return Combine(ExpressionKind::Identity, {}, first);
        case TokenKind::Word:
            return Finish(ParseWordPrimary(), first);
        case TokenKind::QuotedName:
            return Finish(ParseColumnName(), first);
        default:
            break;
    }
    if (IsSymbol("(") && StartsQuery(1)) {
        auto node = std::make_unique<Expression>();
        node->kind = ExpressionKind::Scalar;
        node->query = ParseQueryInParentheses(sqlErrors::kInExpression);
        return Finish(std::move(node), first);
    }
    if (!AcceptSymbol("(")) {
        FailBehindExpression(sqlErrors::kInExpression);
    }
    ExpressionPtr inner = ParseExpression(sqlErrors::kInExpression);
    if (!AcceptSymbol(")")) {
        FailBehindExpression(sqlErrors::kInExpression);
    }
    inner->source = SourceFrom(first);
    return inner;
}

ExpressionPtr Parser::ParseLiteral() {
    auto node = std::make_unique<Expression>();
    const Token& token = Take();
    node->literal = token.kind == TokenKind::Text ? Value(token.text) : FindWordLiteral(token.text)->value;
    return node;
}

/// Whole numbers that fit are Long, the others Double; leading zeros mean nothing.
ExpressionPtr Parser::ParseNumber() {
    auto node = std::make_unique<Expression>();
    std::string_view digits = Take().source;
    const bool hexadecimal = digits.starts_with('&');
    digits.remove_prefix(hexadecimal ? 2 : 0);
    const char* const end = digits.data() + digits.size();
    std::uint32_t whole = 0;
    const auto result = std::from_chars(digits.data(), end, whole, hexadecimal ? 16 : 10);
    if (result.ec == std::errc{} && result.ptr == end && (hexadecimal || whole <= 0x7FFFFFFF)) {
        node->literal = std::int64_t{static_cast<std::int32_t>(whole)};
        return node;
    }
    double number = 0;
    if (hexadecimal || std::from_chars(digits.data(), end, number).ec != std::errc{}) {
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    node->literal = number;
    return node;
}

ExpressionPtr Parser::ParseDate() {
    auto node = std::make_unique<Expression>();
    const auto date = ParseDateText(Peek().text, DateOrder::MonthFirst);
    if (!date) {
        FailInExpression(kDateSyntax);
    }
    Take();
    node->literal = *date;
    return node;
}

ExpressionPtr Parser::ParseWordPrimary() {
    const std::string& word = Peek().text;
    if (AcceptWords({"EXISTS"})) {
        auto node = std::make_unique<Expression>();
        node->kind = ExpressionKind::Exists;
        node->query = ParseQueryInParentheses(sqlErrors::kInExpression);
        return node;
    }
    if (IsSymbol("(", 1) && (!IsReservedWord(word) || word == "LEFT" || word == "RIGHT")) {
        return ParseCall();
    }
    if (FindWordLiteral(word) != nullptr && !IsSymbol(".", 1)) {
        return ParseLiteral();
    }
    if (IsReservedWord(word)) {
        FailBehindExpression(sqlErrors::kInExpression);
    }
    return ParseColumnName();
}

ExpressionPtr Parser::ParseCall() {
    const std::size_t first = at_;
    auto node = std::make_unique<Expression>();
    node->kind = ExpressionKind::Function;
    const Token& name = Take();
    node->name = name.text;
    Take();
    const bool wasInExpression = std::exchange(inExpression_, true);
    const bool aggregate =
        name.kind == TokenKind::Word && std::ranges::find(kAggregates, node->name) != std::end(kAggregates);
    if (aggregate && node->name == "COUNT" && IsSymbol("*") && IsSymbol(")", 1)) {
        Take();
    } else if (!IsSymbol(")")) {
        node->arguments = ParseExpressions(sqlErrors::kInExpression);
    } else if (aggregate) {
        FailBehindExpression(sqlErrors::kInExpression);
    }
    if (!AcceptSymbol(")") || (aggregate && node->arguments.size() > 1)) {
        FailBehindExpression(sqlErrors::kInExpression);
    }
    inExpression_ = wasInExpression;
    node->kind = aggregate ? ExpressionKind::Aggregate : ExpressionKind::Function;
    return Finish(std::move(node), first);
}

ExpressionPtr Parser::ParseColumnName() {
    auto node = std::make_unique<Expression>();
    node->kind = ExpressionKind::Column;
    const std::size_t first = at_;
    node->name = TakeName(sqlErrors::kInExpression);
    if (AcceptSymbol(".") || AcceptSymbol("!")) {
        node->qualifier = std::move(node->name);
        node->name = TakeName(sqlErrors::kInExpression);
    }
    return Finish(std::move(node), first);
}

}  // namespace tavrel::jet::sql
