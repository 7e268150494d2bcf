#include "support/MemoryTables.h"

#include <algorithm>
#include <cctype>

#include "jet/sql/values/Values.h"
#include "text/Case.h"

namespace tavrel::test {

using namespace jet;
using namespace jet::sql;

namespace {

constexpr std::uint16_t kKorean = 0x0412;

/// Nulls come first.
int Compare(const Value& a, const Value& b, const TextComparer& texts) {
    if (IsNull(a) || IsNull(b)) {
        return IsNull(a) && IsNull(b) ? 0 : IsNull(a) ? -1 : 1;
    }
    return CompareValues(a, b, texts);
}

class MemoryReader : public IndexCursor {
  public:
    MemoryReader(MemoryTable& table, std::span<const std::size_t> wanted, const TableIndex* index)
        : table_(table), wanted_(wanted.begin(), wanted.end()), index_(index) {}

    bool Next() override {
        if (index_ != nullptr) {
            if (nextFound_ == found_.size()) {
                return false;
            }
            at_ = found_[nextFound_++];
        } else {
            do {
                at_ = nextRow_++;
            } while (at_ < table_.rows.size() && !table_.rows[at_]);
        }
        table_.rowsRead += at_ < table_.rows.size() ? 1 : 0;
        return at_ < table_.rows.size();
    }
    [[nodiscard]] RowId Id() const override { return at_; }
    void Get(std::size_t column, Value& out) override {
        if (std::ranges::find(wanted_, column) == wanted_.end()) {
            throw std::logic_error("a column was read that nobody announced");
        }
        out = (*table_.rows[at_])[column];
    }

    bool Seek(const KeyRange& range) override {
        ++table_.seeks;
        found_.clear();
        nextFound_ = 0;
        if (table_.refusesSeeks) {
            return false;
        }
        for (std::size_t row = 0; row < table_.rows.size(); ++row) {
            if (table_.rows[row] && Matches(*table_.rows[row], range)) {
                found_.push_back(row);
            }
        }
        return true;
    }

  private:
    [[nodiscard]] bool Matches(const MemoryTable::Row& row, const KeyRange& range) const {
        for (std::size_t i = 0; i < range.equal.size(); ++i) {
            if (Compare(row[index_->parts[i].column], range.equal[i], *table_.texts) != 0) {
                return false;
            }
        }
        if (range.from == nullptr && range.to == nullptr) {
            return true;
        }
        const Value& next = row[index_->parts[range.equal.size()].column];
        const int from = range.from == nullptr ? 1 : Compare(next, *range.from, *table_.texts);
        const int to = range.to == nullptr ? -1 : Compare(next, *range.to, *table_.texts);
        return (from > 0 || (from == 0 && range.fromIncluded)) && (to < 0 || (to == 0 && range.toIncluded));
    }

    MemoryTable& table_;
    std::vector<std::size_t> wanted_;
    const TableIndex* index_;
    std::size_t at_ = 0;
    std::size_t nextRow_ = 0;
    std::vector<std::size_t> found_;
    std::size_t nextFound_ = 0;
};

class MemoryChanges : public TableChanges {
  public:
    MemoryChanges(MemoryTable& table, std::span<const std::size_t> updated)
        : table_(table), updated_(updated.begin(), updated.end()) {}

    std::optional<std::int32_t> InsertRow(std::span<const Value> values) override {
        MemoryTable::Row row(values.begin(), values.end());
        std::optional<std::int32_t> number;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (table_.columns[i].autonumber) {
                row[i] = IsNull(row[i]) ? Value(std::int64_t{table_.nextNumber}) : row[i];
                number = static_cast<std::int32_t>(std::get<std::int64_t>(row[i]));
                table_.nextNumber = std::max(table_.nextNumber, *number + 1);
            }
        }
        CheckUnique(row, table_.rows.size());
        table_.rows.emplace_back(std::move(row));
        return number;
    }
    bool UpdateRow(RowId id, std::span<const Value> values) override {
        if (!table_.rows.at(id)) {
            return false;
        }
        MemoryTable::Row row = *table_.rows[id];
        for (std::size_t i = 0; i < updated_.size(); ++i) {
            row[updated_[i]] = values[i];
        }
        CheckUnique(row, id);
        table_.rows[id] = std::move(row);
        return true;
    }
    bool DeleteRow(RowId id) override {
        const bool there = table_.rows.at(id).has_value();
        table_.rows[id].reset();
        return there;
    }
    void Finish() override {}

  private:
    void CheckUnique(const MemoryTable::Row& row, std::size_t self) const {
        for (const TableIndex& index : table_.indexes) {
            const auto equal = [&](const TableIndex::Part& part, const MemoryTable::Row& other) {
                return !IsNull(row[part.column]) &&
                       Compare(row[part.column], other[part.column], *table_.texts) == 0;
            };
            for (std::size_t i = 0; index.unique && i < table_.rows.size(); ++i) {
                if (i != self && table_.rows[i] && std::ranges::all_of(index.parts, [&](const auto& part) {
                        return equal(part, *table_.rows[i]);
                    })) {
                    throw MakeError(errors::kDuplicateKey);
                }
            }
        }
    }

    MemoryTable& table_;
    std::vector<std::size_t> updated_;
};

TableColumn ColumnOf(const ColumnDefinition& definition) {
    const NewColumn& wanted = definition.column;
    return {wanted.name,       wanted.type,     wanted.size, wanted.precision,   wanted.scale,
            wanted.autonumber, wanted.required, false,       wanted.defaultValue};
}

std::string Shown(const ColumnDefinition& definition) {
    const NewColumn& wanted = definition.column;
    std::string text = wanted.name + " " + std::to_string(DaoType(wanted.type));
    text += wanted.size > 0 ? "(" + std::to_string(wanted.size) + ")" : "";
    text += wanted.type == ColumnType::Numeric
                ? "(" + std::to_string(wanted.precision) + "," + std::to_string(wanted.scale) + ")"
                : "";
    text += wanted.autonumber ? " counter" : "";
    text += definition.seedGiven
                ? "(" + std::to_string(definition.seed) + "," + std::to_string(definition.increment) + ")"
                : "";
    text += definition.defaultGiven ? " =" + wanted.defaultValue : "";
    text += !definition.nullable ? "" : *definition.nullable ? " NULL" : " NN";
    return text + (wanted.compressed ? " compressed" : "");
}

std::string Listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ",") + name;
    }
    return "(" + text + ")";
}

std::string Shown(const NewIndex& index) {
    std::vector<std::string> fields;
    for (const IndexFieldInfo& field : index.fields) {
        fields.push_back(field.name + (field.descending ? " desc" : ""));
    }
    return (index.primary  ? "primary "
            : index.unique ? "unique "
                           : "index ") +
           index.name + Listed(fields) + (index.required && !index.primary ? " required" : "") +
           (index.ignoreNulls ? " ignorenulls" : "");
}

std::string Shown(const ForeignKeyDefinition& key) {
    const RelationInfo& relation = key.relation;
    return "relation " + relation.name + " " + relation.table + Listed(relation.columns) + "->" +
           relation.referencedTable + Listed(relation.referencedColumns) +
           (relation.deleteCascade ? " delete"
            : key.deleteSetsNull   ? " deletenull"
                                   : "") +
           (relation.updateCascade ? " update"
            : key.updateSetsNull   ? " updatenull"
                                   : "") +
           (key.indexed ? "" : " noindex");
}

}  // namespace

std::uint64_t MemoryTable::RowCount() const {
    return static_cast<std::uint64_t>(
        std::ranges::count_if(rows, [](const auto& row) { return row.has_value(); }));
}

std::unique_ptr<RowReader> MemoryTable::Scan(std::span<const std::size_t> wanted) {
    ++scans;
    return std::make_unique<MemoryReader>(*this, wanted, nullptr);
}

std::unique_ptr<IndexCursor> MemoryTable::OpenIndex(std::size_t index, std::span<const std::size_t> wanted) {
    return std::make_unique<MemoryReader>(*this, wanted, &indexes.at(index));
}

std::size_t MemoryTable::ColumnPlace(std::string_view column) const {
    const auto found = std::ranges::find_if(
        columns, [column](const TableColumn& known) { return text::EqualIgnoringCase(known.name, column); });
    if (found == columns.end()) {
        throw MakeError(3409, {column});
    }
    return static_cast<std::size_t>(found - columns.begin());
}

MemoryDatabase::MemoryDatabase()
    : texts(kKorean), workspace{*this, *this, *this, texts, [] { return Date{45000.5}; }, {}, 0} {}

std::string MemoryDatabase::Run(std::string_view statement) {
    const ExecuteResult result = Execute(statement, workspace);
    if (result.rows == nullptr) {
        return std::to_string(result.affected);
    }
    std::string all;
    for (bool first = true; result.rows->Next(); first = false) {
        all += first ? "" : ";";
        for (std::size_t i = 0; i < result.rows->Columns().size(); ++i) {
            all += (i == 0 ? "" : "|") + Shown(result.rows->Get(i));
        }
    }
    return all;
}

std::int64_t MemoryDatabase::Affect(std::string_view statement) {
    try {
        return Execute(statement, workspace).affected;
    } catch (const Error& error) {
        return -error.Number();
    }
}

std::int32_t MemoryDatabase::Failure(std::string_view statement) {
    try {
        Run(statement);
        return 0;
    } catch (const Error& error) {
        return error.Number();
    }
}

MemoryTable& MemoryDatabase::Table(std::string_view name) {
    const auto found = tables_.find(text::Upper(name));
    if (found == tables_.end()) {
        throw MakeError(3371);
    }
    return *found->second;
}

void MemoryDatabase::ForgetCounts() {
    for (const auto& [name, table] : tables_) {
        table->scans = table->seeks = table->rowsRead = 0;
    }
}

std::shared_ptr<TableAccess> MemoryDatabase::Find(std::string_view name) {
    const auto found = tables_.find(text::Upper(name));
    return found == tables_.end() ? nullptr : found->second;
}

std::unique_ptr<TableChanges> MemoryDatabase::Change(TableAccess& table,
                                                     std::span<const std::size_t> updated) {
    return std::make_unique<MemoryChanges>(dynamic_cast<MemoryTable&>(table), updated);
}

void MemoryDatabase::CreateTable(const TableCreation& creation) {
    auto table = std::make_shared<MemoryTable>();
    table->name = creation.name;
    table->texts = &texts;
    log += "table " + creation.name + ":";
    for (const ColumnDefinition& column : creation.columns) {
        table->columns.push_back(ColumnOf(column));
        log += " " + Shown(column) + ",";
    }
    log += ";";
    if (!tables_.emplace(text::Upper(creation.name), table).second) {
        throw MakeError(errors::kTableExists, {creation.name});
    }
    for (const NewIndex& index : creation.indexes) {
        AddIndex(creation.name, index);
    }
    for (const ForeignKeyDefinition& key : creation.foreignKeys) {
        AddForeignKey(key);
    }
}

void MemoryDatabase::AddColumn(const std::string& table, const ColumnDefinition& column) {
    log += "add " + table + ": " + Shown(column) + ";";
    MemoryTable& changed = Table(table);
    changed.columns.push_back(ColumnOf(column));
    for (auto& row : changed.rows) {
        if (row) {
            row->emplace_back();
        }
    }
}

void MemoryDatabase::AlterColumn(const std::string& table, const ColumnDefinition& column) {
    log += "alter " + table + ": " + Shown(column) + ";";
}
void MemoryDatabase::SetDefault(const std::string& table, const std::string& column,
                                const std::string& text) {
    log += "default " + table + "." + column + " =" + text + ";";
}
void MemoryDatabase::DropColumn(const std::string& table, const std::string& column) {
    log += "drop column " + table + "." + column + ";";
}

void MemoryDatabase::AddIndex(const std::string& table, const NewIndex& wanted) {
    log += Shown(wanted) + " on " + table + ";";
    TableIndex index;
    index.name = wanted.name;
    index.unique = wanted.unique;
    index.primary = wanted.primary;
    index.ignoresNulls = wanted.ignoreNulls;
    for (const IndexFieldInfo& field : wanted.fields) {
        index.parts.push_back({Table(table).ColumnPlace(field.name), !field.descending});
    }
    Table(table).indexes.push_back(std::move(index));
}

void MemoryDatabase::AddForeignKey(const ForeignKeyDefinition& key) {
    log += Shown(key) + ";";
}
void MemoryDatabase::DropConstraint(const std::string& table, const std::string& name) {
    log += "drop constraint " + table + "." + name + ";";
}
void MemoryDatabase::DropIndex(const std::string& table, const std::string& name) {
    log += "drop index " + table + "." + name + ";";
}
void MemoryDatabase::DropTable(const std::string& table) {
    log += "drop table " + table + ";";
    if (tables_.erase(text::Upper(table)) == 0) {
        throw MakeError(3376, {table});
    }
}

void MemoryDatabase::BeginStatement() {
    saved_.clear();
    for (const auto& [name, table] : tables_) {
        saved_.emplace(name, std::make_shared<MemoryTable>(*table));
    }
}

void MemoryDatabase::UndoStatement() noexcept {
    tables_ = std::move(saved_);
}

std::string Words(std::string statement) {
    std::erase_if(statement,
                  [](char c) { return c != ' ' && std::isalnum(static_cast<unsigned char>(c)) == 0; });
    return statement;
}

std::string Shown(const Value& value) {
    if (IsNull(value)) {
        return "~";
    }
    if (const auto* bytes = std::get_if<ByteVector>(&value)) {
        return "<" + std::to_string(bytes->size()) + " bytes>";
    }
    return ValueText(value);
}

}  // namespace tavrel::test
