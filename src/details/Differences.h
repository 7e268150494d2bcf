// What two structures differ in, as a typed list.
#pragma once

#include <string>
#include <vector>

#include "details/Facts.h"

namespace tavrel::details {

enum class Subject : std::uint8_t { Table, Column, Index, Relation };
enum class Where : std::uint8_t { OnlyA, OnlyB, Both };

struct Difference {
    Subject subject;
    Where where;
    std::string table;  ///< a relation's child table
    std::string name;   ///< as A spells it when A has it; that of the table itself is in `table` alone
    Facts a, b;         ///< empty on the side that lacks it
    std::vector<Aspect> aspects;  ///< those that differ, when both sides have it; never empty then
};

/// Every difference: table by table in the order of names, in each the columns, then the indexes; relations
/// at the end.  Of a table that stands on one side only the columns are left out.
std::vector<Difference> Compare(const Schema& a, const Schema& b);

/// True for what the rows of a comparison show by themselves: the details need not repeat it.
bool ShownByMarks(const Difference& difference, Aspect aspect);

/// What the details of a comparison list: without the columns and aspects that its rows show.  `columns`
/// false: no columns at all.
std::vector<Difference> BeyondMarks(std::vector<Difference> differences, bool columns = true);

}  // namespace tavrel::details
