#pragma once

#include <windows.h>

namespace tamrin {

// The number of the program's icon among its resources; the lowest is the one that Windows shows
// for the file.
inline constexpr int kProgramIcon = 1;

// The program's icon in the size of a system metric (SM_CXICON, SM_CXSMICON). Windows keeps it. A
// program without one, such as a test, answers null.
inline HICON ProgramIcon(int metric) {
    const int size = GetSystemMetrics(metric);
    return static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kProgramIcon),
                                         IMAGE_ICON, size, size, LR_SHARED));
}

}  // namespace tamrin
