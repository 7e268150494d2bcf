#include "jet/catalog/ColumnType.h"

#include <algorithm>
#include <array>

namespace tavrel::jet {

namespace {

struct TypeFacts {
    ColumnType type;
    int daoType;
    unsigned fixedLength;
};

constexpr std::array<TypeFacts, 15> kTypes = {{
    {ColumnType::Boolean, 1, 1},
    {ColumnType::Byte, 2, 1},
    {ColumnType::Integer, 3, 2},
    {ColumnType::Long, 4, 4},
    {ColumnType::Currency, 5, 8},
    {ColumnType::Single, 6, 4},
    {ColumnType::Double, 7, 8},
    {ColumnType::Date, 8, 8},
    {ColumnType::Binary, 9, 0},
    {ColumnType::Text, 10, 0},
    {ColumnType::Ole, 11, 0},
    {ColumnType::Memo, 12, 0},
    {ColumnType::Guid, 15, 16},
    {ColumnType::Numeric, 20, 17},
    {ColumnType::FixedBinary, 17, 0},
}};

const TypeFacts* FactsOf(std::uint8_t code) {
    const auto* found = std::find_if(kTypes.begin(), kTypes.end(), [code](const TypeFacts& facts) {
        return static_cast<std::uint8_t>(facts.type) == code;
    });
    return found == kTypes.end() ? nullptr : found;
}

}  // namespace

int DaoType(ColumnType type) {
    const TypeFacts* facts = FactsOf(static_cast<std::uint8_t>(type));
    return facts != nullptr ? facts->daoType : static_cast<int>(type);
}

unsigned FixedLength(ColumnType type) {
    const TypeFacts* facts = FactsOf(static_cast<std::uint8_t>(type));
    return facts != nullptr ? facts->fixedLength : 0;
}

bool IsKnownType(std::uint8_t code) {
    return FactsOf(code) != nullptr;
}

}  // namespace tavrel::jet
