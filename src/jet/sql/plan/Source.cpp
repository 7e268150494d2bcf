#include "jet/sql/plan/Source.h"

#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"

namespace tavrel::jet::sql {

void Context::ThrowTooMany() {
    throw MakeError(sqlErrors::kTooComplex);
}

void Context::NoteMissing(std::string_view name) {
    for (const std::string& known : missingNames) {
        if (text::EqualIgnoringCase(known, name)) {
            return;
        }
    }
    missingNames.emplace_back(name);
}

void Context::RequireAllNames() const {
    if (!missingNames.empty()) {
        throw MakeError(sqlErrors::kMissingParameter, {std::to_string(missingNames.size())});
    }
}

Source::Source(std::string alias, std::shared_ptr<TableAccess> table)
    : alias_(std::move(alias)), table_(std::move(table)), cells_(table_->Columns().size()) {}

Source::Source(std::string alias, std::unique_ptr<QueryPlan> query)
    : alias_(std::move(alias)), query_(std::move(query)), cells_(query_->columns.size()) {}

SourceColumn Source::ColumnAt(std::size_t column) const {
    if (table_ != nullptr) {
        const TableColumn& found = table_->Columns()[column];
        return {found.name, found.type, found.type, found.size};
    }
    const ResultColumn& found = query_->columns[column];
    return {found.name, found.type, query_->types[column], found.size};
}

const std::string& Source::ColumnName(std::size_t column) const {
    return table_ != nullptr ? table_->Columns()[column].name : query_->columns[column].name;
}

Cell& Source::CellOf(std::size_t column) {
    std::unique_ptr<Cell>& cell = cells_[column];
    if (cell == nullptr) {
        cell = std::make_unique<Cell>();
        used_.push_back({column, cell.get()});
    }
    return *cell;
}

Cell& Source::RowIdCell() {
    if (rowId_ == nullptr) {
        rowId_ = std::make_unique<Cell>();
        used_.push_back({Cell::kRowId, rowId_.get()});
    }
    return *rowId_;
}

std::vector<std::size_t> Source::UsedColumns() const {
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < cells_.size(); ++column) {
        if (cells_[column] != nullptr) {
            columns.push_back(column);
        }
    }
    return columns;
}

std::vector<Cell*> Source::UsedCells() const {
    std::vector<Cell*> cells;
    for (const Used& used : used_) {
        cells.push_back(used.cell);
    }
    return cells;
}

void Source::Moved(RowReader& reader) {
    for (const Used& used : used_) {
        used.cell->Forget(reader, used.column);
    }
}

namespace {

/// Columns of one scope; the first found stays, a second one is ambiguous.
FoundColumn FindInScope(Scope& scope, std::string_view qualifier, std::string_view name) {
    FoundColumn found;
    for (std::size_t place = 0; place < scope.sources.size(); ++place) {
        const Source& source = *scope.sources[place];
        if (!qualifier.empty() && !text::EqualIgnoringCase(source.Alias(), qualifier)) {
            continue;
        }
        for (std::size_t column = 0; column < source.ColumnCount(); ++column) {
            if (!text::EqualIgnoringCase(source.ColumnName(column), name)) {
                continue;
            }
            if (found.scope != nullptr) {
                throw MakeError(sqlErrors::kAmbiguousName, {name});
            }
            found = {&scope, place, column};
            break;
        }
    }
    return found;
}

}  // namespace

FoundColumn FindColumn(Scope& scope, std::string_view qualifier, std::string_view name) {
    for (Scope* at = &scope; at != nullptr; at = at->outer) {
        const FoundColumn found = FindInScope(*at, qualifier, name);
        if (found.scope == nullptr) {
            continue;
        }
        for (Scope* passed = &scope; passed != at; passed = passed->outer) {
            passed->reachedOut = true;
        }
        return found;
    }
    return {};
}

}  // namespace tavrel::jet::sql
