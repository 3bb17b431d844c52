#pragma once

#include <string>
#include <string_view>

namespace tamrin {

// The full address of what a user writes: white space around it is dropped; a path becomes a file
// address, and what has no scheme gets "http://". The browser takes full addresses only.
std::string FullAddress(std::string_view text);

// The script of a "javascript:" address (percent signs decoded), "" of any other address.
std::string ScriptOf(std::string_view address);

}  // namespace tamrin
