#include "platform/windows/dialogs.h"

#include <windows.h>

#include <commdlg.h>
#include <shlobj.h>

#include <algorithm>
#include <vector>

#include "platform/windows/handle.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr std::size_t kMaxPath = 32768;

UINT BoxKind(Buttons buttons, bool cancel_is_default) {
    switch (buttons) {
        case Buttons::kOk:
            return MB_OK;
        case Buttons::kOkCancel:
            return MB_OKCANCEL | (cancel_is_default ? MB_DEFBUTTON2 : 0U);
        case Buttons::kYesNo:
            return MB_YESNO;
        case Buttons::kYesNoCancel:
            return MB_YESNOCANCEL | (cancel_is_default ? MB_DEFBUTTON3 : 0U);
    }
    return MB_OK;
}

// The pairs of label and patterns that a file dialog takes, each ended by a null character.
std::wstring Filter(const FileDialog& dialog) {
    return Wide(dialog.filter) + L'\0' + Wide(dialog.pattern) + L'\0' + L'\0';
}

// The extension of the first pattern: "csv" of "*.csv;*.tamrin".
std::wstring FirstExtension(const FileDialog& dialog) {
    const std::string first = dialog.pattern.substr(0, dialog.pattern.find(';'));
    return Wide(first.substr(first.rfind('.') + 1));
}

std::string ChooseFile(HWND owner, const FileDialog& dialog, DWORD flags,
                       BOOL(WINAPI* choose)(LPOPENFILENAMEW)) {
    const std::wstring title = Wide(dialog.title);
    const std::wstring filter = Filter(dialog);
    const std::wstring extension = FirstExtension(dialog);
    const std::wstring proposed = Wide(dialog.proposed);
    const std::size_t name = proposed.find_last_of(L"\\/") + 1;  // 0 when there is no folder
    const std::wstring folder = proposed.substr(0, name);
    std::vector<wchar_t> path(kMaxPath);
    std::copy_n(proposed.begin() + static_cast<std::ptrdiff_t>(name),
                std::min(proposed.size() - name, kMaxPath - 1), path.begin());

    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.lpstrFilter = filter.c_str();
    request.lpstrFile = path.data();
    request.nMaxFile = static_cast<DWORD>(path.size());
    request.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    request.lpstrTitle = title.empty() ? nullptr : title.c_str();
    request.lpstrDefExt = extension.c_str();
    request.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | flags;
    return choose(&request) ? Utf8(path.data()) : std::string();
}

// Prepares this thread for COM, which the folder dialog needs.
class ComApartment {
public:
    ComApartment()
        : entered_(SUCCEEDED(
              CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {}
    ~ComApartment() {
        if (entered_) CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool entered_;
};

// Called by the dialog: begins with the folder in `data`.
int CALLBACK SelectStart(HWND dialog, UINT message, LPARAM /*parameter*/, LPARAM data) {
    if (message == BFFM_INITIALIZED) SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, data);
    return 0;
}

}  // namespace

Answer WindowsDialogs::MsgBox(const std::string& text, const std::string& title, Buttons buttons,
                              bool cancel_is_default) {
    // MB_TASKMODAL disables all forms, not only the owner.
    const int button = MessageBoxW(owner_(), Wide(text).c_str(), Wide(title).c_str(),
                                   BoxKind(buttons, cancel_is_default) | MB_TASKMODAL);
    switch (button) {
        case IDYES:
            return Answer::kYes;
        case IDNO:
            return Answer::kNo;
        case IDOK:
            return Answer::kOk;
        default:
            return buttons == Buttons::kOk ? Answer::kOk : Answer::kCancel;
    }
}

std::string WindowsDialogs::SaveFile(const FileDialog& dialog) {
    return ChooseFile(owner_(), dialog, OFN_OVERWRITEPROMPT, GetSaveFileNameW);
}

std::string WindowsDialogs::OpenFile(const FileDialog& dialog) {
    return ChooseFile(owner_(), dialog, OFN_FILEMUSTEXIST, GetOpenFileNameW);
}

std::string WindowsDialogs::OpenFolder(const std::string& title, const std::string& start) {
    const ComApartment apartment;
    const std::wstring text = Wide(title);
    const std::wstring first = Wide(start);
    BROWSEINFOW request{};
    request.hwndOwner = owner_();
    request.lpszTitle = text.c_str();
    request.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    request.lpfn = SelectStart;
    request.lParam = reinterpret_cast<LPARAM>(first.c_str());
    const Owned<PIDLIST_ABSOLUTE, CoTaskMemFree> chosen(SHBrowseForFolderW(&request));
    if (!chosen) return "";
    wchar_t path[kMaxPath] = L"";
    if (!SHGetPathFromIDListEx(chosen.get(), path, static_cast<DWORD>(std::size(path)),
                               GPFIDL_DEFAULT)) {
        return "";
    }
    std::wstring_view folder = path;
    if (folder.size() > 3 && folder.ends_with(L'\\')) folder.remove_suffix(1);
    return Utf8(folder);
}

}  // namespace tamrin
