#include "platform/windows/processes.h"

#include <windows.h>

#include <optional>
#include <string_view>
#include <utility>

#include "platform/windows/executables.h"
#include "platform/windows/handle.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr int kMaxTemporaryFolders = 100;
constexpr int kRemoveAttempts = 50;
constexpr DWORD kRemovePauseMs = 20;

class WindowsProcess : public Process {
public:
    WindowsProcess(OwnedHandle process, OwnedHandle job)
        : process_(std::move(process)), job_(std::move(job)) {}
    ~WindowsProcess() override { WindowsProcess::Kill(); }
    WindowsProcess(const WindowsProcess&) = delete;
    WindowsProcess& operator=(const WindowsProcess&) = delete;

    // A Linux program under Wine has no handle; it counts as running until Kill.
    bool Running() override {
        return !killed_ && WaitForSingleObject(process_.get(), 0) != WAIT_OBJECT_0;
    }

    void Kill() override {
        if (killed_) return;
        killed_ = true;
        TerminateJobObject(job_.get(), 1);
        TerminateProcess(process_.get(), 1);
        WaitForSingleObject(process_.get(), 1000);
    }

private:
    OwnedHandle process_;
    OwnedHandle job_;
    bool killed_ = false;
};

OwnedHandle MakeJob() {
    OwnedHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

// A name for a folder that no other process uses, by the process number, and that no earlier one
// left behind, by the tick count.
std::wstring FolderName(int count) {
    return L"tamrin-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(GetTickCount()) + L"-" + std::to_wstring(count);
}

// Starts a program and answers its process and first thread; nothing when it cannot be started. A
// Linux program under Wine has null handles.
std::optional<std::pair<OwnedHandle, OwnedHandle>> Create(const std::string& executable,
                                                          const std::vector<std::string>& arguments,
                                                          DWORD flags) {
    const std::wstring program = Wide(executable);
    std::wstring command_line = QuoteArgument(program);
    for (const std::string& argument : arguments) {
        command_line += L' ' + QuoteArgument(Wide(argument));
    }
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION information{};
    if (!CreateProcessW(program.c_str(), command_line.data(), nullptr, nullptr, FALSE,
                        flags | CREATE_NO_WINDOW, nullptr, nullptr, &start, &information)) {
        return std::nullopt;
    }
    return std::pair(OwnedHandle(information.hProcess), OwnedHandle(information.hThread));
}

// Deletes a folder with everything in it, as far as possible. Of a link only the link itself is
// deleted. True when the folder is gone.
bool RemoveFolder(const std::wstring& folder);

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

}  // namespace

std::unique_ptr<Process> WindowsProcesses::Start(const std::string& executable,
                                                 const std::vector<std::string>& arguments) {
    // Suspended until it is in the job: it must not start another program before.
    auto started = Create(executable, arguments, CREATE_SUSPENDED);
    if (!started) return nullptr;
    auto& [process, thread] = *started;
    OwnedHandle job = MakeJob();
    AssignProcessToJobObject(job.get(), process.get());
    ResumeThread(thread.get());
    return std::make_unique<WindowsProcess>(std::move(process), std::move(job));
}

bool WindowsProcesses::Launch(const std::string& executable,
                              const std::vector<std::string>& arguments) {
    return Create(executable, arguments, 0).has_value();
}

std::string WindowsProcesses::FindExecutable(const std::string& name) const {
    return Utf8(LocateExecutable(Wide(name)));
}

std::string WindowsProcesses::MakeTemporaryFolder() {
    const std::wstring base = ReadWide([](wchar_t* buffer, std::size_t size) {
        return GetTempPathW(static_cast<DWORD>(size), buffer);
    });
    if (base.empty()) return "";
    for (int i = 0; i < kMaxTemporaryFolders; ++i) {
        const std::wstring folder = base + FolderName(i);
        if (CreateDirectoryW(folder.c_str(), nullptr)) return Utf8(folder);
        if (GetLastError() != ERROR_ALREADY_EXISTS) break;
    }
    return "";
}

void WindowsProcesses::RemoveTemporaryFolder(const std::string& folder) {
    if (folder.empty()) return;
    const std::wstring path = Wide(folder);
    // Programs that have just ended may hold their files for a moment.
    for (int attempt = 0; attempt < kRemoveAttempts && !RemoveFolder(path); ++attempt) {
        Sleep(kRemovePauseMs);
    }
}

std::string WindowsProcesses::Environment(const std::string& name) const {
    return Utf8(EnvironmentVariable(Wide(name)));
}

std::string WindowsProcesses::OwnExecutable() const { return Utf8(tamrin::OwnExecutable()); }

// Windows does not open the file of a running program for writing. Opening a file changes nothing.
bool WindowsProcesses::IsRunning(const std::string& executable) const {
    const OwnedHandle file =
        OwnFile(CreateFileW(Wide(executable).c_str(), FILE_WRITE_DATA,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return !file && GetLastError() == ERROR_SHARING_VIOLATION;
}

void WindowsProcesses::RaisePriority() {
    SetPriorityClass(GetCurrentProcess(), HIGH_PRIORITY_CLASS);
}

}  // namespace tamrin
