#include "jet/sql/statement/Defaults.h"

#include <charconv>

#include "jet/sql/plan/Binder.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"

namespace tavrel::jet::sql {

namespace {

std::string_view WithoutEqualsSign(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first != std::string_view::npos && text[first] == '=') {
        text.remove_prefix(first + 1);
    }
    return text;
}

/// Whole numbers and quoted texts, which nearly all defaults are: rows are inserted one by one, and each asks
/// for them.
std::optional<Value> PlainDefault(std::string_view text) {
    std::int32_t number = 0;
    const char* const end = text.data() + text.size();
    if (const auto result = std::from_chars(text.data(), end, number);
        result.ec == std::errc{} && result.ptr == end) {
        return std::int64_t{number};
    }
    const bool quoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
    const std::string_view inside = quoted ? text.substr(1, text.size() - 2) : text;
    return quoted && inside.find(text.front()) == std::string_view::npos
               ? std::optional<Value>(std::string(inside))
               : std::nullopt;
}

}  // namespace

NodePtr CompileDefault(Context& context, std::string_view text, std::string_view column) {
    if (auto plain = PlainDefault(text)) {
        return MakeConstant(std::move(*plain));
    }
    ExpressionPtr expression;
    try {
        expression = ParseDefault(WithoutEqualsSign(text));
    } catch (const Error&) {
        throw MakeError(sqlErrors::kDefaultSyntax, {}, text);
    }
    if (expression->holdsQuery) {
        throw MakeError(sqlErrors::kDefaultSyntax, {}, text);
    }
    if (expression->kind == ExpressionKind::Column && expression->qualifier.empty()) {
        expression->kind = ExpressionKind::Function;
        expression->name = text::Upper(expression->name);
    }
    Context own{context.workspace, 0, {}};
    Scope nothing;
    NodePtr node;
    try {
        node = Binder(own, nothing).Bind(*expression);
    } catch (const Error& error) {
        if (error.Number() != sqlErrors::kUnknownFunction && error.Number() != sqlErrors::kAggregateInWhere) {
            throw;
        }
        throw MakeError(sqlErrors::kUnknownDefaultFunction, {expression->source, column});
    }
    if (!own.missingNames.empty()) {
        throw MakeError(sqlErrors::kUnknownDefaultFunction, {own.missingNames.front(), column});
    }
    return node;
}

}  // namespace tavrel::jet::sql
