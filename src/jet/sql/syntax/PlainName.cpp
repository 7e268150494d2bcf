#include "jet/sql/syntax/PlainName.h"

#include "jet/sql/syntax/Parser.h"

namespace tavrel::jet::sql {

bool IsTableName(std::string_view text) {
    const std::deque<Token> tokens = Tokenize(text);
    const Token& first = tokens.front();
    const bool bare = first.kind == TokenKind::Word && !IsReservedWord(first.text);
    return (bare || first.kind == TokenKind::QuotedName) && tokens[1].kind == TokenKind::End;
}

bool IsColumnName(std::string_view text) {
    return IsTableName(text) && ParseDefault(text)->kind == ExpressionKind::Column;
}

}  // namespace tavrel::jet::sql
