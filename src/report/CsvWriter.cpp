#include "report/CsvWriter.h"

#include "report/DisplayText.h"

namespace tavrel::report {

void CsvWriter::Separate() {
    if (!rowIsEmpty_) {
        out_ << ',';
    }
    rowIsEmpty_ = false;
}

void CsvWriter::Field(std::string_view value) {
    // A field that is a blank at either end is quoted too: many readers would trim it.
    const bool needsQuotes = value.find_first_of(",\"\r\n") != std::string_view::npos ||
                             (!value.empty() && (value.front() == ' ' || value.back() == ' '));
    if (needsQuotes) {
        QuotedField(value);
        return;
    }
    Separate();
    out_ << SoundUtf8(value);
}

void CsvWriter::QuotedField(std::string_view value) {
    Separate();
    out_ << '"';
    for (const char c : SoundUtf8(value)) {
        if (c == '"') {
            out_ << '"';
        }
        out_ << c;
    }
    out_ << '"';
}

void CsvWriter::EndRow() {
    out_ << "\r\n";
    rowIsEmpty_ = true;
}

void CsvWriter::Row(const std::vector<std::string>& fields) {
    for (const std::string& field : fields) {
        Field(field);
    }
    EndRow();
}

}  // namespace tavrel::report
