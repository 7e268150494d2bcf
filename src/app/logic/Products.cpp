#include "app/logic/Products.h"

#include <algorithm>
#include <array>

#include "platform/FileSystem.h"

namespace tavrel::app {

namespace {

constexpr std::array<Product, 5> kProducts = {{
    {"[제품선택]", "", ""},
    {"DalvorII", "breltII", R"(C:\DalvorII\DBS\dbMain.mdb)"},
    {"VintrelII", "KilmII", R"(C:\VintrelII\DBS\dbMain.mdb)"},
    {"VintrelPro", "KilmPro", R"(C:\VintrelPro\DBS\dbMain.mdb)"},
    {"PellamII", "norbixII", R"(C:\PellamII\DBS\dbMain.mdb)"},
}};

/// The part between the "*" at both ends of a pattern; the first that the path holds decides.
struct PathPattern {
    std::string_view part;
    int item;
};
constexpr std::array<PathPattern, 4> kPatterns = {{
    {R"(DalvorII\)", 1},
    {R"(VintrelII\)", 2},
    {"pro", 3},
    {"Pellam", 4},
}};

/// "\" of a pattern stands for the platform's separator as well.
bool Fits(char pattern, char character) {
    return pattern == character || (pattern == '\\' && character == platform::kPathSeparator);
}

bool Holds(std::string_view path, std::string_view part) {
    return !std::ranges::search(path, part, [](char a, char b) { return Fits(b, a); }).empty();
}

}  // namespace

std::span<const Product> Products() {
    return kProducts;
}

const Product& ProductOfItem(std::string_view item) {
    const auto found = std::ranges::find(kProducts, item, &Product::item);
    return found == kProducts.end() ? kProducts.front() : *found;
}

std::optional<int> ProductOfPath(std::string_view path) {
    const auto found =
        std::ranges::find_if(kPatterns, [path](const PathPattern& p) { return Holds(path, p.part); });
    return found == kPatterns.end() ? std::nullopt : std::optional(found->item);
}

}  // namespace tavrel::app
