#include "jet/sql/syntax/TypeNames.h"

#include <algorithm>

namespace tavrel::jet::sql {

namespace {

using enum ColumnType;
using enum TypeArguments;

constexpr TypeName kTypes[] = {
    {"BIT", Boolean, None},
    {"YESNO", Boolean, None},
    {"BOOLEAN", Boolean, None},
    {"LOGICAL", Boolean, None},
    {"LOGICAL1", Boolean, None},
    {"TINYINT", Byte, None},
    {"BYTE", Byte, None},
    {"INTEGER1", Byte, None},
    {"SMALLINT", Integer, None},
    {"SHORT", Integer, None},
    {"INTEGER2", Integer, None},
    {"INTEGER", Long, None},
    {"INT", Long, None},
    {"LONG", Long, None},
    {"INTEGER4", Long, None},
    {"COUNTER", Long, Seed},
    {"AUTOINCREMENT", Long, Seed},
    {"IDENTITY", Long, Seed},
    {"CURRENCY", Currency, None},
    {"MONEY", Currency, None},
    {"SINGLE", Single, None},
    {"REAL", Single, None},
    {"FLOAT4", Single, None},
    {"IEEESINGLE", Single, None},
    {"DOUBLE", Double, None},
    {"FLOAT", Double, None},
    {"FLOAT8", Double, None},
    {"IEEEDOUBLE", Double, None},
    {"NUMBER", Double, None},
    {"DATE", ColumnType::Date, None},
    {"TIME", ColumnType::Date, None},
    {"DATETIME", ColumnType::Date, None},
    {"TIMESTAMP", ColumnType::Date, None},
    {"BINARY", Binary, Length},
    {"VARBINARY", Binary, Length},
    {"VARCHAR", Text, Length},
    {"CHAR", Text, Padded},
    {"CHARACTER", Text, Padded},
    {"STRING", Text, Length},
    {"ALPHANUMERIC", Text, Length},
    {"NCHAR", Text, Padded},
    {"NVARCHAR", Text, Length},
    {"NATIONAL", Text, Padded},
    {"TEXT", Text, TextOrMemo},
    {"NTEXT", Text, TextOrMemo},
    {"MEMO", Memo, None},
    {"LONGTEXT", Memo, None},
    {"LONGCHAR", Memo, None},
    {"NOTE", Memo, None},
    {"IMAGE", Ole, None},
    {"LONGBINARY", Ole, None},
    {"GENERAL", Ole, None},
    {"OLEOBJECT", Ole, None},
    {"GUID", ColumnType::Guid, None},
    {"UNIQUEIDENTIFIER", ColumnType::Guid, None},
    {"DECIMAL", Numeric, Scale},
    {"NUMERIC", Numeric, Scale},
    {"DEC", Numeric, Scale},
};

}  // namespace

const TypeName* FindTypeName(std::string_view upperWord) {
    const auto* found = std::ranges::find(kTypes, upperWord, &TypeName::name);
    return found == std::end(kTypes) ? nullptr : found;
}

}  // namespace tavrel::jet::sql
