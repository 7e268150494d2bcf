#include "app/logic/Products.h"

#include <algorithm>
#include <vector>

#include "compare/Products.h"
#include "platform/FileSystem.h"

namespace tavrel::app {

namespace {

/// "\" of a pattern stands for the platform's separator as well.
bool Fits(char pattern, char character) {
    return pattern == character || (pattern == '\\' && character == platform::kPathSeparator);
}

bool Holds(std::string_view path, std::string_view part) {
    return !std::ranges::search(path, part, [](char a, char b) { return Fits(b, a); }).empty();
}

}  // namespace

std::span<const Product> Products() {
    static const std::vector<Product> products = [] {
        std::vector<Product> list = {{"[제품선택]", "", ""}};
        for (const compare::Product& product : compare::Products()) {
            list.push_back({product.item, product.code, product.defaultPath});
        }
        return list;
    }();
    return products;
}

const Product& ProductOfItem(std::string_view item) {
    const auto found = std::ranges::find(Products(), item, &Product::item);
    return found == Products().end() ? Products().front() : *found;
}

std::optional<int> ProductOfPath(std::string_view path) {
    const auto products = compare::Products();
    const auto found = std::ranges::find_if(
        products, [path](const compare::Product& product) { return Holds(path, product.pathPart); });
    // The list begins with the item that stands for no product.
    return found == products.end() ? std::nullopt
                                   : std::optional(static_cast<int>(found - products.begin()) + 1);
}

}  // namespace tavrel::app
