#include "cli/sql/ResultWriter.h"

#include <vector>

#include "cli/Failure.h"
#include "cli/Output.h"
#include "report/CsvWriter.h"
#include "report/TextTable.h"
#include "report/ValueText.h"

namespace tavrel::cli {

namespace {

constexpr const char* kNull = "NULL";

std::string RowsAffected(std::int32_t count) {
    return std::to_string(count) + "개 행을 변경했습니다.";
}

std::vector<std::string> NamesOf(const db::Recordset& rows) {
    std::vector<std::string> names;
    for (std::int32_t column = 0; column < rows.FieldCount(); ++column) {
        names.push_back(rows.FieldName(column));
    }
    return names;
}

/// Null is an empty field, an empty text "".
void WriteCsvValue(report::CsvWriter& csv, const jet::Value& value) {
    const std::string text = report::PlainText(value);
    if (text.empty() && !jet::IsNull(value)) {
        csv.QuotedField(text);
    } else {
        csv.Field(text);
    }
}

class TextWriter : public ResultWriter {
  public:
    void Write(StatementResult& result) override {
        if (result.rows.State() == db::adStateOpen) {
            WriteRows(result.rows);
        } else if (result.affected) {
            StandardOutput() << RowsAffected(*result.affected) << '\n';
        } else {
            StandardOutput() << "완료했습니다.\n";
        }
    }

  private:
    static void WriteRows(db::Recordset& rows) {
        std::ostream& out = StandardOutput();
        const std::vector<std::string> names = NamesOf(rows);
        report::TextTable table(names.size(), StyleOfStandardOutput());
        std::vector<report::TextCell> captions;
        for (const std::string& name : names) {
            captions.push_back({name, report::Paint::Caption});
        }
        table.Measure(captions);
        ForEachRow(rows, [&](const std::vector<report::TextCell>& row) { table.Measure(row); });
        table.Write(out, captions);
        table.WriteRule(out);
        ForEachRow(rows, [&](const std::vector<report::TextCell>& row) { table.Write(out, row); });
        out << '(' << rows.RecordCount() << "개 행)\n";
    }

    template <typename Visit>
    static void ForEachRow(db::Recordset& rows, Visit visit) {
        std::vector<std::string> texts(static_cast<std::size_t>(rows.FieldCount()));
        std::vector<report::TextCell> cells(texts.size());
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
            for (std::size_t column = 0; column < texts.size(); ++column) {
                const jet::Value value = rows.Fields(static_cast<std::int32_t>(column)).Value;
                texts[column] = jet::IsNull(value) ? kNull : report::PlainText(value);
                cells[column].text = texts[column];
            }
            visit(cells);
        }
    }
};

class CsvResultWriter : public ResultWriter {
  public:
    void Write(StatementResult& result) override {
        if (result.rows.State() == db::adStateOpen) {
            WriteRows(result.rows);
        } else if (result.affected) {
            Complain(RowsAffected(*result.affected));
        }
    }

  private:
    void WriteRows(db::Recordset& rows) {
        if (!first_) {
            StandardOutput() << "\r\n";
        }
        first_ = false;
        report::CsvWriter csv(StandardOutput());
        csv.Row(NamesOf(rows));
        for (; !rows.Eof(); rows.MoveNext()) {
            for (std::int32_t column = 0; column < rows.FieldCount(); ++column) {
                WriteCsvValue(csv, rows.Fields(column).Value);
            }
            csv.EndRow();
        }
    }
    bool first_ = true;
};

class JsonResultWriter : public ResultWriter {
  public:
    void Write(StatementResult& result) override {
        report::JsonWriter json(StandardOutput(), report::JsonText::Utf8, report::JsonLayout::OneLine);
        json.BeginObject();
        if (result.rows.State() == db::adStateOpen) {
            json.Key("rows");
            WriteRows(json, result.rows);
        } else if (result.affected) {
            json.Member("affected", std::int64_t{*result.affected});
        }
        json.EndObject();
        StandardOutput() << '\n';
    }

  private:
    static void WriteRows(report::JsonWriter& json, db::Recordset& rows) {
        const std::vector<std::string> names = NamesOf(rows);
        json.BeginArray();
        for (; !rows.Eof(); rows.MoveNext()) {
            json.BeginObject();
            for (std::size_t column = 0; column < names.size(); ++column) {
                json.Key(names[column]);
                report::WriteJsonValue(json, rows.Fields(static_cast<std::int32_t>(column)).Value);
            }
            json.EndObject();
        }
        json.EndArray();
    }
};

}  // namespace

std::unique_ptr<ResultWriter> MakeResultWriter(const std::string& format) {
    if (format == "csv") {
        return std::make_unique<CsvResultWriter>();
    }
    if (format == "json") {
        return std::make_unique<JsonResultWriter>();
    }
    return std::make_unique<TextWriter>();
}

}  // namespace tavrel::cli
