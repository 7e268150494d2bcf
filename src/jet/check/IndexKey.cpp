#include "jet/check/IndexKey.h"

namespace tavrel::jet::check {

std::vector<KeyColumn> KeyColumns(const TableDefinition& table, const RealIndex& index) {
    std::vector<KeyColumn> columns;
    for (const IndexColumn& column : index.columns) {
        const std::size_t place = table.FindColumn(column.number);
        if (place != TableDefinition::npos) {
            columns.push_back({place, column.ascending});
        }
    }
    return columns;
}

}  // namespace tavrel::jet::check
