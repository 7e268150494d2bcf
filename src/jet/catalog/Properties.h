// The LvProp blob: properties of an object and its columns.
//
// "MR2" 00, then chunks: u32 length (whole chunk), u16 kind, content.
//   kind 80: names, each u16 byte length + UTF-16LE
//   kind 0 (the object), 1 (a column): u32 6+n, u16 n, owner name of n bytes, then records:
//     u16 length (8 + value) | u8 DDL | u8 type | u16 name index | u16 value length | value
#pragma once

#include <map>
#include <string>
#include <vector>

#include "jet/catalog/ColumnType.h"
#include "jet/storage/Bytes.h"

namespace tavrel::jet {

struct Property {
    std::string name;
    std::uint8_t type = 0;  ///< a ColumnType's number
    bool ddl = false;       ///< only a design change may set it
    ByteVector value;       ///< as stored

    /// Any byte that is not zero.
    [[nodiscard]] bool AsBoolean() const;
    /// Text and memo properties; throws 3428 for an odd length.
    [[nodiscard]] std::string AsText() const;
};

struct PropertyOwner {
    std::uint16_t kind = 0;  ///< 0 the object itself, 1 a column
    std::string name;        ///< column name; empty for kind 0
    std::vector<Property> properties;

    [[nodiscard]] const Property* Find(std::string_view name) const;
};

class PropertyBlob {
  public:
    /// Throws 3428 for anything impossible.  Empty bytes give an empty blob.
    static PropertyBlob Parse(ByteView bytes);
    [[nodiscard]] ByteVector Build() const;

    /// A property of a column (exact name), or null.
    [[nodiscard]] const Property* OfColumn(std::string_view column, std::string_view property) const;
    [[nodiscard]] const std::vector<PropertyOwner>& Owners() const { return owners_; }
    [[nodiscard]] bool Empty() const { return owners_.empty(); }
    /// Sets or replaces a property; `column` empty = the object itself.
    void Set(std::string_view column, Property property);
    /// Takes a property, or all of a column, away; false when there was nothing to take.
    bool Erase(std::string_view column, std::string_view property);
    bool EraseColumn(std::string_view column);

  private:
    std::vector<PropertyOwner> owners_;
};

}  // namespace tavrel::jet
