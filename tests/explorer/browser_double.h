#pragma once

#include <windows.h>

#include <exdisp.h>

#include <string>
#include <string_view>
#include <vector>

#include "explorer/bare_browser.h"
#include "explorer/event_source.h"
#include "platform/explorer/variant.h"

namespace tamrin::test {

// A browser window, or the browser of a frame. The test says what it shows and fires its events,
// with their arguments as the browser gives them.
class BrowserDouble : public BareBrowser, public EventContainer {
public:
    BrowserDouble() : EventContainer(DIID_DWebBrowserEvents2) {}

    ComPtr<IDispatch> page;
    std::string name = "Internet Explorer";
    HWND window = nullptr;
    bool busy = false;
    int ready_state = 4;
    // What every call answers from now on, unless it is S_OK.
    HRESULT failure = S_OK;
    // One call fails, the how manieth of all and how.
    int failing_call = -1;
    HRESULT failing_with = S_OK;
    int calls = 0;
    // The calls that change something: "Navigate2 http://...", "Left 10", "Visible True", "Quit".
    std::vector<std::string> lines;
    LONG left = 0, top = 0, width = 0, height = 0;
    int tool = 0;
    VARIANT_BOOL menu = 0, address_bar = 0, status_bar = 0, full = 0, visible = 0;

    // `frame` is the browser of the frame, null for the window itself.
    void FireBeforeNavigate2(std::string_view url, IDispatch* frame = nullptr);
    void FireNavigateComplete2(std::string_view url, IDispatch* frame = nullptr);
    void FireDocumentComplete(std::string_view url, IDispatch* frame = nullptr);
    void FireNavigateError(std::string_view url, long code);
    void FireOnQuit();

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return BareBrowser::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return BareBrowser::Release(); }

    STDMETHODIMP Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override;
    STDMETHODIMP Quit() override;
    STDMETHODIMP get_Document(IDispatch** answer) override;
    STDMETHODIMP get_Busy(VARIANT_BOOL* answer) override;
    STDMETHODIMP get_ReadyState(READYSTATE* answer) override;
    STDMETHODIMP get_Name(BSTR* answer) override;
    STDMETHODIMP get_HWND(SHANDLE_PTR* answer) override;
    STDMETHODIMP get_Visible(VARIANT_BOOL* v) override { return Give(v, visible); }
    STDMETHODIMP put_Visible(VARIANT_BOOL v) override { return Take("Visible", visible, v); }
    STDMETHODIMP get_Left(LONG* v) override { return Give(v, left); }
    STDMETHODIMP put_Left(LONG v) override { return Take("Left", left, v); }
    STDMETHODIMP get_Top(LONG* v) override { return Give(v, top); }
    STDMETHODIMP put_Top(LONG v) override { return Take("Top", top, v); }
    STDMETHODIMP get_Width(LONG* v) override { return Give(v, width); }
    STDMETHODIMP put_Width(LONG v) override { return Take("Width", width, v); }
    STDMETHODIMP get_Height(LONG* v) override { return Give(v, height); }
    STDMETHODIMP put_Height(LONG v) override { return Take("Height", height, v); }
    STDMETHODIMP get_ToolBar(int* v) override { return Give(v, tool); }
    STDMETHODIMP put_ToolBar(int v) override { return Take("ToolBar", tool, v); }
    STDMETHODIMP get_MenuBar(VARIANT_BOOL* v) override { return Give(v, menu); }
    STDMETHODIMP put_MenuBar(VARIANT_BOOL v) override { return Take("MenuBar", menu, v); }
    STDMETHODIMP get_AddressBar(VARIANT_BOOL* v) override { return Give(v, address_bar); }
    STDMETHODIMP put_AddressBar(VARIANT_BOOL v) override {
        return Take("AddressBar", address_bar, v);
    }
    STDMETHODIMP get_StatusBar(VARIANT_BOOL* v) override { return Give(v, status_bar); }
    STDMETHODIMP put_StatusBar(VARIANT_BOOL v) override { return Take("StatusBar", status_bar, v); }
    STDMETHODIMP get_FullScreen(VARIANT_BOOL* v) override { return Give(v, full); }
    STDMETHODIMP put_FullScreen(VARIANT_BOOL v) override { return Take("FullScreen", full, v); }

private:
    HRESULT Result() { return calls++ == failing_call ? failing_with : failure; }
    template <typename T>
    HRESULT Give(T* answer, T value) {
        const HRESULT result = Result();
        if (SUCCEEDED(result)) *answer = value;
        return result;
    }
    template <typename T>
    HRESULT Take(const char* member, T& place, T value) {
        if (const HRESULT result = Result(); FAILED(result)) return result;
        place = value;
        lines.push_back(member + (" " + std::to_string(static_cast<int>(value))));
        return S_OK;
    }
    void FireShown(DISPID event, std::string_view url, IDispatch* frame);
};

}  // namespace tamrin::test
