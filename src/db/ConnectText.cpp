#include "db/ConnectText.h"

#include <algorithm>
#include <string_view>

namespace tavrel::db {

std::string PasswordOf(const std::string& connect) {
    constexpr std::string_view kPasswordKey = ";PWD=";
    const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
    const auto same = [&upper](char c, char key) { return upper(c) == key; };
    const auto at =
        std::search(connect.begin(), connect.end(), kPasswordKey.begin(), kPasswordKey.end(), same);
    return at == connect.end() ? std::string() : std::string(at + kPasswordKey.size(), connect.end());
}

}  // namespace tavrel::db
