#pragma once

#include <windows.h>

#include <bit>

namespace tamrin {

// A function of a library in the system's folder; null when there is none. A library that the
// program's file names itself would be looked for beside the program first, where somebody may have
// put one with that name.
template <typename Function>
Function* SystemFunction(const wchar_t* library, const char* name) {
    const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module ? std::bit_cast<Function*>(GetProcAddress(module, name)) : nullptr;
}

}  // namespace tamrin
