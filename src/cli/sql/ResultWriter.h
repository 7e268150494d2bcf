// What a statement gives, as text, CSV or JSON.
#pragma once

#include <memory>
#include <string>

#include "cli/sql/SqlConnection.h"

namespace tavrel::cli {

class ResultWriter {
  public:
    virtual ~ResultWriter() = default;
    /// Rows go to standard output.
    virtual void Write(StatementResult& result) = 0;
};

/// | format | queries                                                   | INSERT, UPDATE, DELETE      | rest
/// |
/// |--------|-----------------------------------------------------------|-----------------------------|------|
/// | text   | aligned columns, number of rows                           | number of rows              | done
/// | | csv    | header row and rows; an empty line between two results    | number, on standard error   | – |
/// | json   | a line {"rows": [{…}, …]}                                 | a line {"affected": number} | {} |
std::unique_ptr<ResultWriter> MakeResultWriter(const std::string& format);

}  // namespace tavrel::cli
