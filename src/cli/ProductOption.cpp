#include "cli/ProductOption.h"

#include "compare/Products.h"
#include "text/Case.h"

namespace tavrel::cli {

namespace {

std::string AllNames() {
    std::string names;
    for (const compare::Product& product : compare::Products()) {
        names += (names.empty() ? "" : "|") + text::Lower(product.item);
    }
    return names;
}

/// Turns what was typed into the product's code.
std::string TakeCode(std::string& value) {
    const compare::Product* product = compare::ProductNamed(value);
    if (product == nullptr) {
        return "'" + value + "'은(는) 없는 제품입니다. " + AllNames() + " 가운데 하나여야 합니다.";
    }
    value = product->code;
    return {};
}

}  // namespace

CLI::Option* AddProduct(CLI::App& app, std::string& code, const char* description) {
    return app.add_option("--product", code, std::string(description) + ": " + AllNames())
        ->type_name("제품")
        ->transform(CLI::Validator(TakeCode, ""));
}

}  // namespace tavrel::cli
