// Numbers that statements raise (beside those in text/Error.h).
#pragma once

#include <cstdint>
#include <string_view>

namespace tavrel::jet::sql::sqlErrors {

inline constexpr std::int32_t kInvalidCall = 5;
inline constexpr std::int32_t kDivisionByZero = 11;
inline constexpr std::int32_t kNoTransaction = 3034;
inline constexpr std::int32_t kTooComplex = 3035;
inline constexpr std::int32_t kMissingParameter = 3061;
inline constexpr std::int32_t kNotUpdateableQuery = 3073;
inline constexpr std::int32_t kInExpression = 3075;  ///< "|1 in query expression '|2'"
inline constexpr std::int32_t kAmbiguousName = 3079;
inline constexpr std::int32_t kUnknownFunction = 3085;
inline constexpr std::int32_t kAggregateInWhere = 3096;
inline constexpr std::int32_t kNotUpdateable = 3113;
inline constexpr std::int32_t kNotInAggregate = 3122;
inline constexpr std::int32_t kUnknownInsertField = 3127;
inline constexpr std::int32_t kNoSqlVerb = 3129;
inline constexpr std::int32_t kInDelete = 3130;
inline constexpr std::int32_t kInFrom = 3131;
inline constexpr std::int32_t kInInsert = 3134;
inline constexpr std::int32_t kInJoin = 3135;
inline constexpr std::int32_t kInOrderBy = 3138;
inline constexpr std::int32_t kInSelectList = 3141;
inline constexpr std::int32_t kAfterEnd = 3142;
inline constexpr std::int32_t kInUpdate = 3144;
inline constexpr std::int32_t kNoOutputTable = 3192;
inline constexpr std::int32_t kInConstraint = 3289;
inline constexpr std::int32_t kInCreateTable = 3290;
inline constexpr std::int32_t kInCreateIndex = 3291;
inline constexpr std::int32_t kInFieldDefinition = 3292;
inline constexpr std::int32_t kInAlterTable = 3293;
inline constexpr std::int32_t kInDrop = 3295;
inline constexpr std::int32_t kSubqueryColumns = 3306;
inline constexpr std::int32_t kUnionColumns = 3307;
inline constexpr std::int32_t kValueCount = 3346;
inline constexpr std::int32_t kNumberOverflow = 3349;
inline constexpr std::int32_t kSubqueryRows = 3354;
inline constexpr std::int32_t kDefaultSyntax = 3355;
inline constexpr std::int32_t kFieldSizeTooLong = 3382;
inline constexpr std::int32_t kUnknownDefaultFunction = 3388;
inline constexpr std::int32_t kTypesInExpression = 3615;
inline constexpr std::int32_t kInTransaction = 3708;
inline constexpr std::int32_t kBothNulls = 3806;

}  // namespace tavrel::jet::sql::sqlErrors

namespace tavrel::jet::sql {

// What can be wrong with an expression: the first argument of 3075.
inline constexpr std::string_view kMissingOperator = "구문 오류(연산자 없음)";
inline constexpr std::string_view kStringSyntax = "문자열의 구문 오류";
inline constexpr std::string_view kDateSyntax = "날짜의 구문 오류";
inline constexpr std::string_view kArgumentCount = "함수의 인수 개수 오류";

}  // namespace tavrel::jet::sql
