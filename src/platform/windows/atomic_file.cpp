#include "platform/windows/atomic_file.h"

#include <windows.h>

#include <algorithm>

#include "platform/windows/handle.h"

namespace tamrin {
namespace {

constexpr int kMaxNames = 100;
constexpr std::size_t kMaxBytesPerWrite = std::size_t{1} << 30U;

// Opens a new file in `folder` and answers its path in `path`. The process number keeps the files
// of two programs apart; the count skips files that a crash left.
OwnedHandle OpenNewFile(const std::wstring& folder, std::wstring& path) {
    for (int i = 0; i < kMaxNames; ++i) {
        path = folder + L".tamrin-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
               std::to_wstring(i);
        OwnedHandle file = OwnFile(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                               FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file || GetLastError() != ERROR_FILE_EXISTS) return file;
    }
    return nullptr;
}

bool WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min(bytes.size(), kMaxBytesPerWrite));
        DWORD count = 0;
        if (!WriteFile(file, bytes.data(), size, &count, nullptr) || count == 0) return false;
        bytes.remove_prefix(count);
    }
    return FlushFileBuffers(file) != 0;
}

// Whether another program has the file open without sharing deletion: it cannot be replaced then.
bool IsHeld(const std::wstring& path) {
    const OwnedHandle file = OwnFile(
        CreateFileW(path.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return !file;
}

bool TakePlace(const std::wstring& beside, const std::wstring& path, bool exists) {
    if (!exists) return MoveFileExW(beside.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
    const DWORD flags = REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS;
    // Some network drives support only the second call, which does not keep the access rights.
    return ReplaceFileW(path.c_str(), beside.c_str(), nullptr, flags, nullptr, nullptr) != 0 ||
           MoveFileExW(beside.c_str(), path.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

}  // namespace

bool AppendTo(const std::wstring& path, std::string_view bytes) {
    const OwnedHandle file =
        OwnFile(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_DELETE,
                            nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && WriteAll(file.get(), bytes);
}

bool ReplaceAtomically(const std::wstring& path, std::string_view bytes) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && ((attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0 ||
                   IsHeld(path))) {
        return false;
    }
    // npos + 1 is 0: the current folder.
    const std::wstring folder = path.substr(0, path.find_last_of(L"/\\:") + 1);
    std::wstring beside;
    OwnedHandle file = OpenNewFile(folder, beside);
    if (!file) return false;
    const bool written = WriteAll(file.get(), bytes);
    file.reset();
    if (written && TakePlace(beside, path, exists)) return true;
    DeleteFileW(beside.c_str());
    return false;
}

}  // namespace tamrin
