// The four changes of a schema that migrations are made of, run on the session's connection.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "jet/catalog/Value.h"

namespace tavrel::modDBsub_ADO {

/// Column types by the codes that migrations use.  A code outside them is no error here: the statement is
/// then sent without a type.
enum class ColType : std::int32_t {
    SmallInt = 1,
    Long = 2,
    Double = 3,
    VarChar = 4,  ///< with a size in characters; 0 stands for 255
    Text = 5,     ///< a memo
    Date = 6,     ///< not for DBAlterColumn
    TinyInt = 7   ///< not for DBAlterColumn
};

/// Null, a number (written in plain decimal) or a text (written as it is: a text default brings its own
/// quotes).
using ColumnDefault = std::variant<jet::Null, std::int32_t, double, std::string>;

/// Follow-up of DBAddColumn that fills the new column where it is Null: with the default (number types), with
/// the empty text (text and date types).
inline constexpr const char* kDefUpdate = "DEF_UPDATE";

/// Adds a column NOT NULL and runs the follow-up: nothing when it is empty, the fill of kDefUpdate, or any
/// other text as a statement.  Nothing at all is run when the column exists.  Returns true; throws the
/// provider's Error.
bool DBAddColumn(const std::string& table, const std::string& column, ColType type, std::int32_t size,
                 const ColumnDefault& columnDefault, const std::string& followUp);

/// Gives a column another type, size and default, and makes it NOT NULL.  Types 1 to 5.  Returns true; throws
/// the provider's Error, also when there is no such column.
bool DBAlterColumn(const std::string& table, const std::string& column, ColType type, std::int32_t size,
                   const ColumnDefault& columnDefault);

/// Adds a relation.  False when child rows without a parent stand against it (nothing is changed and nothing
/// said), and after a failure, which the user is told.  Cascade mode: 1 on delete, 2 on update, 3 both, any
/// other none.
bool DBAddRelation(const std::string& name, const std::string& parent, const std::string& child,
                   const std::string& parentColumn, const std::string& childColumn, std::int32_t cascade);

/// Adds an index over a list of columns as it stands between parentheses.  False after a failure, which the
/// user is told.
bool DBAddIndex(const std::string& table, const std::string& columns, const std::string& name, bool unique);

}  // namespace tavrel::modDBsub_ADO
