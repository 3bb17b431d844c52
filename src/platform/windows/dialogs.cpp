#include "platform/windows/dialogs.h"

#include <windows.h>

#include <commdlg.h>

#include <algorithm>
#include <vector>

#include "platform/windows/folder_dialog.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr std::size_t kLongestPath = 32768;

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
    std::vector<wchar_t> path(kLongestPath);
    std::copy_n(proposed.begin() + static_cast<std::ptrdiff_t>(name),
                std::min(proposed.size() - name, kLongestPath - 1), path.begin());

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

}  // namespace

Answer WindowsDialogs::MsgBox(const std::string& text, const std::string& title, Buttons buttons,
                              bool cancel_is_default) {
    // No form takes input meanwhile, whichever owns the box.
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
    return ChooseFolder(owner_(), title, start);
}

}  // namespace tamrin
