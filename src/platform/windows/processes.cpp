#include "platform/windows/processes.h"

#include <windows.h>

#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/windows/executables.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr int kMaxTemporaryFolders = 100;
constexpr int kRemoveAttempts = 50;
constexpr DWORD kRemovePauseMs = 20;

class WindowsProcess : public Process {
public:
    // Without a job it outlives this one.
    WindowsProcess(OwnedHandle process, OwnedHandle job, const PipeEnds& pipe)
        : process_(std::move(process)), job_(std::move(job)), pipe_(pipe) {}
    ~WindowsProcess() override {
        if (job_) WindowsProcess::Kill();
    }
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

    PipeEnds TakePipe() override { return pipe_; }

private:
    OwnedHandle process_;
    OwnedHandle job_;
    const PipeEnds pipe_;
    bool killed_ = false;
};

OwnedHandle MakeJob() {
    OwnedHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

constexpr std::wstring_view kFolderName = L"tamrin-profile-";

// A name that no other process uses, by the process number, and that no earlier one left behind, by
// the tick count.
std::wstring UniqueName(std::wstring_view begin, int count) {
    return std::wstring(begin) + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(GetTickCount()) + L"-" + std::to_wstring(count);
}

OwnedHandle OpenFolder(const std::wstring& folder, DWORD access, DWORD share) {
    return OwnFile(CreateFileW(folder.c_str(), access, share, nullptr, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

// Keeps a folder: nobody can delete it before the handle is closed. Null where there is none.
OwnedHandle KeepFolder(const std::wstring& folder) {
    return OpenFolder(folder, FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE);
}

// Whether nobody keeps a folder.
bool IsAbandoned(const std::wstring& folder) {
    return bool(OpenFolder(folder, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE));
}

constexpr DWORD kPipeBytes = 65536;

// One direction of a pipe. This program's end works while it waits for other things; the other's
// does not, as the C library of that program expects it.
bool MakePipe(bool reads, OwnedHandle& own, OwnedHandle& other) {
    static int count = 0;
    const std::wstring name = UniqueName(L"\\\\.\\pipe\\tamrin-", ++count);
    const DWORD direction = reads ? PIPE_ACCESS_INBOUND : PIPE_ACCESS_OUTBOUND;
    own = OwnFile(CreateNamedPipeW(name.c_str(),
                                   direction | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                                   PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1,
                                   kPipeBytes, kPipeBytes, 0, nullptr));
    if (!own) return false;
    // The only other end that there can be: nobody else can open the pipe from now on.
    other = OwnFile(CreateFileW(name.c_str(), reads ? GENERIC_WRITE : GENERIC_READ, 0, nullptr,
                                OPEN_EXISTING, 0, nullptr));
    return bool(other);
}

// The handles that a new program gets.
struct Inherited {
    OwnedHandle in, out;       // its files 3 and 4
    std::vector<HANDLE> kept;  // open in it as well, so that they stay open as long as it runs
};

// Numbers of open files in the form in which the C library of a new program takes them over: how
// many there are, a byte of flags for each, and their handles.
std::string OpenFiles(const Inherited& files) {
    constexpr char kOpen = 0x01;
    constexpr char kPipe = 0x08;
    const HANDLE handles[] = {INVALID_HANDLE_VALUE, INVALID_HANDLE_VALUE, INVALID_HANDLE_VALUE,
                              files.in.get(), files.out.get()};
    const int count = static_cast<int>(std::size(handles));
    std::string bytes(reinterpret_cast<const char*>(&count), sizeof count);
    for (const HANDLE handle : handles) {
        bytes += static_cast<char>(handle == INVALID_HANDLE_VALUE ? 0 : kOpen | kPipe);
    }
    return bytes.append(reinterpret_cast<const char*>(handles), sizeof handles);
}

// Starts a program and answers its process and first thread; nothing when it cannot be started. A
// Linux program under Wine has null handles.
std::optional<std::pair<OwnedHandle, OwnedHandle>> Create(const ProgramStart& start, DWORD flags,
                                                          const Inherited& files) {
    const std::wstring program = Wide(start.executable);
    std::wstring command_line = QuoteArgument(program);
    for (const std::string& argument : start.arguments) {
        command_line += L' ' + QuoteArgument(Wide(argument));
    }
    STARTUPINFOEXW information{};
    information.StartupInfo.cb = sizeof information;
    std::vector<HANDLE> handles = files.kept;
    std::string open_files;
    if (files.in) {
        handles.insert(handles.end(), {files.in.get(), files.out.get()});
        open_files = OpenFiles(files);
        information.StartupInfo.cbReserved2 = static_cast<WORD>(open_files.size());
        information.StartupInfo.lpReserved2 = reinterpret_cast<BYTE*>(open_files.data());
    }
    for (const HANDLE handle : handles) {
        SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }
    // These handles and no others, whatever else is open here.
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    std::string attributes(size, '\0');
    information.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(attributes.data());
    InitializeProcThreadAttributeList(information.lpAttributeList, 1, 0, &size);
    if (!handles.empty()) {
        UpdateProcThreadAttribute(information.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                  static_cast<void*>(handles.data()),
                                  handles.size() * sizeof(HANDLE), nullptr, nullptr);
    }
    PROCESS_INFORMATION started{};
    const bool created =
        CreateProcessW(program.c_str(), command_line.data(), nullptr, nullptr, !handles.empty(),
                       flags | CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr,
                       &information.StartupInfo, &started);
    DeleteProcThreadAttributeList(information.lpAttributeList);
    for (const HANDLE handle : handles) SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0);
    if (!created) return std::nullopt;
    return std::pair(OwnedHandle(started.hProcess), OwnedHandle(started.hThread));
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

// Deletes the temporary folders in `base` that no program keeps.
void RemoveAbandoned(const std::wstring& base) {
    WIN32_FIND_DATAW entry;
    const HANDLE first = FindFirstFileW((base + std::wstring(kFolderName) + L"*").c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE) return;
    const OwnedSearch search(first);
    do {
        const std::wstring folder = base + entry.cFileName;
        if (IsAbandoned(folder)) RemoveFolder(folder);
    } while (FindNextFileW(search.get(), &entry));
}

}  // namespace

std::unique_ptr<Process> WindowsProcesses::Start(const ProgramStart& start) {
    Inherited files;
    OwnedHandle from, to;
    if (start.piped && !(MakePipe(false, to, files.in) && MakePipe(true, from, files.out))) {
        return nullptr;
    }
    if (start.piped && start.outlives) files.kept = {from.get(), to.get()};
    const auto lock = locks_.find(start.folder);
    if (lock != locks_.end()) files.kept.push_back(lock->second.get());
    // Suspended until it is in the job: it must not start another program before.
    auto started = Create(start, CREATE_SUSPENDED, files);
    if (!started) return nullptr;
    auto& [process, thread] = *started;
    OwnedHandle job = start.outlives ? nullptr : MakeJob();
    if (job) AssignProcessToJobObject(job.get(), process.get());
    ResumeThread(thread.get());
    const auto number = [](OwnedHandle& end) {
        return end ? reinterpret_cast<std::intptr_t>(end.release()) : -1;
    };
    return std::make_unique<WindowsProcess>(std::move(process), std::move(job),
                                            PipeEnds{number(from), number(to)});
}

std::string WindowsProcesses::FindExecutable(const std::string& name) const {
    return Utf8(LocateExecutable(Wide(name)));
}

std::string WindowsProcesses::MakeTemporaryFolder() {
    const std::wstring base = ReadWide([](wchar_t* buffer, std::size_t size) {
        return GetTempPathW(static_cast<DWORD>(size), buffer);
    });
    if (base.empty()) return "";
    RemoveAbandoned(base);
    for (int i = 0; i < kMaxTemporaryFolders; ++i) {
        const std::wstring folder = base + UniqueName(kFolderName, i);
        const bool made = CreateDirectoryW(folder.c_str(), nullptr) != 0;
        if (!made && GetLastError() != ERROR_ALREADY_EXISTS) break;
        OwnedHandle lock = made ? KeepFolder(folder) : nullptr;
        if (lock) return locks_.emplace(Utf8(folder), std::move(lock)).first->first;
    }
    return "";
}

void WindowsProcesses::RemoveTemporaryFolder(const std::string& folder) {
    if (folder.empty()) return;
    const std::wstring path = Wide(folder);
    locks_.erase(folder);
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
