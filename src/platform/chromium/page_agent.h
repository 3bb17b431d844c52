#pragma once

#include <string_view>

namespace tamrin {

// The script of the page agent, made at build time of the files in agent/.
std::string_view PageAgentScript();

}  // namespace tamrin
