#include "jet/sql/expression/Arithmetic.h"

#include <cmath>
#include <limits>

#include "jet/catalog/NumberConversion.h"
#include "jet/sql/values/DecimalArithmetic.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

bool IsWhole(ColumnType type) {
    return type == ColumnType::Boolean || type == ColumnType::Byte || type == ColumnType::Integer ||
           type == ColumnType::Long;
}

/// The wider of two number types.
ColumnType Promoted(ColumnType a, ColumnType b) {
    if (a == b && !IsWhole(a)) {
        return a;
    }
    if (IsWhole(a) && IsWhole(b)) {
        return ColumnType::Long;
    }
    const auto exact = [](ColumnType type) {
        return IsWhole(type) || type == ColumnType::Currency || type == ColumnType::Numeric;
    };
    if (exact(a) && exact(b)) {
        return a == ColumnType::Numeric || b == ColumnType::Numeric ? ColumnType::Numeric
                                                                    : ColumnType::Currency;
    }
    return ColumnType::Double;
}

ColumnType WithDate(BinaryOperator op, ColumnType left, ColumnType right) {
    const bool both = left == ColumnType::Date && right == ColumnType::Date;
    if (op == BinaryOperator::Add || (op == BinaryOperator::Subtract && !both)) {
        return ColumnType::Date;
    }
    return ColumnType::Double;
}

void SetLong(Value& out, std::int64_t result) {
    if (result < std::numeric_limits<std::int32_t>::min() ||
        result > std::numeric_limits<std::int32_t>::max()) {
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    out = result;
}

void SetDouble(Value& out, double result) {
    if (!std::isfinite(result)) {
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    out = result;
}

bool StaysWhole(BinaryOperator op) {
    return op == BinaryOperator::Add || op == BinaryOperator::Subtract || op == BinaryOperator::Multiply;
}

std::int64_t WholeResult(BinaryOperator op, std::int64_t left, std::int64_t right) {
    switch (op) {
        case BinaryOperator::Add:
            return left + right;
        case BinaryOperator::Subtract:
            return left - right;
        default:
            return left * right;
    }
}

double DoubleResult(BinaryOperator op, double left, double right) {
    switch (op) {
        case BinaryOperator::Add:
            return left + right;
        case BinaryOperator::Subtract:
            return left - right;
        case BinaryOperator::Multiply:
            return left * right;
        default:
            if (right == 0) {
                throw MakeError(sqlErrors::kDivisionByZero);
            }
            return left / right;
    }
}

Decimal DecimalResult(BinaryOperator op, const Value& left, const Value& right) {
    const auto decimal = [](const Value& value) {
        const auto* exact = std::get_if<Decimal>(&value);
        const auto* money = std::get_if<Currency>(&value);
        return exact != nullptr   ? *exact
               : money != nullptr ? DecimalOf(*money)
                                  : ToDecimal(value, kDecimalDigits, 0);
    };
    Decimal second = decimal(right);
    if (op == BinaryOperator::Multiply) {
        return MultiplyDecimals(decimal(left), second);
    }
    second.negative ^= op == BinaryOperator::Subtract;
    return AddDecimals(decimal(left), second);
}

/// \ and MOD round their operands first and cut towards zero.
void CalculateWhole(BinaryOperator op, const Value& left, const Value& right, Value& out) {
    const std::int64_t dividend = LongOf(left);
    const std::int64_t divisor = LongOf(right);
    if (divisor == 0) {
        throw MakeError(sqlErrors::kDivisionByZero);
    }
    SetLong(out, op == BinaryOperator::Modulo ? dividend % divisor : dividend / divisor);
}

void JoinTexts(const Value& left, const Value& right, Value& out) {
    std::string joined = std::get<std::string>(left) + std::get<std::string>(right);
    out = std::move(joined);
}

}  // namespace

StaticType ArithmeticType(BinaryOperator op, StaticType left, StaticType right) {
    const Family leftFamily = FamilyOf(left);
    const Family rightFamily = FamilyOf(right);
    const auto isNoNumber = [](Family family) { return family == Family::Bytes || family == Family::Guid; };
    if (isNoNumber(leftFamily) || isNoNumber(rightFamily)) {
        throw MakeError(errors::kTypeMismatch);
    }
    if (op == BinaryOperator::IntegerDivide || op == BinaryOperator::Modulo) {
        return ColumnType::Long;
    }
    if (!left || !right) {
        return std::nullopt;
    }
    if (leftFamily == Family::Text || rightFamily == Family::Text) {
        const bool joins = op == BinaryOperator::Add && leftFamily == rightFamily;
        return joins ? ColumnType::Text : ColumnType::Double;
    }
    if (*left == ColumnType::Date || *right == ColumnType::Date) {
        return WithDate(op, *left, *right);
    }
    return op == BinaryOperator::Divide ? ColumnType::Double : Promoted(*left, *right);
}

void Calculate(BinaryOperator op, const Value& left, const Value& right, Value& out) {
    if (IsNull(left) || IsNull(right)) {
        out = Null{};
        return;
    }
    const auto* first = std::get_if<std::int64_t>(&left);
    const auto* second = std::get_if<std::int64_t>(&right);
    if (first != nullptr && second != nullptr && StaysWhole(op)) {
        return SetLong(out, WholeResult(op, *first, *second));  // most columns are whole numbers
    }
    switch (ArithmeticType(op, TypeOf(left), TypeOf(right)).value_or(ColumnType::Double)) {
        case ColumnType::Long:
            if (op == BinaryOperator::IntegerDivide || op == BinaryOperator::Modulo) {
                return CalculateWhole(op, left, right, out);
            }
            return SetLong(out, WholeResult(op, ToInteger(left), ToInteger(right)));
        case ColumnType::Text:
            return JoinTexts(left, right, out);
        case ColumnType::Date:
            SetDouble(out, DoubleResult(op, NumberOf(left), NumberOf(right)));
            out = Date{std::get<double>(out)};
            return;
        case ColumnType::Single:
            out = static_cast<float>(DoubleResult(op, NumberOf(left), NumberOf(right)));
            return;
        case ColumnType::Currency:
            out = CurrencyOf(DecimalResult(op, left, right));
            return;
        case ColumnType::Numeric:
            out = DecimalResult(op, left, right);
            return;
        default:
            return SetDouble(out, DoubleResult(op, NumberOf(left), NumberOf(right)));
    }
}

void Negate(const Value& value, Value& out) {
    if (const auto* date = std::get_if<Date>(&value)) {
        out = -date->days;
    } else {
        Calculate(BinaryOperator::Subtract, std::int64_t{0}, value, out);
    }
}

}  // namespace tavrel::jet::sql
