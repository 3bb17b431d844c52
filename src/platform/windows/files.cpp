#include "platform/windows/files.h"

#include <windows.h>

#include <algorithm>

#include "platform/text.h"
#include "platform/windows/executables.h"
#include "platform/windows/handle.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

DWORD Attributes(const std::string& path) { return GetFileAttributesW(Wide(path).c_str()); }

OwnedHandle OpenToRead(const std::string& path) {
    return OwnFile(CreateFileW(Wide(path).c_str(), GENERIC_READ,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

// Reads into `bytes` from `used` on until they are full or the file ends; false on a failure.
bool Fill(HANDLE file, std::string& bytes, std::size_t& used) {
    while (used < bytes.size()) {
        const auto room = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - used, 1U << 30U));
        DWORD count = 0;
        if (!ReadFile(file, bytes.data() + used, room, &count, nullptr)) return false;
        if (count == 0) break;
        used += count;
    }
    return true;
}

// Windows deletes the file, and with it the lock, when the handle is closed.
class WindowsFileLock : public FileLock {
public:
    explicit WindowsFileLock(OwnedHandle file) : file_(std::move(file)) {}

private:
    const OwnedHandle file_;
};

// A root folder keeps its final separator: "C:" means something else.
std::string FolderPath(std::wstring_view path) {
    while (path.size() > 3 && path.ends_with(L'\\')) path.remove_suffix(1);
    return Utf8(path);
}

constexpr int kMaxTemporaryFiles = 100;
constexpr std::size_t kMaxBytesPerWrite = std::size_t{1} << 30U;

// Opens a new file in `folder` and answers its path in `path`. The process number keeps the files
// of two programs apart; the count skips files that a crash left.
OwnedHandle OpenNewFile(const std::wstring& folder, std::wstring& path) {
    for (int i = 0; i < kMaxTemporaryFiles; ++i) {
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

// Replaces the file at `path` by `bytes` in one step: a file that was there keeps its attributes
// and access rights. Refuses a folder, a read-only file and one that another program holds open. On
// failure the folder is as it was.
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

}  // namespace

bool WindowsFiles::IsFile(const std::string& path) const {
    const DWORD attributes = Attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool WindowsFiles::IsFolder(const std::string& path) const {
    const DWORD attributes = Attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::optional<std::string> WindowsFiles::Read(const std::string& path) const {
    const OwnedHandle file = OpenToRead(path);
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size)) return std::nullopt;
    if (size.QuadPart > static_cast<LONGLONG>(kMaxFileSize)) return std::nullopt;
    // The size is a hint: the file may grow meanwhile. One byte more lets the first read see the
    // end.
    std::string bytes(static_cast<std::size_t>(size.QuadPart) + 1, '\0');
    std::size_t used = 0;
    while (used <= kMaxFileSize && Fill(file.get(), bytes, used)) {
        if (used < bytes.size()) {
            bytes.resize(used);
            return bytes;
        }
        bytes.resize(2 * bytes.size() + 4096);
    }
    return std::nullopt;
}

std::optional<std::string> WindowsFiles::ReadPart(const std::string& path, std::uint64_t offset,
                                                  std::size_t size) const {
    const OwnedHandle file = OpenToRead(path);
    LARGE_INTEGER place{};
    place.QuadPart = static_cast<LONGLONG>(offset);
    if (!file || !SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN)) return std::nullopt;
    std::string bytes(size, '\0');
    std::size_t used = 0;
    if (!Fill(file.get(), bytes, used)) return std::nullopt;
    bytes.resize(used);
    return bytes;
}

std::optional<std::uint64_t> WindowsFiles::Size(const std::string& path) const {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(Wide(path).c_str(), GetFileExInfoStandard, &data) ||
        (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return std::nullopt;
    }
    return std::uint64_t{data.nFileSizeHigh} << 32U | data.nFileSizeLow;
}

bool WindowsFiles::Replace(const std::string& path, std::string_view bytes) {
    return ReplaceAtomically(Wide(path), bytes);
}

bool WindowsFiles::Append(const std::string& path, std::string_view bytes) {
    const OwnedHandle file = OwnFile(CreateFileW(Wide(path).c_str(), FILE_APPEND_DATA,
                                                 FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                                 OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && WriteAll(file.get(), bytes);
}

bool WindowsFiles::MakeFolder(const std::string& path) {
    CreateDirectoryW(Wide(path).c_str(), nullptr);
    return IsFolder(path);
}

bool WindowsFiles::Delete(const std::string& path) {
    return DeleteFileW(Wide(path).c_str()) != 0 || Attributes(path) == INVALID_FILE_ATTRIBUTES;
}

std::unique_ptr<FileLock> WindowsFiles::Lock(const std::string& path) {
    OwnedHandle file =
        OwnFile(CreateFileW(Wide(path).c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    return file ? std::make_unique<WindowsFileLock>(std::move(file)) : nullptr;
}

std::vector<std::string> WindowsFiles::List(const std::string& folder,
                                            std::string_view extension) const {
    std::vector<std::string> names;
    WIN32_FIND_DATAW entry;
    HANDLE first = FindFirstFileExW((Wide(folder) + L"\\*").c_str(), FindExInfoBasic, &entry,
                                    FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (first == INVALID_HANDLE_VALUE) return names;
    const OwnedSearch search(first);
    do {
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) continue;
        std::string name = Utf8(entry.cFileName);
        if (EndsWithIgnoreCase(name, extension)) names.push_back(std::move(name));
    } while (FindNextFileW(search.get(), &entry));
    return names;
}

std::string WindowsFiles::ProgramFolder() const {
    const std::wstring program = OwnExecutable();
    return FolderPath(program.substr(0, program.rfind(L'\\') + 1));
}

std::string WindowsFiles::CurrentFolder() const {
    return FolderPath(ReadWide([](wchar_t* buffer, std::size_t size) {
        return GetCurrentDirectoryW(static_cast<DWORD>(size), buffer);
    }));
}

}  // namespace tamrin
