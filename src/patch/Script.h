// Lists of items cut into blocks, and one product's blocks made from another's.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "patch/Item.h"

namespace tavrel::patch {

/// The items below one heading.
struct Block {
    Heading heading;
    std::vector<BlockItem> items;
};

/// The steps of a migration list in ascending order, or the procedures of a module.
class Script {
  public:
    Script() = default;
    /// Cuts tables at their headings.  The tables come in the order of their steps.
    Script(std::initializer_list<Items> tables);
    /// The same; StepsFrom, ItemsOf and ItemOf take their items from `other`.
    Script(std::initializer_list<Items> tables, const Script& other);

    /// Changes the blocks that a table of differences names.
    void Apply(Items differences);

    /// The procedures among these that a list calls.
    [[nodiscard]] Script CalledBy(const Script& list) const;
    /// These and those of another table.
    [[nodiscard]] Script With(Items table) const;

    [[nodiscard]] const std::vector<Block>& Blocks() const { return blocks_; }
    /// Null when there is no such procedure.
    [[nodiscard]] const Block* FindProcedure(std::string_view name) const;

  private:
    class Reader;
    class Changer;

    void Read(Items table, const Script* other);
    Block& BlockUnder(const Heading& heading);

    std::vector<Block> blocks_;
};

}  // namespace tavrel::patch
