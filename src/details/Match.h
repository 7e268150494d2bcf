// Which thing of one database belongs to which of the other: by name, letter case ignored.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "text/Case.h"

namespace tavrel::details {

/// Pairs of pointers into the lists, in the order of `a`, then those that `b` has alone in its order; the
/// side that lacks a thing is null.  Where letter case alone tells names apart, the same spelling goes first.
template <typename Thing>
std::vector<std::pair<const Thing*, const Thing*>> Match(const std::vector<Thing>& a,
                                                         const std::vector<Thing>& b) {
    std::multimap<std::string, const Thing*> open;
    for (const Thing& thing : b) {
        open.emplace(text::Upper(thing.name), &thing);
    }
    std::vector<std::pair<const Thing*, const Thing*>> pairs;
    for (const Thing& thing : a) {
        pairs.emplace_back(&thing, nullptr);
    }
    for (const bool exactly : {true, false}) {
        for (auto& [thing, partner] : pairs) {
            const auto [first, last] = open.equal_range(text::Upper(thing->name));
            for (auto at = first; at != last && partner == nullptr; ++at) {
                if (!exactly || at->second->name == thing->name) {
                    partner = at->second;
                    open.erase(at);
                    break;
                }
            }
        }
    }
    for (const Thing& thing : b) {
        const auto [first, last] = open.equal_range(text::Upper(thing.name));
        for (auto at = first; at != last; ++at) {
            if (at->second == &thing) {
                pairs.emplace_back(nullptr, &thing);
            }
        }
    }
    return pairs;
}

/// The thing of that name, letter case ignored; null when there is none.
template <typename Thing>
const Thing* FindNamed(const std::vector<Thing>& things, const std::string& name) {
    for (const Thing& thing : things) {
        if (text::EqualIgnoringCase(thing.name, name)) {
            return &thing;
        }
    }
    return nullptr;
}

}  // namespace tavrel::details
