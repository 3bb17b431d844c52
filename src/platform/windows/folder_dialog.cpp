#include "platform/windows/folder_dialog.h"

#include <windows.h>

#include <shlobj.h>

#include "platform/windows/handle.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

// The dialog is a COM object, which this thread must be prepared for.
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

// Called when the dialog is open: begins with the folder handed over as `data`.
int CALLBACK Begin(HWND dialog, UINT message, LPARAM /*parameter*/, LPARAM data) {
    if (message == BFFM_INITIALIZED) SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, data);
    return 0;
}

}  // namespace

std::string ChooseFolder(HWND owner, const std::string& title, const std::string& start) {
    const ComApartment apartment;
    const std::wstring text = Wide(title);
    const std::wstring first = Wide(start);
    BROWSEINFOW request{};
    request.hwndOwner = owner;
    request.lpszTitle = text.c_str();
    request.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    request.lpfn = Begin;
    request.lParam = reinterpret_cast<LPARAM>(first.c_str());
    const Owned<PIDLIST_ABSOLUTE, CoTaskMemFree> chosen(SHBrowseForFolderW(&request));
    if (!chosen) return "";
    wchar_t path[32768] = L"";
    if (!SHGetPathFromIDListEx(chosen.get(), path, static_cast<DWORD>(std::size(path)),
                               GPFIDL_DEFAULT)) {
        return "";
    }
    std::wstring_view folder = path;
    if (folder.size() > 3 && folder.ends_with(L'\\')) folder.remove_suffix(1);
    return Utf8(folder);
}

}  // namespace tamrin
