// The words in which migration lists and table-creation procedures are written.
//
// A list is a flat table of items, one a line.  A heading (Step, Procedure) opens a block; the items below it
// belong to that block and run in the order in which they stand:
//
//     Step{141},
//     Add{"product_d.salepriceauto", SmallInt, 0, Fill},
//     Add{"product_d.buypriceauto", SmallInt, 0, Fill},
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "db/SchemaPrimitives.h"

namespace tavrel::patch {

/// "table.column".
struct Place {
    constexpr Place(const char* dotted) {
        const std::string_view text = dotted;
        const std::size_t dot = text.find('.');
        if (dot == std::string_view::npos) {
            throw std::logic_error("table.column expected");
        }
        table = text.substr(0, dot);
        column = text.substr(dot + 1);
    }

    std::string_view table;
    std::string_view column;
};

/// What the column primitives take; a size of 0 means none was given.
struct Type {
    modDBsub_ADO::ColType code;
    std::int32_t size = 0;
};
inline constexpr Type SmallInt{modDBsub_ADO::ColType::SmallInt};
inline constexpr Type Long{modDBsub_ADO::ColType::Long};
inline constexpr Type Double{modDBsub_ADO::ColType::Double};
inline constexpr Type Text{modDBsub_ADO::ColType::Text};
inline constexpr Type Date{modDBsub_ADO::ColType::Date};
inline constexpr Type TinyInt{modDBsub_ADO::ColType::TinyInt};
constexpr Type Varchar(std::int32_t size) {
    return {modDBsub_ADO::ColType::VarChar, size};
}
/// A size where the type has no use for one.
constexpr Type Sized(Type type, std::int32_t size) {
    return {type.code, size};
}

/// A number, or a text that goes into the statement as it is.
struct Default {
    constexpr Default(int value) : number(value), isNumber(true) {}
    constexpr Default(const char* value) : text(value) {}

    std::int32_t number = 0;
    std::string_view text;
    bool isNumber = false;
};
/// The empty text: the primitives, and a table's columns below, write it as two double quotes.
inline constexpr char Empty[] = "";

/// What follows the adding of a column.
struct FollowUp {
    enum class Kind {
        None,      ///< nothing
        Fill,      ///< the default (numbers) or the empty text into the rows that are Null
        Set,       ///< `text` into every row
        Statement  ///< `text` as it is
    };
    Kind kind;
    std::string_view text;
};
inline constexpr FollowUp None{FollowUp::Kind::None, {}};
inline constexpr FollowUp Fill{FollowUp::Kind::Fill, {}};
constexpr FollowUp Set(std::string_view value) {
    return {FollowUp::Kind::Set, value};
}
constexpr FollowUp Then(std::string_view statement) {
    return {FollowUp::Kind::Statement, statement};
}

enum class Cascade : std::int32_t { No = 0, Delete = 1, Update = 2, Both = 3 };
enum class Unique : bool { No, Yes };

// ---- headings

/// The items below bring a database to version `number`.  They run when the stored version is below it and at
/// least `from`.
struct Step {
    static constexpr std::int16_t kNoBound = INT16_MIN;

    std::int16_t number;
    std::int16_t from = kNoBound;
};

/// The items below are the body of a table-creation procedure.
struct Procedure {
    std::string_view name;
    /// True: the procedure reports its own error and the list goes on; false: the error ends the list.
    bool traps = false;
};
inline constexpr bool TrapsItsErrors = true;

// ---- items

/// Adds a column unless it is there already; then the follow-up.
struct Add {
    Place place;
    Type type;
    Default value;
    FollowUp then;
};

/// Changes a column, without looking whether it is there.
struct Alter {
    Place place;
    Type type;
    Default value;
};

/// A foreign key, after a look for rows without a parent.  Reports its own error.
struct Relation {
    std::string_view name;
    Place child;
    Place parent;
    Cascade cascade;
};

/// A foreign key with both cascades by a plain statement: no look before, no report of its own.
struct Constraint {
    std::string_view name;
    Place child;
    Place parent;
};

/// `columns` are separated by commas.  Reports its own error.
struct Index {
    std::string_view name;
    std::string_view table;
    std::string_view columns;
    Unique unique = Unique::No;
};

/// A table-creation procedure or a repair routine, by name.
struct Call {
    std::string_view procedure;
};

/// A statement, sent as it stands.
struct Run {
    std::string_view statement;
};

/// A row with a new code of four digits: the code stands between the two halves of the statement.
struct Seed {
    std::string_view before;
    std::string_view after;
};

enum class Nullable { Unsaid, NotNull, Null };
inline constexpr Nullable NotNull = Nullable::NotNull;
inline constexpr Nullable Null = Nullable::Null;

/// A new table; the Column lines right below are its columns.  `key`: names separated by ", ".
struct Table {
    std::string_view name;
    std::string_view key;
};

/// A column of the table above.  `value` as it stands in the statement, Empty for two double quotes.
struct Column {
    static constexpr std::string_view kNoDefault = "(none)";

    std::string_view name;
    std::string_view type;
    std::string_view value = kNoDefault;
    Nullable nullable = Nullable::Unsaid;
};
/// Several columns that more than one table has.
struct Columns {
    std::span<const Column> columns;
};
inline constexpr std::string_view NoDefault = Column::kNoDefault;
inline constexpr std::string_view Apostrophes = "''";

/// The rest of the procedure runs only when the table has no row.
struct OnlyWhenEmpty {
    std::string_view table;
};

// ---- how one product's list is made from another's

/// Steps `first` to `last` of this list are the other list's steps from `other` on, one for one, lower bounds
/// shifted alike.
struct StepsFrom {
    std::int16_t first;
    std::int16_t last;
    std::int16_t other;
};

/// The items of the other list's steps `first` to `last`, in order.
struct ItemsOf {
    std::int16_t first;
    std::int16_t last;

    constexpr ItemsOf(std::int16_t step) : first(step), last(step) {}
    constexpr ItemsOf(std::int16_t firstStep, std::int16_t lastStep) : first(firstStep), last(lastStep) {}
};

/// One item of the other list's step.  `target`: "table.column" of an added or altered column, otherwise the
/// item's name.
struct ItemOf {
    std::int16_t step;
    std::string_view target;
};

/// In a table of differences: the items below take the place of this one; none below: it is left out.
struct InsteadOf {
    std::string_view target;
};

/// In a table of differences: the items below come at the end of the block.
struct AtEnd {};

// ---- the three kinds of words

/// Opens a block.
using Heading = std::variant<Step, Procedure>;
/// Stands in a block and is run.  Whoever looks into blocks has a case for each of these, or does not
/// compile.
using BlockItem = std::variant<Add, Alter, Relation, Constraint, Index, Call, Run, Seed, Table, Column,
                               Columns, OnlyWhenEmpty>;
/// Used up while the blocks are made.
using Derivation = std::variant<StepsFrom, ItemsOf, ItemOf, InsteadOf, AtEnd>;

template <class Word, class Words>
inline constexpr bool kIsOneOf = false;
template <class Word, class... Words>
inline constexpr bool kIsOneOf<Word, std::variant<Words...>> = (std::is_same_v<Word, Words> || ...);
template <class Word>
concept BlockWord = kIsOneOf<Word, BlockItem>;

template <class... Headings, class... Words, class... Derivations>
std::variant<Headings..., Words..., Derivations...> AnyOf(std::variant<Headings...>, std::variant<Words...>,
                                                          std::variant<Derivations...>);

/// One line of a list.
using Item = decltype(AnyOf(std::declval<Heading>(), std::declval<BlockItem>(), std::declval<Derivation>()));

/// A table of items, part of a list.
using Items = std::span<const Item>;

}  // namespace tavrel::patch
