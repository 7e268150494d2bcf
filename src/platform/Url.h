// Addresses as they go over the wire.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::platform {

/// The URL with every byte that is a blank, a control character or not ASCII percent-encoded.
std::string EncodeUrl(std::string_view url);

}  // namespace tavrel::platform
