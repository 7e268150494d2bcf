#include "jet/sql/syntax/SameTree.h"

#include <algorithm>

#include "text/Case.h"

namespace tavrel::jet::sql {

namespace {

bool Same(const Query& a, const Query& b);
bool Same(const SelectCore& a, const SelectCore& b);
bool Same(const SelectItem& a, const SelectItem& b);
bool Same(const OrderItem& a, const OrderItem& b);
bool Same(const TableReference& a, const TableReference& b);
bool Same(const Expression& a, const Expression& b);

bool Same(const std::string& a, const std::string& b) {
    return text::EqualIgnoringCase(a, b);
}

template <typename T>
bool Same(const std::unique_ptr<T>& a, const std::unique_ptr<T>& b) {
    return a == nullptr || b == nullptr ? a == b : Same(*a, *b);
}

template <typename T>
bool Same(const std::vector<T>& a, const std::vector<T>& b) {
    return std::ranges::equal(a, b, [](const T& left, const T& right) { return Same(left, right); });
}

bool Same(const SelectItem& a, const SelectItem& b) {
    return Same(a.expression, b.expression) && Same(a.alias, b.alias) && Same(a.qualifier, b.qualifier);
}

bool Same(const OrderItem& a, const OrderItem& b) {
    return a.descending == b.descending && Same(a.expression, b.expression);
}

bool Same(const std::optional<Top>& a, const std::optional<Top>& b) {
    return a && b ? a->count == b->count && a->percent == b->percent : a.has_value() == b.has_value();
}

bool Same(const SelectCore& a, const SelectCore& b) {
    return a.distinct == b.distinct && Same(a.top, b.top) && Same(a.items, b.items) && Same(a.from, b.from) &&
           Same(a.where, b.where) && Same(a.groupBy, b.groupBy) && Same(a.having, b.having);
}

bool Same(const Query& a, const Query& b) {
    return a.all == b.all && Same(a.parts, b.parts) && Same(a.orderBy, b.orderBy);
}

bool Same(const Expression& a, const Expression& b) {
    return a.kind == b.kind && a.op == b.op && a.negated == b.negated && a.literal == b.literal &&
           Same(a.qualifier, b.qualifier) && Same(a.name, b.name) && Same(a.arguments, b.arguments) &&
           Same(a.query, b.query);
}

bool Same(const TableReference& a, const TableReference& b) {
    return a.join == b.join && Same(a.name, b.name) && Same(a.alias, b.alias) && Same(a.query, b.query) &&
           Same(a.left, b.left) && Same(a.right, b.right) && Same(a.condition, b.condition);
}

}  // namespace

bool SameQuery(const Query& a, const Query& b) {
    return Same(a, b);
}

}  // namespace tavrel::jet::sql
