// CSV after RFC 4180: UTF-8 without a mark in front, comma, CR LF behind each row, quotes doubled.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::report {

class CsvWriter {
  public:
    /// Keeps a reference to `out`.
    explicit CsvWriter(std::ostream& out) : out_(out) {}

    /// Fields are quoted only when they have to be.
    void Field(std::string_view value);
    /// Always in quotes: tells an empty text from no value.
    void QuotedField(std::string_view value);
    void EndRow();
    void Row(const std::vector<std::string>& fields);

  private:
    void Separate();

    std::ostream& out_;
    bool rowIsEmpty_ = true;
};

}  // namespace tavrel::report
