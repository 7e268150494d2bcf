#include "compare/Products.h"

#include <algorithm>
#include <array>

#include "patch/Modules.h"
#include "text/Case.h"

namespace tavrel::compare {

namespace {

constexpr std::array<Product, 4> kProducts = {{
    {"DalvorII", "breltII", modDBPatch_BRELT::ChkDBpatch, modDBPatch_BRELT::kTarget,
     R"(C:\DalvorII\DBS\dbMain.mdb)", R"(DalvorII\)"},
    {"VintrelII", "KilmII", modDBPatch_KILM::ChkDBpatch, modDBPatch_KILM::kTarget,
     R"(C:\VintrelII\DBS\dbMain.mdb)", R"(VintrelII\)"},
    {"VintrelPro", "KilmPro", modDBPatch_KILMPRO::ChkDBpatch, modDBPatch_KILMPRO::kTarget,
     R"(C:\VintrelPro\DBS\dbMain.mdb)", "pro"},
    {"PellamII", "norbixII", modDBPatch_NORB::ChkDBpatch, modDBPatch_NORB::kTarget,
     R"(C:\PellamII\DBS\dbMain.mdb)", "Pellam"},
}};

template <class Fits>
const Product* FirstThat(Fits fits) {
    const auto* const found = std::ranges::find_if(kProducts, fits);
    return found == kProducts.end() ? nullptr : found;
}

}  // namespace

std::span<const Product> Products() {
    return kProducts;
}

const Product* ProductOfCode(std::string_view code) {
    return FirstThat([code](const Product& product) { return product.code == code; });
}

const Product* ProductNamed(std::string_view name) {
    return FirstThat([name](const Product& product) {
        return text::EqualIgnoringCase(product.item, name) || text::EqualIgnoringCase(product.code, name);
    });
}

std::string WrongProductHint(const Product& product) {
    return "이 파일이 " + std::string(product.item) + " 제품의 데이터베이스가 맞는지 확인하십시오.";
}

}  // namespace tavrel::compare
