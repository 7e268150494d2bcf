// The window's list of products, and which of them a path belongs to.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tavrel::app {

struct Product {
    std::string_view item;         ///< text in the list
    std::string_view code;         ///< AppCode; empty = no product
    std::string_view defaultPath;  ///< offered for DB A
};

/// In list order; the first stands for no product.
std::span<const Product> Products();

/// The product with that list text; any other text counts as no product.
const Product& ProductOfItem(std::string_view item);

/// Index of the list item that the path chooses; nothing when no pattern fits.
std::optional<int> ProductOfPath(std::string_view path);

}  // namespace tavrel::app
