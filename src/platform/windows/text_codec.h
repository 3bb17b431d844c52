#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/text.h"

namespace tamrin {

// Code page 932 by Windows' own tables, whatever the system's own code page is.
class WindowsTextCodec : public TextCodec {
public:
    std::string Decode(std::string_view bytes) const override;
    std::optional<std::string> Encode(std::string_view utf8) const override;
};

}  // namespace tamrin
