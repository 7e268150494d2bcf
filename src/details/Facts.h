// What is known of a column, an index or a relation, as a list of named texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "details/Schema.h"

namespace tavrel::details {

enum class Aspect : std::uint8_t {
    // columns
    Spelling,  ///< the name itself, of everything that has one
    Type,
    Size,
    Digits,
    Autonumber,
    FixedWidth,
    Default,
    Required,
    ZeroLength,
    Place,
    // indexes
    IndexColumns,
    Primary,
    Unique,
    NoNulls,
    IgnoreNulls,
    // relations
    Child,
    ChildColumns,
    Parent,
    ParentColumns,
    UpdateRule,
    DeleteRule,
    Enforced,
    OneToOne
};

struct Fact {
    Aspect aspect;
    std::string text;  ///< as shown to users; empty: does not apply
};
using Facts = std::vector<Fact>;

/// Always the same aspects in the same order, whatever the column is; without its place.
Facts FactsOf(const Column& column);
Facts FactsOf(const jet::IndexInfo& index);
Facts FactsOf(const jet::RelationInfo& relation);
Facts FactsOf(const Table& table);

/// The aspects in which two things of one kind differ.  Names of other things differ when they do so with
/// letter case ignored.  REQUIRES: both lists come from the same FactsOf.
std::vector<Aspect> DifferingAspects(const Facts& a, const Facts& b);

/// The text of an aspect; empty when it is not among the facts.
std::string_view TextOf(const Facts& facts, Aspect aspect);

/// What users call the type of a column: "Text", "Long" …
std::string_view TypeName(jet::ColumnType type);

}  // namespace tavrel::details
