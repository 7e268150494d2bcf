#include "report/SchemaReport.h"

#include <array>

#include "report/CsvWriter.h"
#include "report/JsonWriter.h"
#include "report/SideCells.h"

namespace tavrel::report {

namespace {

using TextRow = std::array<TextCell, compare::kCellCount>;

TextRow Captions() {
    TextRow row;
    for (std::size_t cell = 0; cell < row.size(); ++cell) {
        row[cell] = {.text = CaptionOf(cell), .paint = Paint::Caption};
    }
    return row;
}

TextRow TextOf(const compare::SideCells& cells) {
    TextRow row;
    for (std::size_t cell = 0; cell < row.size(); ++cell) {
        row[cell].text = cells[cell];
    }
    return row;
}

}  // namespace

void WriteSchemaText(std::ostream& out, const compare::SchemaRows& schema, const TextStyle& style) {
    TextTable table(compare::kCellCount, style);
    table.Measure(Captions());
    for (std::size_t row = 0; row < schema.RowCount(); ++row) {
        table.Measure(TextOf(schema.Row(row)));
    }
    table.Write(out, Captions());
    table.WriteRule(out);
    for (std::size_t row = 0; row < schema.RowCount(); ++row) {
        table.Write(out, TextOf(schema.Row(row)));
    }
}

void WriteSchemaCsv(std::ostream& out, const compare::SchemaRows& schema) {
    CsvWriter csv(out);
    for (const std::string_view name : compare::kCellNames) {
        csv.Field(name);
    }
    csv.EndRow();
    for (std::size_t row = 0; row < schema.RowCount(); ++row) {
        for (const std::string_view text : schema.Row(row)) {
            csv.Field(text);
        }
        csv.EndRow();
    }
}

void WriteSchemaJson(std::ostream& out, const compare::SchemaRows& schema) {
    JsonWriter json(out, JsonText::Utf8, JsonLayout::Indented);
    json.BeginObject();
    json.Member("file", schema.Path());
    json.Key("rows");
    json.BeginArray();
    for (std::size_t row = 0; row < schema.RowCount(); ++row) {
        WriteJsonCells(json, schema.Row(row));
    }
    json.EndArray();
    json.EndObject();
    out << '\n';
}

}  // namespace tavrel::report
