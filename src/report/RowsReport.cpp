#include "report/RowsReport.h"

#include "jet/catalog/RowCursor.h"
#include "report/CsvWriter.h"
#include "report/ValueText.h"

namespace tavrel::report {

namespace {

/// A table being read from the first row to the last.
class TableRows {
  public:
    TableRows(jet::Database& database, std::string_view name)
        : table_(Find(database, name)),
          order_(table_.ColumnsInOrder()),
          cursor_(database.Pager(), table_, database.Catalog().OwnerKey()) {}

    bool Next() { return cursor_.Next(); }
    [[nodiscard]] std::size_t Count() const { return order_.size(); }
    [[nodiscard]] const std::string& Name(std::size_t place) const {
        return table_.columns[order_[place]].name;
    }
    jet::Value Get(std::size_t place) { return cursor_.Get(order_[place]); }

  private:
    static const jet::TableDefinition& Find(jet::Database& database, std::string_view name) {
        const jet::CatalogObject* object = database.Catalog().FindTable(name);
        if (object == nullptr) {
            throw MakeError(errors::kNoSuchTable, {name});
        }
        return database.Catalog().Definition(object->DefinitionPage());
    }

    const jet::TableDefinition& table_;
    std::vector<std::size_t> order_;
    jet::RowCursor cursor_;
};

}  // namespace

void WriteRowsJson(std::ostream& out, jet::Database& database, std::string_view name) {
    TableRows rows(database, name);
    while (rows.Next()) {
        JsonWriter json(out, JsonText::Ascii, JsonLayout::OneLine);
        json.BeginObject();
        for (std::size_t place = 0; place < rows.Count(); ++place) {
            json.Key(rows.Name(place));
            WriteJsonValue(json, rows.Get(place));
        }
        json.EndObject();
        out << '\n';
    }
}

void WriteRowsCsv(std::ostream& out, jet::Database& database, std::string_view name) {
    TableRows rows(database, name);
    CsvWriter csv(out);
    for (std::size_t place = 0; place < rows.Count(); ++place) {
        csv.Field(rows.Name(place));
    }
    csv.EndRow();
    while (rows.Next()) {
        for (std::size_t place = 0; place < rows.Count(); ++place) {
            const jet::Value value = rows.Get(place);
            const std::string text = PlainText(value);
            if (text.empty() && !jet::IsNull(value)) {
                csv.QuotedField(text);
            } else {
                csv.Field(text);
            }
        }
        csv.EndRow();
    }
}

}  // namespace tavrel::report
