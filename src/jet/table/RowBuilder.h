// Turns the values of a row into what is stored, after checking them against the columns.
//
// A row is made in three steps: Encode gives the bytes of each column, which the index keys are made of;
// SetAside takes the long values out and puts descriptors into their place; Build makes the row.
#pragma once

#include <span>

#include "jet/catalog/Properties.h"
#include "jet/catalog/Value.h"
#include "jet/table/LongValueWriter.h"
#include "jet/table/RowKeys.h"

namespace tavrel::jet {

class RowBuilder {
  public:
    /// The name and the definition must outlive the builder.  `properties` says which columns are required
    /// and which refuse the empty text.
    RowBuilder(const std::string& tableName, const TableDefinition& table, const PropertyBlob& properties,
               std::uint32_t ownerKey);

    /// `values` by place in the definition's columns; Null in an autonumber column takes a new number.
    /// Throws 3047, 3163, 3314, 3315, 3349, 3464.
    void Encode(std::span<const Value> values);
    [[nodiscard]] const StoredFields& Fields() const { return fields_; }
    /// The number in the row's autonumber column; 0 when there is none or it is negative.
    [[nodiscard]] std::uint32_t AutonumberOfRow() const;

    struct LongField {
        std::size_t place;
        PreparedLongValue value;
    };
    /// Takes the long values out of the fields, which now hold descriptors; those of values outside the row
    /// have no place yet.
    void SetAsideLongValues();
    [[nodiscard]] const std::vector<LongField>& LongValues() const { return longFields_; }
    void SetDescriptor(std::size_t place, ByteVector descriptor) { fields_[place] = std::move(descriptor); }
    /// Throws 3047 when the row is too long for a page.
    [[nodiscard]] ByteVector Build() const { return BuildRow(shape_, fields_); }

  private:
    struct ColumnRule {
        bool required = false;
        bool refusesEmpty = false;
    };

    void ReadRules(const PropertyBlob& properties);
    void EncodeColumn(std::size_t place, const Value& value);
    void EncodeLong(std::size_t place, const Value& value);
    [[nodiscard]] Value NextAutonumber(const Column& column) const;
    void CheckRule(std::size_t place) const;

    const std::string& tableName_;
    const TableDefinition& table_;
    RowShape shape_;
    std::uint32_t ownerKey_;
    std::vector<ColumnRule> rules_;  ///< by place
    StoredFields fields_;
    std::vector<LongField> longFields_;  ///< not null
};

}  // namespace tavrel::jet
