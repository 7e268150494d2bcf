#include "jet/sql/syntax/Parser.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::size_t kMaxLevel = 100;

/// Words that end an expression for the text of a message.
constexpr auto kClauseWords = std::to_array<std::string_view>(
    {"FROM", "WHERE", "GROUP", "HAVING", "ORDER", "UNION", "SET", "VALUES", "LEFT", "RIGHT", "INNER", "ON"});

}  // namespace

Parser::Level::Level(Parser& parser) : parser_(parser) {
    if (parser.level_ >= kMaxLevel) {
        throw MakeError(sqlErrors::kTooComplex);
    }
    ++parser.level_;
}

const Token& Parser::Peek(std::size_t ahead) const {
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

const Token& Parser::Take() {
    const Token& token = Peek();
    at_ = std::min(at_ + 1, tokens_.size() - 1);
    return token;
}

bool Parser::IsWord(std::string_view word, std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::Word && token.text == word;
}

bool Parser::IsSymbol(std::string_view symbol, std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::Symbol && token.source == symbol;
}

bool Parser::IsName(std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::QuotedName ||
           (token.kind == TokenKind::Word && !IsReservedWord(token.text));
}

/// A number or a text that is a whole value, as most are that rows are filled with.
bool Parser::IsLoneLiteral() const {
    const TokenKind kind = Peek().kind;
    return (kind == TokenKind::Number || kind == TokenKind::Text) && (IsSymbol(",", 1) || IsSymbol(")", 1));
}

bool Parser::AcceptWord(std::string_view word) {
    const bool found = IsWord(word);
    if (found) {
        Take();
    }
    return found;
}

bool Parser::AcceptWords(std::initializer_list<std::string_view> words) {
    std::size_t ahead = 0;
    for (const std::string_view word : words) {
        if (!IsWord(word, ahead++)) {
            return false;
        }
    }
    at_ += words.size();
    return true;
}

bool Parser::AcceptSymbol(std::string_view symbol) {
    const bool found = IsSymbol(symbol);
    if (found) {
        Take();
    }
    return found;
}

void Parser::ExpectWord(std::string_view word, std::int32_t error) {
    if (!AcceptWord(word)) {
        Fail(error);
    }
}

void Parser::ExpectSymbol(std::string_view symbol, std::int32_t error) {
    if (!AcceptSymbol(symbol)) {
        Fail(error);
    }
}

void Parser::ExpectEnd(std::int32_t error) const {
    if (!AtEnd() && !IsSymbol(";")) {
        Fail(error);
    }
}

std::string Parser::TakeName(std::int32_t error) {
    if (!IsName()) {
        Fail(error);
    }
    const Token& token = Take();
    return token.kind == TokenKind::QuotedName ? token.text : std::string(token.source);
}

std::vector<std::string> Parser::TakeNames(std::int32_t error) {
    ExpectSymbol("(", error);
    std::vector<std::string> names;
    do {
        names.push_back(TakeName(error));
    } while (AcceptSymbol(","));
    ExpectSymbol(")", error);
    return names;
}

std::int32_t Parser::TakeInteger(std::int32_t error) {
    const bool negative = AcceptSymbol("-");
    const std::string_view digits = Peek().source;
    std::int32_t number = 0;
    const auto [end, code] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (Peek().kind != TokenKind::Number || code != std::errc{} || end != digits.data() + digits.size()) {
        Fail(error);
    }
    Take();
    return negative ? -number : number;
}

std::string_view Parser::SourceFrom(std::size_t firstToken) const {
    const std::string_view first = tokens_[firstToken].source;
    const std::string_view last = tokens_[at_ > firstToken ? at_ - 1 : firstToken].source;
    return {first.data(), static_cast<std::size_t>(last.data() + last.size() - first.data())};
}

void Parser::Fail(std::int32_t error) const {
    if (Peek().kind == TokenKind::OpenText) {
        FailInExpression(kStringSyntax);
    }
    if (error == sqlErrors::kInExpression) {
        FailInExpression(kMissingOperator);
    }
    throw MakeError(error);
}

void Parser::FailBehindExpression(std::int32_t errorAtEnd) const {
    if (AtEnd()) {
        Fail(errorAtEnd);
    }
    FailInExpression(Peek().kind == TokenKind::OpenText ? kStringSyntax : kMissingOperator);
}

void Parser::FailInExpression(std::string_view reason) const {
    throw MakeError(sqlErrors::kInExpression, {reason, ExpressionText()});
}

std::string Parser::ExpressionText() const {
    const std::size_t first = sawExpression_ ? expressionStart_ : at_;
    std::size_t behind = first;
    int open = 0;
    for (; behind < tokens_.size() && tokens_[behind].kind != TokenKind::End; ++behind) {
        const Token& token = tokens_[behind];
        const bool symbol = token.kind == TokenKind::Symbol;
        open += symbol && token.source == "(" ? 1 : 0;
        open -= symbol && token.source == ")" ? 1 : 0;
        const bool separator = symbol && (token.source == ";" || (token.source == "," && open == 0));
        const bool clause = token.kind == TokenKind::Word && open == 0 && behind > first &&
                            std::ranges::find(kClauseWords, token.text) != kClauseWords.end();
        if (open < 0 || separator || clause) {
            break;
        }
    }
    if (behind == first) {
        return std::string(tokens_[first].source);
    }
    const std::string_view last = tokens_[behind - 1].source;
    return {tokens_[first].source.data(), last.data() + last.size()};
}

}  // namespace tavrel::jet::sql
