#pragma once

#include <string_view>

namespace tamrin {

// The program's own licence and those of the works that it includes, made at build time of LICENSE
// and licenses/THIRD-PARTY.txt. Lines end in LF.
std::string_view LicenseText();

}  // namespace tamrin
