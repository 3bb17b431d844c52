#include "platform/windows/crash_dump.h"

#include <windows.h>

#include <dbghelp.h>

#include <exception>
#include <string>

#include "platform/windows/executables.h"
#include "platform/windows/handle.h"
#include "platform/windows/system_library.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr const wchar_t* kDumpName = L"Tamrin-crash.dmp";
constexpr DWORD kTerminated = 0xE0000001;  // any number with the bits of an application's error

// Found before a crash: then little can be relied on.
decltype(&MiniDumpWriteDump) write_dump = nullptr;
std::wstring dump_paths[2];

LONG WINAPI WriteDump(EXCEPTION_POINTERS* crash) {
    for (const std::wstring& path : dump_paths) {
        const OwnedHandle file =
            OwnFile(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
        MINIDUMP_EXCEPTION_INFORMATION information{GetCurrentThreadId(), crash, FALSE};
        if (file && write_dump(GetCurrentProcess(), GetCurrentProcessId(), file.get(),
                               MiniDumpNormal, &information, nullptr, nullptr)) {
            break;
        }
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

void DumpCrashes() {
    write_dump = SystemFunction<decltype(MiniDumpWriteDump)>(L"dbghelp.dll", "MiniDumpWriteDump");
    if (!write_dump) return;
    const std::wstring program = OwnExecutable();
    dump_paths[0] = program.substr(0, program.rfind(L'\\') + 1) + kDumpName;
    dump_paths[1] = EnvironmentVariable(L"TEMP") + L'\\' + kDumpName;
    SetUnhandledExceptionFilter(WriteDump);
    std::set_terminate([] { RaiseException(kTerminated, EXCEPTION_NONCONTINUABLE, 0, nullptr); });
}

}  // namespace tamrin
