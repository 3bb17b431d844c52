#include "platform/windows/entry.h"

#include <windows.h>

#include <exception>

#include "platform/windows/crash_dump.h"
#include "platform/windows/wide.h"

int WINAPI wWinMain(HINSTANCE /*program*/, HINSTANCE /*none*/, PWSTR command_line, int /*show*/) {
    // What the system loads later comes from its folder, not from the one of this program.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    tamrin::DumpCrashes();
    try {
        return tamrin::Main(tamrin::Utf8(command_line));
    } catch (const std::exception& fault) {
        const std::wstring text =
            L"予期しないエラーが発生しました。\r\n" + tamrin::Wide(fault.what());
        MessageBoxW(nullptr, text.c_str(), L"Tamrin", MB_ICONERROR);
        return 1;
    }
}
