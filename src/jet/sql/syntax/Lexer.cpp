#include <algorithm>
#include <array>

#include "jet/sql/syntax/Token.h"
#include "text/Case.h"
#include "text/LeadingNumber.h"

namespace tavrel::jet::sql {

namespace {

// Sorted, for binary search.
constexpr auto kReserved = std::to_array<std::string_view>(
    {"ADD",     "ALL",        "ALTER",  "AND",     "ANY",        "AS",       "BETWEEN", "BY",
     "COLUMN",  "CONSTRAINT", "CREATE", "DEFAULT", "DELETE",     "DISTINCT", "DROP",    "EXISTS",
     "FOREIGN", "FROM",       "GROUP",  "HAVING",  "IN",         "INDEX",    "INNER",   "INSERT",
     "INTO",    "IS",         "JOIN",   "KEY",     "LEFT",       "LIKE",     "NOT",     "NULL",
     "ON",      "OR",         "ORDER",  "PRIMARY", "REFERENCES", "RIGHT",    "SELECT",  "SET",
     "TABLE",   "TOP",        "UNION",  "UNIQUE",  "UPDATE",     "VALUES",   "WHERE"});
static_assert(std::ranges::is_sorted(kReserved));

constexpr std::string_view kIdentity = "@@IDENTITY";
constexpr auto kTwoCharacterSymbols = std::to_array<std::string_view>({"<>", "<=", ">="});
constexpr std::string_view kSymbols = "=<>+-*/\\&(),.;!";

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
using text::IsDigit;
bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
/// Letters of any script: whatever is beyond ASCII counts as one.
bool StartsName(char c) {
    return c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           static_cast<unsigned char>(c) >= 0x80;
}
bool ContinuesName(char c) {
    return StartsName(c) || IsDigit(c);
}

char AsciiUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

class Lexer {
  public:
    explicit Lexer(std::string_view statement) : rest_(statement) {}

    std::deque<Token> Run() {
        while (tokens_.empty() || !IsLast(tokens_.back().kind)) {
            tokens_.push_back(Next());
        }
        if (tokens_.back().kind != TokenKind::End) {
            tokens_.push_back({TokenKind::End, rest_.substr(rest_.size()), {}});
        }
        return std::move(tokens_);
    }

  private:
    static bool IsLast(TokenKind kind) {
        return kind == TokenKind::End || kind == TokenKind::OpenText || kind == TokenKind::Unknown;
    }

    Token Next() {
        while (!rest_.empty() && IsBlank(rest_.front())) {
            rest_.remove_prefix(1);
        }
        if (rest_.empty()) {
            return {TokenKind::End, rest_, {}};
        }
        const char first = rest_.front();
        switch (first) {
            case '\'':
            case '"':
                return Quoted(TokenKind::Text, first, true);
            case '`':
                return Quoted(TokenKind::QuotedName, '`', false);
            case '[':
                return Quoted(TokenKind::QuotedName, ']', false);
            case '#':
                return Quoted(TokenKind::Date, '#', false);
            default:
                return StartsName(first) ? Word() : NumberOrSymbol();
        }
    }

    Token Take(TokenKind kind, std::size_t length) {
        const std::string_view source = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return {kind, source, std::string(source)};
    }

    Token Word() {
        std::size_t length = 1;
        while (length < rest_.size() && ContinuesName(rest_[length])) {
            ++length;
        }
        Token token = Take(TokenKind::Word, length);
        if (std::ranges::any_of(token.text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
            token.text = text::Upper(token.source);
        } else {
            std::ranges::transform(token.text, token.text.begin(), AsciiUpper);
        }
        return token;
    }

    /// `doubled`: the closing character written twice stands for itself.
    Token Quoted(TokenKind kind, char close, bool doubled) {
        std::string content;
        std::size_t from = 1;
        for (std::size_t at = rest_.find(close, from); at != rest_.npos; at = rest_.find(close, from)) {
            content += rest_.substr(from, at - from);
            if (!doubled || at + 1 == rest_.size() || rest_[at + 1] != close) {
                const std::string_view source = rest_.substr(0, at + 1);
                rest_.remove_prefix(at + 1);
                return {kind, source, std::move(content)};
            }
            content += close;
            from = at + 2;
        }
        return Take(TokenKind::OpenText, rest_.size());
    }

    Token NumberOrSymbol() {
        if (const std::size_t length = NumberLength(); length > 0) {
            return Take(TokenKind::Number, length);
        }
        if (rest_.front() == '@' && text::EqualIgnoringCase(rest_.substr(0, kIdentity.size()), kIdentity)) {
            return Take(TokenKind::Identity, kIdentity.size());
        }
        for (const std::string_view symbol : kTwoCharacterSymbols) {
            if (rest_.starts_with(symbol)) {
                return Take(TokenKind::Symbol, symbol.size());
            }
        }
        return Take(kSymbols.find(rest_.front()) != kSymbols.npos ? TokenKind::Symbol : TokenKind::Unknown,
                    1);
    }

    [[nodiscard]] std::size_t NumberLength() const {
        if (IsHexNumber()) {
            return 2 + Run(2, IsHexDigit);
        }
        const std::size_t whole = Run(0, IsDigit);
        std::size_t length = whole;
        if (length < rest_.size() && rest_[length] == '.') {
            const std::size_t fraction = Run(length + 1, IsDigit);
            if (whole == 0 && fraction == 0) {
                return 0;
            }
            length += 1 + fraction;
        }
        return length == 0 ? 0 : length + ExponentLength(length);
    }

    [[nodiscard]] std::size_t ExponentLength(std::size_t at) const {
        if (at >= rest_.size() || (rest_[at] != 'E' && rest_[at] != 'e')) {
            return 0;
        }
        const std::size_t sign =
            at + 1 < rest_.size() && (rest_[at + 1] == '+' || rest_[at + 1] == '-') ? 1 : 0;
        const std::size_t digits = Run(at + 1 + sign, IsDigit);
        return digits == 0 ? 0 : 1 + sign + digits;
    }

    /// Behind an operand the & joins texts.
    [[nodiscard]] bool IsHexNumber() const {
        return rest_.size() > 2 && rest_[0] == '&' && (rest_[1] == 'H' || rest_[1] == 'h') &&
               IsHexDigit(rest_[2]) && !BehindOperand();
    }

    [[nodiscard]] bool BehindOperand() const {
        if (tokens_.empty()) {
            return false;
        }
        const Token& last = tokens_.back();
        return last.kind == TokenKind::Word ? !IsReservedWord(last.text)
                                            : last.kind != TokenKind::Symbol || last.source == ")";
    }

    /// Number of characters of a kind from a place on.
    std::size_t Run(std::size_t from, bool (*isKind)(char)) const {
        std::size_t at = from;
        while (at < rest_.size() && isKind(rest_[at])) {
            ++at;
        }
        return at - from;
    }

    std::string_view rest_;
    std::deque<Token> tokens_;  ///< in small pieces, which memory is found for faster than for one that grows
};

}  // namespace

std::deque<Token> Tokenize(std::string_view statement) {
    return Lexer(statement).Run();
}

bool IsReservedWord(std::string_view upperWord) {
    return std::ranges::binary_search(kReserved, upperWord);
}

}  // namespace tavrel::jet::sql
