// Differences in the users' words.
#pragma once

#include <string>
#include <string_view>

#include "details/Differences.h"

namespace tavrel::details {

/// "테이블", "필드", "인덱스", "관계"
std::string_view WordFor(Subject subject);
std::string_view WordFor(Aspect aspect);
/// The name that programs know an aspect by: "columns", "updateRule" …
std::string_view CodeFor(Aspect aspect);
/// "table", "column", "index", "relation"
std::string_view CodeFor(Subject subject);
/// "A에만 있음", "B에만 있음"; empty when both sides have it.
std::string_view WordFor(Where where);

/// "고객.이름"; a table's or relation's name alone.
std::string NameInWords(const Difference& difference);

/// Everything worth saying of a thing that stands on one side only: "필드 이름, 코드 DESC · 고유".
std::string Summary(const Facts& facts);

/// A line for people: "인덱스 고객.ix_name: 필드 이름 → 이름, 코드".
std::string InWords(const Difference& difference);

}  // namespace tavrel::details
