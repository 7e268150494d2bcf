// The four products: the one table from which the window, the command line and the compare run take them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tavrel::compare {

struct Product {
    std::string_view item;         ///< text in the product list
    std::string_view code;         ///< AppCode
    bool (*ChkDBpatch)();          ///< patch driver; works on the open session
    int target;                    ///< version to which it brings a database
    std::string_view defaultPath;  ///< where its database lies at a site
    std::string_view pathPart;     ///< a path that holds this chooses it, unless a product above has done so
};

/// In list order.
std::span<const Product> Products();

/// By code, letter case included; null when there is none.
const Product* ProductOfCode(std::string_view code);
/// By list text or code, letter case ignored; null when there is none.
const Product* ProductNamed(std::string_view name);

/// A sentence for those whose database cannot be patched: it may be another product's.
std::string WrongProductHint(const Product& product);

}  // namespace tavrel::compare
