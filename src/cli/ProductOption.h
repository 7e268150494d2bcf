// --product, which several commands have.
#pragma once

#include <string>

#include "cli/Command.h"

namespace tavrel::cli {

/// Adds --product; `code` receives the product's code.  List texts and codes are taken, letter case ignored;
/// everything else is refused.
CLI::Option* AddProduct(CLI::App& app, std::string& code, const char* description);

}  // namespace tavrel::cli
