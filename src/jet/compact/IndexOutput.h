// An index of a new database, written while its entries come in: leaves filled one after the other, nodes
// above them, no more in memory than a few pages of each level.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "jet/compact/PageOutput.h"

namespace tavrel::jet::compact {

struct WrittenIndex {
    PageNumber root = 0;
    std::uint32_t entries = 0;
    std::uint32_t distinctKeys = 0;
    std::vector<PageNumber> pages;  ///< ascending
};

class IndexOutput {
  public:
    /// `table`: definition page that the pages name as their owner.
    IndexOutput(PageOutput& out, PageNumber table);

    /// Key, u24 BE page, u8 row; each greater than the one before.
    void Add(ByteView entry);
    WrittenIndex Finish();

  private:
    struct Child {
        PageNumber page = 0;
        ByteVector last;  ///< the greatest entry below it
    };
    struct Node {
        PageNumber page = 0;  ///< 0 until a second child makes the node needed
        PageNumber previous = 0;
        std::vector<Child> children;
        std::size_t used = 0;  ///< bytes of the entries of all children but the last
    };
    /// One node is held back: the last one may need a child of it.
    struct Level {
        std::optional<Node> held;
        Node current;
    };

    PageNumber Take();
    void StartLeaf(ByteView entry);
    void WriteLeaf(PageNumber next);
    void AddChild(std::size_t level, Child child);
    void WriteNode(std::size_t level, Node node, PageNumber next);
    PageNumber FinishNodes();

    PageOutput& out_;
    PageNumber table_;
    WrittenIndex written_;

    // The leaf being filled.
    PageNumber leaf_;
    PageNumber previousLeaf_ = 0;
    ByteVector bytes_;               ///< its entries, whole
    std::vector<std::size_t> ends_;  ///< where each ends
    std::size_t prefix_ = 0;         ///< bytes that all of them share
    std::deque<Level> levels_;       ///< the lowest first
};

}  // namespace tavrel::jet::compact
