#include "platform/windows/remove_folder.h"

#include <windows.h>

#include <string_view>

#include "platform/windows/handle.h"

namespace tamrin {
namespace {

using OwnedSearch = Owned<HANDLE, FindClose>;

void RemoveEntry(const std::wstring& path, DWORD attributes) {
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        DeleteFileW(path.c_str());
    } else if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        RemoveDirectoryW(path.c_str());
    } else {
        RemoveFolder(path);
    }
}

}  // namespace

bool RemoveFolder(const std::wstring& folder) {
    WIN32_FIND_DATAW entry;
    const HANDLE first = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (first != INVALID_HANDLE_VALUE) {
        const OwnedSearch search(first);
        do {
            const std::wstring_view name = entry.cFileName;
            if (name != L"." && name != L"..") {
                RemoveEntry((folder + L'\\').append(name), entry.dwFileAttributes);
            }
        } while (FindNextFileW(search.get(), &entry));
    }
    return RemoveDirectoryW(folder.c_str()) != 0 ||
           GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES;
}

}  // namespace tamrin
