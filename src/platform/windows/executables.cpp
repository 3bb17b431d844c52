#include "platform/windows/executables.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

bool IsFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// Searches PATH only, not the current folder, where anybody may have put a file.
std::wstring OnPath(const std::wstring& name) {
    const std::wstring path = EnvironmentVariable(L"PATH");
    return ReadWide([&](wchar_t* buffer, std::size_t size) {
        return SearchPathW(path.c_str(), name.c_str(), nullptr, static_cast<DWORD>(size), buffer,
                           nullptr);
    });
}

// Finds a program that is not on PATH like the Run box of Windows.
std::wstring Registered(const std::wstring& name) {
    const std::wstring key = L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + name;
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        wchar_t path[1024];
        DWORD bytes = sizeof path;
        if (RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &bytes) !=
            ERROR_SUCCESS) {
            continue;
        }
        std::wstring found = path;
        if (found.size() > 1 && found.front() == L'"') found = found.substr(1, found.size() - 2);
        if (IsFile(found)) return found;
    }
    return {};
}

// Where Edge and Chrome are installed, for all users or for one.
std::wstring Installed(const std::wstring& name) {
    for (const wchar_t* base : {L"ProgramFiles", L"ProgramFiles(x86)", L"LocalAppData"}) {
        const std::wstring folder = EnvironmentVariable(base);
        if (folder.empty()) continue;
        for (const wchar_t* product : {L"\\Microsoft\\Edge", L"\\Google\\Chrome", L"\\Chromium"}) {
            std::wstring path = folder;
            path.append(product).append(L"\\Application\\").append(name);
            if (IsFile(path)) return path;
        }
    }
    return {};
}

}  // namespace

std::wstring EnvironmentVariable(const std::wstring& name) {
    return ReadWide([&](wchar_t* buffer, std::size_t size) {
        return GetEnvironmentVariableW(name.c_str(), buffer, static_cast<DWORD>(size));
    });
}

std::wstring OwnExecutable() {
    return ReadWide([](wchar_t* buffer, std::size_t size) {
        return GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(size));
    });
}

std::wstring LocateExecutable(std::wstring name) {
    if (name.empty()) return {};
    if (name.find_first_of(L"\\/:") != std::wstring::npos) return IsFile(name) ? name : L"";
    if (name.find(L'.') == std::wstring::npos) name += L".exe";
    std::wstring path = OnPath(name);
    if (path.empty()) path = Registered(name);
    return path.empty() ? Installed(name) : path;
}

std::wstring QuoteArgument(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos) {
        return argument;
    }
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L'"';
}

}  // namespace tamrin
