// Names in statements.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::script {

/// True when a statement can name the thing at all: quotes hold everything but a few characters.
bool CanBeNamed(std::string_view name);

/// The name as statements spell it: bare where every engine of this dialect takes it so, else in brackets.
/// REQUIRES: CanBeNamed(name).
std::string Quoted(std::string_view name);

}  // namespace tavrel::script
