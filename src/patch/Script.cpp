#include "patch/Script.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace tavrel::patch {

namespace {

// What goes wrong in here is a mistake in a table, which no user can cause.
[[noreturn]] void Mistake(const char* what, std::string_view name) {
    throw std::logic_error(std::string(what) + ": " + std::string(name));
}

const Step* AsStep(const Block& block) {
    return std::get_if<Step>(&block.heading);
}

const Block& BlockOfStep(const Script& script, std::int16_t number) {
    for (const Block& block : script.Blocks()) {
        if (const Step* step = AsStep(block); step != nullptr && step->number == number) {
            return block;
        }
    }
    Mistake("no such step", std::to_string(number));
}

/// What InsteadOf and ItemOf call an item by.
struct NameOfItem {
    std::string operator()(const Add& item) const { return Dotted(item.place); }
    std::string operator()(const Alter& item) const { return Dotted(item.place); }
    std::string operator()(const Relation& item) const { return std::string(item.name); }
    std::string operator()(const Constraint& item) const { return std::string(item.name); }
    std::string operator()(const Index& item) const { return std::string(item.name); }
    std::string operator()(const Column& item) const { return std::string(item.name); }
    /// The others cannot be named in a table of differences.
    template <BlockWord Other>
    std::string operator()(const Other&) const {
        return {};
    }

  private:
    static std::string Dotted(const Place& place) {
        return std::string(place.table).append(".").append(place.column);
    }
};

template <class ItemList>
auto FindItem(ItemList& items, std::string_view target) {
    const auto found = std::ranges::find_if(
        items, [&](const BlockItem& item) { return std::visit(NameOfItem(), item) == target; });
    if (found == items.end()) {
        Mistake("no such item", target);
    }
    return found;
}

}  // namespace

Script::Script(std::initializer_list<Items> tables) {
    for (const Items& table : tables) {
        Read(table, nullptr);
    }
}

Script::Script(std::initializer_list<Items> tables, const Script& other) {
    for (const Items& table : tables) {
        Read(table, &other);
    }
}

/// Puts a list's lines into blocks.
class Script::Reader {
  public:
    /// `other` may be null: then nothing can be taken from it.
    Reader(std::vector<Block>& blocks, const Script* other) : blocks_(blocks), other_(other) {}

    void operator()(const Step& step) { blocks_.push_back({.heading = step, .items = {}}); }
    void operator()(const Procedure& procedure) { blocks_.push_back({.heading = procedure, .items = {}}); }
    template <BlockWord Word>
    void operator()(const Word& word) {
        Items().push_back(word);
    }

    void operator()(const StepsFrom& range) {
        const int shift = range.other - range.first;
        for (int number = range.first; number <= range.last; ++number) {
            Block block = BlockOfStep(Other(), static_cast<std::int16_t>(number + shift));
            Step& step = std::get<Step>(block.heading);
            step.number = static_cast<std::int16_t>(number);
            if (step.from != Step::kNoBound) {
                step.from = static_cast<std::int16_t>(step.from - shift);
            }
            blocks_.push_back(std::move(block));
        }
    }
    void operator()(const ItemsOf& range) {
        for (const Block& block : Other().Blocks()) {
            const Step* step = AsStep(block);
            if (step != nullptr && step->number >= range.first && step->number <= range.last) {
                Items().insert(Items().end(), block.items.begin(), block.items.end());
            }
        }
    }
    void operator()(const ItemOf& wanted) {
        Items().push_back(*FindItem(BlockOfStep(Other(), wanted.step).items, wanted.target));
    }

    void operator()(const InsteadOf& word) const { Mistake("a difference in a list", word.target); }
    void operator()(const AtEnd&) const { Mistake("a difference in a list", "AtEnd"); }

  private:
    [[nodiscard]] std::vector<BlockItem>& Items() const { return blocks_.back().items; }
    [[nodiscard]] const Script& Other() const {
        if (other_ == nullptr) {
            Mistake("no other list to take from", {});
        }
        return *other_;
    }

    std::vector<Block>& blocks_;
    const Script* other_;
};

void Script::Read(Items table, const Script* other) {
    Reader reader(blocks_, other);
    for (const Item& item : table) {
        std::visit(reader, item);
    }
}

Block& Script::BlockUnder(const Heading& heading) {
    const auto sameHeading = [&heading](const Block& block) {
        if (const Step* wanted = std::get_if<Step>(&heading)) {
            const Step* step = AsStep(block);
            return step != nullptr && step->number == wanted->number;
        }
        const Procedure* procedure = std::get_if<Procedure>(&block.heading);
        return procedure != nullptr && procedure->name == std::get<Procedure>(heading).name;
    };
    const auto found = std::ranges::find_if(blocks_, sameHeading);
    if (found == blocks_.end()) {
        Mistake("a difference from a block that is not there", {});
    }
    return *found;
}

/// Changes blocks as the lines of a table of differences say.
class Script::Changer {
  public:
    explicit Changer(Script& script) : script_(script) {}

    void operator()(const Step& step) { block_ = &script_.BlockUnder(step); }
    void operator()(const Procedure& procedure) { block_ = &script_.BlockUnder(procedure); }
    void operator()(const InsteadOf& replaced) {
        const auto found = FindItem(Items(), replaced.target);
        place_ = found - Items().begin();
        Items().erase(found);
    }
    void operator()(const AtEnd&) { place_ = static_cast<std::ptrdiff_t>(Items().size()); }
    template <BlockWord Word>
    void operator()(const Word& word) {
        Items().insert(Items().begin() + place_++, word);
    }

    void operator()(const StepsFrom&) const { Mistake("steps in a table of differences", "StepsFrom"); }
    void operator()(const ItemsOf&) const { Mistake("items in a table of differences", "ItemsOf"); }
    void operator()(const ItemOf& word) const { Mistake("an item in a table of differences", word.target); }

  private:
    [[nodiscard]] std::vector<BlockItem>& Items() const {
        if (block_ == nullptr) {
            Mistake("a difference without a heading", {});
        }
        return block_->items;
    }

    Script& script_;
    Block* block_ = nullptr;
    std::ptrdiff_t place_ = 0;
};

void Script::Apply(Items differences) {
    Changer changer(*this);
    for (const Item& item : differences) {
        std::visit(changer, item);
    }
}

Script Script::CalledBy(const Script& list) const {
    Script called;
    for (const Block& step : list.blocks_) {
        for (const BlockItem& item : step.items) {
            const Call* call = std::get_if<Call>(&item);
            const Block* procedure = call != nullptr ? FindProcedure(call->procedure) : nullptr;
            if (procedure != nullptr) {
                called.blocks_.push_back(*procedure);
            }
        }
    }
    return called;
}

Script Script::With(Items table) const {
    Script more = *this;
    more.Read(table, nullptr);
    return more;
}

const Block* Script::FindProcedure(std::string_view name) const {
    const auto found = std::ranges::find_if(blocks_, [&](const Block& block) {
        const Procedure* procedure = std::get_if<Procedure>(&block.heading);
        return procedure != nullptr && procedure->name == name;
    });
    return found == blocks_.end() ? nullptr : &*found;
}

}  // namespace tavrel::patch
