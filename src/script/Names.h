// Names in statements.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel::script {

/// True when a statement can name the thing at all: quotes hold everything but a few characters.
bool CanBeNamed(std::string_view name);

/// True when an object of that name can be entered in the catalog of a database of that sort order, too.
bool CanBeEntered(std::string_view name, std::uint16_t sortOrder);

/// The name as statements spell it: bare where every engine of this dialect takes it so, else in brackets.
/// REQUIRES: CanBeNamed(name).
std::string Quoted(std::string_view name);

}  // namespace tavrel::script
