// What a table definition says of itself and its columns.
#pragma once

#include <string>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/Context.h"

namespace tavrel::jet::check {

class DefinitionCheck {
  public:
    DefinitionCheck(Context& context, const std::string& table, const TableDefinition& definition)
        : context_(context), log_(context.log), where_(table), table_(definition) {}

    /// `system`: a table of the engine or of a front end, whose columns were not created in the order of
    /// their numbers.
    void Run(bool system);

  private:
    void CheckPages();
    void CheckHead();
    void CheckColumnNumbers();
    void CheckColumn(const Column& column);
    void CheckFixedParts();
    void CheckVariableIndexes();
    void CheckVariableCounts();

    Context& context_;
    FindingLog& log_;
    std::string where_;
    const TableDefinition& table_;
};

}  // namespace tavrel::jet::check
