// What a statement is made of.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace tavrel::jet::sql {

enum class TokenKind : std::uint8_t {
    End,
    Word,        ///< a bare name or keyword
    QuotedName,  ///< [name] or `name`
    Number,
    Text,      ///< '…' or "…"
    Date,      ///< #…#
    Symbol,    ///< operators and punctuation
    Identity,  ///< @@IDENTITY
    OpenText,  ///< a text or quoted name whose end is missing
    Unknown    ///< a character that means nothing
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string_view source;  ///< as written, inside the statement
    std::string text;  ///< Word: in upper case; QuotedName, Text, Date: without quotes; else as written
};

/// All tokens, the last one End.  Never throws: what cannot be a token is OpenText or Unknown, and End
/// follows it. The statement must outlive the tokens.
std::deque<Token> Tokenize(std::string_view statement);

/// True for words that can never be a bare name.
bool IsReservedWord(std::string_view upperWord);

}  // namespace tavrel::jet::sql
