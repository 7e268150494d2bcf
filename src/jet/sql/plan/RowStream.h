// Rows of the sources of a query, one combination after the other: the cells of the sources stand on it.
#pragma once

#include <memory>
#include <vector>

#include "jet/sql/plan/KeyTable.h"
#include "jet/sql/plan/KeyWriter.h"
#include "jet/sql/plan/Source.h"

namespace tavrel::jet::sql {

class RowStream {
  public:
    virtual ~RowStream() = default;
    /// Goes before the first row; may be called again, and finds the rows of that moment.
    virtual void Open() = 0;
    virtual bool Next() = 0;
};
using RowStreamPtr = std::unique_ptr<RowStream>;

/// One row without columns: SELECT without FROM.
RowStreamPtr MakeSingleRow();

/// Rows for which every filter is true.
RowStreamPtr MakeTableScan(Context& context, Source& source, NodeList filters);
/// Rows of a table that have the key sought, in a query that is opened many times while the table stays as it
/// is: the table is read twice at most.
struct KeyedRows {
    KeyWriter key;     ///< of a row
    KeyWriter sought;  ///< evaluated at Open; speaks of other sources only
    NodeList filters;  ///< all conditions, those that the keys stand for among them
};
RowStreamPtr MakeKeyedScan(Context& context, Source& source, KeyedRows wanted);
RowStreamPtr MakeQueryScan(Context& context, Source& source, NodeList filters);
RowStreamPtr MakeFilter(RowStreamPtr rows, NodeList filters);
/// The conditions speak of no source: they are tested once, and nothing is read when one is not true.
RowStreamPtr MakeGate(RowStreamPtr rows, NodeList conditions);

/// What to look up in an index.  The nodes are evaluated at Open and speak of other sources only.
struct IndexLookup {
    std::size_t index = 0;
    NodeList equal;     ///< one for each of the first parts of the index
    bool null = false;  ///< one part more, equal to Null
    NodeList among;     ///< one part more, equal to any of these
    NodePtr from, to;   ///< bounds of one part more
    bool fromIncluded = true;
    bool toIncluded = true;
};
/// The filters must hold all conditions that the lookup stands for.
RowStreamPtr MakeIndexScan(Context& context, Source& source, IndexLookup lookup, NodeList filters);

/// Every row of `outer` with every row of `inner`, which is opened anew for each.  With `keepOuter` a row of
/// `outer` without partner comes once, the cells of `innerSources` Null.
RowStreamPtr MakeNestedLoop(Context& context, RowStreamPtr outer, RowStreamPtr inner, NodeList conditions,
                            bool keepOuter, std::vector<Source*> innerSources);
/// Keeps the rows of the first reading for later ones.  REQUIRES: the rows do not depend on other sources.
RowStreamPtr MakeCache(RowStreamPtr rows, std::vector<Source*> sources);

/// A join over equal keys.  The build side is read first and kept.
struct HashJoin {
    RowStreamPtr build, probe;
    std::vector<Source*> buildSources, probeSources;
    KeyWriter buildKey, probeKey;
    NodeList conditions;     ///< what must hold beside the equal keys
    bool keepBuild = false;  ///< rows without partner come with Nulls for the other side's cells
    bool keepProbe = false;
};
RowStreamPtr MakeHashJoin(Context& context, HashJoin join);

}  // namespace tavrel::jet::sql
