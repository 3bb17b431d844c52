#pragma once

#include <string>

namespace tamrin {

// The version as the title shows it: the major number, a full stop, then the minor number and the
// revision written together (2, 0, 5 is "2.05").
inline std::string VersionText(int major, int minor, int revision) {
    return std::to_string(major) + "." + std::to_string(minor) + std::to_string(revision);
}

}  // namespace tamrin
