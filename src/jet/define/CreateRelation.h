// A new relation: its rows in the engine's tables, the index entries on both sides, and a tree for the child
// when it has none that fits.
#pragma once

#include "jet/define/Writer.h"

namespace tavrel::jet {

class RelationMaker {
  public:
    RelationMaker(Writer& writer, const RelationInfo& relation) : writer_(writer), relation_(relation) {}

    /// An empty list of referenced columns stands for the parent's primary key.
    /// Throws, before anything is changed and in this order: 3125, 3990 (name), 3371, 3211, 3409, 3373, 3368,
    /// 3206, 3609, 3378, 3375, 3626, 3379, 3022.
    void Make();

  private:
    struct Pair {
        std::size_t child;  ///< places in the definitions' columns
        std::size_t parent;
    };

    void FindTables();
    void FindColumns();
    [[nodiscard]] std::vector<std::size_t> PrimaryKeyPlaces() const;
    void CheckPairs() const;
    void FindParentTree();
    bool OrderByTree(const RealIndex& tree);
    void CheckNames() const;
    void CheckIndexCounts() const;
    void FindChildTree();
    void CheckRows() const;
    void WriteDefinitions();
    void AddChildTree();
    void LinkSides();
    void WriteRows();

    [[nodiscard]] TableDefinition& Parent() { return self_ ? child_ : otherParent_; }
    [[nodiscard]] const TableDefinition& Parent() const { return self_ ? child_ : otherParent_; }
    [[nodiscard]] std::vector<std::uint16_t> ChildColumns() const;
    [[nodiscard]] std::vector<std::uint16_t> ParentColumns() const;
    [[nodiscard]] std::uint16_t WantedFlags() const;

    Writer& writer_;
    const RelationInfo& relation_;
    bool self_ = false;  ///< a table with itself: both sides are child_
    TableDefinition child_;
    TableDefinition otherParent_;
    std::string childName_;
    std::string parentName_;
    std::vector<Pair> pairs_;      ///< as given
    std::vector<Pair> treePairs_;  ///< in the order of the parent's tree
    std::uint32_t parentTree_ = 0;
    std::uint32_t childTree_ = kNoNumber;  ///< kNoNumber = to be made
};

}  // namespace tavrel::jet
