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
    template <class Other>
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
        items, [&](const Item& item) { return std::visit(NameOfItem(), item) == target; });
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

void Script::Read(Items table, const Script* other) {
    for (const Item& item : table) {
        if (const Step* step = std::get_if<Step>(&item)) {
            blocks_.push_back({.heading = *step, .items = {}});
        } else if (const Procedure* procedure = std::get_if<Procedure>(&item)) {
            blocks_.push_back({.heading = *procedure, .items = {}});
        } else if (const StepsFrom* steps = std::get_if<StepsFrom>(&item)) {
            TakeSteps(*steps, *other);
        } else if (const ItemsOf* items = std::get_if<ItemsOf>(&item)) {
            TakeItems(*items, *other);
        } else if (const ItemOf* one = std::get_if<ItemOf>(&item)) {
            TakeItem(*one, *other);
        } else {
            blocks_.back().items.push_back(item);
        }
    }
}

void Script::TakeSteps(const StepsFrom& range, const Script& other) {
    const int shift = range.other - range.first;
    for (int number = range.first; number <= range.last; ++number) {
        Block block = BlockOfStep(other, static_cast<std::int16_t>(number + shift));
        Step& step = std::get<Step>(block.heading);
        step.number = static_cast<std::int16_t>(number);
        if (step.from != Step::kNoBound) {
            step.from = static_cast<std::int16_t>(step.from - shift);
        }
        blocks_.push_back(std::move(block));
    }
}

void Script::TakeItems(const ItemsOf& range, const Script& other) {
    for (const Block& block : other.Blocks()) {
        const Step* step = AsStep(block);
        if (step != nullptr && step->number >= range.first && step->number <= range.last) {
            blocks_.back().items.insert(blocks_.back().items.end(), block.items.begin(), block.items.end());
        }
    }
}

void Script::TakeItem(const ItemOf& wanted, const Script& other) {
    blocks_.back().items.push_back(*FindItem(BlockOfStep(other, wanted.step).items, wanted.target));
}

Block& Script::BlockUnder(const Item& heading) {
    for (Block& block : blocks_) {
        const Step* step = AsStep(block);
        const Step* wanted = std::get_if<Step>(&heading);
        if (step != nullptr && wanted != nullptr && step->number == wanted->number) {
            return block;
        }
        const Procedure* procedure = std::get_if<Procedure>(&block.heading);
        const Procedure* named = std::get_if<Procedure>(&heading);
        if (procedure != nullptr && named != nullptr && procedure->name == named->name) {
            return block;
        }
    }
    Mistake("a difference from a block that is not there", {});
}

void Script::Apply(Items differences) {
    Block* block = nullptr;
    std::size_t place = 0;
    for (const Item& item : differences) {
        if (std::holds_alternative<Step>(item) || std::holds_alternative<Procedure>(item)) {
            block = &BlockUnder(item);
        } else if (const InsteadOf* replaced = std::get_if<InsteadOf>(&item)) {
            const auto found = FindItem(block->items, replaced->target);
            place = static_cast<std::size_t>(found - block->items.begin());
            block->items.erase(found);
        } else if (std::holds_alternative<AtEnd>(item)) {
            place = block->items.size();
        } else {
            block->items.insert(block->items.begin() + static_cast<std::ptrdiff_t>(place++), item);
        }
    }
}

Script Script::CalledBy(const Script& list) const {
    Script called;
    for (const Block& step : list.blocks_) {
        for (const Item& item : step.items) {
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
