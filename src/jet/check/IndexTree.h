// The pages of an index: fields, shape of the tree, bounds, links between leaves, order of the entries.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/Context.h"
#include "jet/index/IndexPage.h"

namespace tavrel::jet::check {

class IndexTree {
  public:
    using EntryVisitor = std::function<void(ByteView entry)>;

    /// `where` names the index.
    IndexTree(Context& context, const std::string& where, PageNumber tablePage, const RealIndex& index)
        : context_(context), log_(context.log), where_(where), tablePage_(tablePage), index_(index) {}

    /// Walks the leaves from left to right and gives every entry, whole, to the visitor.  False when the tree
    /// could not be walked to its end, so that entries may be missing.
    bool Walk(const EntryVisitor& visitor);
    /// Gives the entries that Walk has given once more; nothing is told.  REQUIRES: Walk has been called.
    void Replay(const EntryVisitor& visitor) const;

  private:
    using Bound = std::optional<ByteVector>;

    void WalkPage(PageNumber number, unsigned depth, const Bound& low, const Bound& high);
    void WalkNode(PageNumber number, const IndexPageContent& page, unsigned depth, const Bound& low,
                  const Bound& high);
    void WalkLeaf(PageNumber number, const IndexPageContent& page, unsigned depth, const Bound& low,
                  const Bound& high);
    void CheckFields(PageNumber number, ByteView bytes, const IndexPageContent& page);
    void CheckNodeLinks(PageNumber number, const IndexPageContent& page);
    void CheckLeafLinks(PageNumber number, const IndexPageContent& page);
    void CheckOrder(ByteView entry);
    void CheckMap();

    Context& context_;
    FindingLog& log_;
    std::string where_;
    PageNumber tablePage_;
    const RealIndex& index_;
    const EntryVisitor* visitor_ = nullptr;
    std::vector<PageNumber> reached_;  ///< in the order of the walk
    std::size_t heldBytes_ = 0;        ///< of the entries of the nodes above the present page
    unsigned rootLevel_ = 0;
    std::optional<unsigned> leafDepth_;
    bool depthsDiffer_ = false;
    PageNumber lastLeaf_ = 0;
    PageNumber lastLeafNext_ = 0;
    ByteVector lastEntry_;
    bool haveEntry_ = false;
    bool orderBroken_ = false;
};

}  // namespace tavrel::jet::check
