#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tamrin {

// The bytes of a text in base64 (RFC 4648, padded); nothing when it is none or empty.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace tamrin
