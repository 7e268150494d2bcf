// The connect text that DAO's calls take.
#pragma once

#include <string>

namespace tavrel::db {

/// What follows ";pwd=", in whatever case, blanks and semicolons included: a password is whatever was typed.
std::string PasswordOf(const std::string& connect);

}  // namespace tavrel::db
