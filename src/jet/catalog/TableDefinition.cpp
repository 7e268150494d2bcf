#include "jet/catalog/TableDefinition.h"

#include <algorithm>
#include <numeric>

#include "text/Case.h"

namespace tavrel::jet {

unsigned Column::DaoSize() const {
    switch (type) {
        case ColumnType::Text:
            return length / 2U;
        case ColumnType::Ole:
        case ColumnType::Memo:
            return 0;
        case ColumnType::Numeric:
            return 16;
        default:
            return length != 0 ? length : FixedLength(type);
    }
}

std::vector<std::size_t> TableDefinition::ColumnsInOrder() const {
    std::vector<std::size_t> order(columns.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
        return std::pair(columns[a].position, columns[a].number) <
               std::pair(columns[b].position, columns[b].number);
    });
    return order;
}

std::size_t TableDefinition::FindColumn(std::uint16_t number) const {
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [number](const Column& c) { return c.number == number; });
    return found == columns.end() ? npos : static_cast<std::size_t>(found - columns.begin());
}

std::size_t TableDefinition::FindColumnByName(std::string_view name) const {
    const auto found = std::find_if(columns.begin(), columns.end(), [name](const Column& c) {
        return text::EqualIgnoringCase(c.name, name);
    });
    return found == columns.end() ? npos : static_cast<std::size_t>(found - columns.begin());
}

RowShape TableDefinition::Shape() const {
    std::vector<ColumnPlace> places;
    places.reserve(columns.size());
    for (const Column& column : columns) {
        places.push_back({.number = column.number,
                          .fixed = column.Fixed(),
                          .boolean = column.type == ColumnType::Boolean,
                          .variableIndex = column.variableIndex,
                          .offset = column.fixedOffset,
                          .length = column.length});
    }
    return {std::move(places), columnNumbers, variableNumbers};
}

}  // namespace tavrel::jet
