#include "script/Narrowing.h"

#include <algorithm>
#include <array>

namespace tavrel::script {

namespace {

using jet::ColumnType;

/// Room that a whole number, or one with four decimals, asks for.
struct NumberRoom {
    ColumnType type;
    unsigned digits;      ///< in front of the point
    unsigned decimals;    ///< behind it
    unsigned characters;  ///< written out
};
constexpr std::array<NumberRoom, 5> kNumbers = {{{ColumnType::Boolean, 1, 0, 5},
                                                 {ColumnType::Byte, 3, 0, 3},
                                                 {ColumnType::Integer, 5, 0, 6},
                                                 {ColumnType::Long, 10, 0, 11},
                                                 {ColumnType::Currency, 15, 4, 21}}};

const NumberRoom* RoomFor(ColumnType type) {
    const auto* found = std::ranges::find(kNumbers, type, &NumberRoom::type);
    return found == kNumbers.end() ? nullptr : found;
}

struct Widening {
    ColumnType from, to;
};
constexpr Widening kWidenings[] = {
    {ColumnType::Boolean, ColumnType::Integer},  {ColumnType::Boolean, ColumnType::Long},
    {ColumnType::Boolean, ColumnType::Single},   {ColumnType::Boolean, ColumnType::Double},
    {ColumnType::Boolean, ColumnType::Currency}, {ColumnType::Byte, ColumnType::Integer},
    {ColumnType::Byte, ColumnType::Long},        {ColumnType::Byte, ColumnType::Single},
    {ColumnType::Byte, ColumnType::Double},      {ColumnType::Byte, ColumnType::Currency},
    {ColumnType::Integer, ColumnType::Long},     {ColumnType::Integer, ColumnType::Single},
    {ColumnType::Integer, ColumnType::Double},   {ColumnType::Integer, ColumnType::Currency},
    {ColumnType::Long, ColumnType::Double},      {ColumnType::Long, ColumnType::Currency},
    {ColumnType::Single, ColumnType::Double},    {ColumnType::Date, ColumnType::Double},
    {ColumnType::Text, ColumnType::Memo},        {ColumnType::Binary, ColumnType::Ole}};

/// Numbers into decimals or texts, where it depends on the room.
bool HasRoom(const details::Column& from, const details::Column& to) {
    const NumberRoom* room = RoomFor(from.type);
    if (room == nullptr) {
        return false;
    }
    switch (to.type) {
        case ColumnType::Memo:
            return true;
        case ColumnType::Text:
            return !to.fixedWidth && to.size >= room->characters;
        case ColumnType::Numeric:
            return to.scale >= room->decimals && to.precision >= room->digits + to.scale;
        default:
            return false;
    }
}

}  // namespace

bool Narrows(const details::Column& from, const details::Column& to) {
    if (from.type == to.type) {
        return to.size < from.size || to.scale < from.scale ||
               to.precision - to.scale < from.precision - from.scale;
    }
    const bool widens = std::ranges::any_of(kWidenings, [&](const Widening& widening) {
        return widening.from == from.type && widening.to == to.type;
    });
    return !widens && !HasRoom(from, to);
}

}  // namespace tavrel::script
