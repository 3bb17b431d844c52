#include "explorer/other_program.h"

#include <ole2.h>

#include <future>

namespace tamrin::test {
namespace {

constexpr UINT kDo = WM_APP;

LRESULT CALLBACK Door(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != kDo) return DefWindowProcW(window, message, wparam, lparam);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what Do sent
    (*reinterpret_cast<const std::function<void()>*>(lparam))();
    return 0;
}

HWND MakeDoor() {
    WNDCLASSW door{};
    door.lpfnWndProc = Door;
    door.lpszClassName = L"TamrinTestDoor";
    RegisterClassW(&door);
    return CreateWindowExW(0, door.lpszClassName, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                           nullptr, nullptr);
}

}  // namespace

OtherProgram::OtherProgram() {
    std::promise<HWND> made;
    auto door = made.get_future();
    thread_ = std::thread([this, &made] {
        OleInitialize(nullptr);
        made.set_value(MakeDoor());
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
        OleUninitialize();
        over_ = true;
    });
    door_ = door.get();
}

OtherProgram::~OtherProgram() {
    Do([] { PostQuitMessage(0); });
    // When its windows go, those of this thread may be told.
    Pump([this] { return over_.load(); });
    thread_.join();
}

void OtherProgram::Do(const std::function<void()>& act) {
    SendMessageW(door_, kDo, 0, reinterpret_cast<LPARAM>(&act));
}

ComPtr<IDispatch> OtherProgram::Give(const std::function<ComPtr<IDispatch>()>& make) {
    ComPtr<IStream> packed;
    Do([&] {
        const ComPtr<IDispatch> object = make();
        CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object.get(), packed.Out());
    });
    ComPtr<IDispatch> given;
    IStream* stream = packed.get();
    stream->AddRef();  // the call takes it
    CoGetInterfaceAndReleaseStream(stream, IID_IDispatch, reinterpret_cast<void**>(given.Out()));
    return given;
}

bool OtherProgram::Pump(const std::function<bool()>& over, DWORD longest_ms) {
    const DWORD start = GetTickCount();
    while (!over()) {
        if (GetTickCount() - start > longest_ms) return false;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        Sleep(5);
    }
    return true;
}

}  // namespace tamrin::test
