// Column types as stored in a table definition, and what callers call them.
#pragma once

#include <cstdint>

namespace tavrel::jet {

enum class ColumnType : std::uint8_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Binary = 9,
    Text = 10,
    Ole = 11,
    Memo = 12,
    Guid = 15,
    Numeric = 16,
    FixedBinary = 17
};

/// DAO's code: that of the file, Numeric 20 in place of 16.
int DaoType(ColumnType type);
/// Bytes of a value whose length follows from its type; 0 for the others.
unsigned FixedLength(ColumnType type);
bool IsKnownType(std::uint8_t code);
inline bool IsLong(ColumnType type) {
    return type == ColumnType::Ole || type == ColumnType::Memo;
}
inline bool IsText(ColumnType type) {
    return type == ColumnType::Text || type == ColumnType::Memo;
}

}  // namespace tavrel::jet
