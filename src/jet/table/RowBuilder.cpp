#include "jet/table/RowBuilder.h"

#include <algorithm>
#include <random>

#include "jet/table/RowEncoder.h"

namespace tavrel::jet {

namespace {

constexpr std::uint32_t kMaxAutonumber = 0x7FFFFFFF;

/// A random GUID, version 4.
Guid NewGuid() {
    static std::random_device source;
    Guid guid;
    for (std::uint8_t& byte : guid.bytes) {
        byte = static_cast<std::uint8_t>(source());
    }
    guid.bytes[7] =
        static_cast<std::uint8_t>((guid.bytes[7] & 0x0F) | 0x40);  // its group is stored little-endian
    guid.bytes[8] = static_cast<std::uint8_t>((guid.bytes[8] & 0x3F) | 0x80);
    return guid;
}

}  // namespace

RowBuilder::RowBuilder(const std::string& tableName, const TableDefinition& table,
                       const PropertyBlob& properties, std::uint32_t ownerKey)
    : tableName_(tableName),
      table_(table),
      shape_(table.Shape()),
      ownerKey_(ownerKey),
      rules_(table.columns.size()),
      fields_(table.columns.size()) {
    ReadRules(properties);
}

void RowBuilder::ReadRules(const PropertyBlob& properties) {
    for (std::size_t place = 0; place < rules_.size(); ++place) {
        const std::string& name = table_.columns[place].name;
        const Property* required = properties.OfColumn(name, "Required");
        const Property* zeroLength = properties.OfColumn(name, "AllowZeroLength");
        rules_[place].required = required != nullptr && required->AsBoolean();
        rules_[place].refusesEmpty = zeroLength != nullptr && !zeroLength->AsBoolean();
    }
}

void RowBuilder::Encode(std::span<const Value> values) {
    longFields_.clear();
    for (std::size_t place = 0; place < fields_.size(); ++place) {
        const Column& column = table_.columns[place];
        const bool takesNumber = column.Autonumber() && IsNull(values[place]);
        EncodeColumn(place, takesNumber ? NextAutonumber(column) : values[place]);
    }
    for (std::size_t place = 0; place < fields_.size(); ++place) {
        CheckRule(place);
    }
}

void RowBuilder::EncodeColumn(std::size_t place, const Value& value) {
    const Column& column = table_.columns[place];
    if (IsNull(value)) {
        fields_[place].reset();
    } else if (IsLong(column.type)) {
        EncodeLong(place, value);
    } else {
        fields_[place] = EncodeField(column, value, ownerKey_);
    }
    if (column.type == ColumnType::Boolean && !fields_[place]) {
        fields_[place] = ByteVector{0};  // a Boolean is never null
    }
}

void RowBuilder::EncodeLong(std::size_t place, const Value& value) {
    const Column& column = table_.columns[place];
    PreparedLongValue prepared = column.type == ColumnType::Memo
                                     ? PrepareMemo(TextOf(value), column.Compressed())
                                     : PrepareOle(BytesOf(value));
    fields_[place] = std::move(prepared.bytes);
    longFields_.push_back({place, {prepared.kind, {}}});
}

Value RowBuilder::NextAutonumber(const Column& column) const {
    if (column.type == ColumnType::Guid) {
        return NewGuid();
    }
    return static_cast<std::int64_t>(table_.lastAutonumber) + table_.autonumberStep;
}

void RowBuilder::CheckRule(std::size_t place) const {
    const ColumnRule& rule = rules_[place];
    const auto error = [&](std::int32_t number) {
        return MakeError(number, {tableName_ + "." + table_.columns[place].name});
    };
    if (rule.required && !fields_[place]) {
        throw error(errors::kRequiredField);
    }
    if (rule.refusesEmpty && fields_[place] && fields_[place]->empty()) {
        throw error(errors::kZeroLength);
    }
}

std::uint32_t RowBuilder::AutonumberOfRow() const {
    for (std::size_t place = 0; place < fields_.size(); ++place) {
        const Column& column = table_.columns[place];
        if (column.type == ColumnType::Long && column.Autonumber() && fields_[place]) {
            const std::uint32_t number = U32(*fields_[place], 0);
            return number <= kMaxAutonumber ? number : 0;
        }
    }
    return 0;
}

void RowBuilder::SetAsideLongValues() {
    for (LongField& field : longFields_) {
        field.value.bytes = std::move(*fields_[field.place]);
        fields_[field.place] = field.value.Descriptor();
    }
}

}  // namespace tavrel::jet
