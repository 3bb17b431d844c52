#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/event_sink.h"
#include "platform/explorer/explorer_window.h"
#include "platform/explorer/screen_windows.h"

namespace tamrin {

// A window of Internet Explorer, or one tab of it, reached through its browser object. When the
// browser quits or its process ends, all objects are released and all reads answer empty.
class ExplorerBrowser : public ExplorerWindow {
public:
    // `found` is the content window by which it was found when the shell does not list it.
    ExplorerBrowser(ComCalls& calls, DispatchObject browser, ContentWindow found = {});
    ~ExplorerBrowser() override;
    ExplorerBrowser(const ExplorerBrowser&) = delete;
    ExplorerBrowser& operator=(const ExplorerBrowser&) = delete;

    bool Navigate(const std::string& address) override;
    void Quit() override;
    bool Busy() override;
    int ReadyState() override;
    bool Alive() override;
    bool Closed() override { return closed_; }
    void SetVisible(bool visible) override;
    void SetPlace(const WindowPlace& place) override;
    void SetBars(const WindowBars& bars) override;
    WindowState State() override;
    std::uint64_t Handle() override;
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override;

    // How to find the browser object that replaces this one, given its window. A browser that is
    // led to a page of another security zone goes on in another process, and the object by which
    // it was made dies.
    using FindSuccessor = std::function<DispatchObject(HWND frame)>;
    void SetSuccessor(FindSuccessor find) { find_successor_ = std::move(find); }

    bool Is(IUnknown* browser) const override {
        return browser_ && SameObject(browser_.object().get(), browser);
    }
    HWND found_by() const override { return found_.content; }

private:
    // The same answer. One that shows that the browser is gone releases it.
    Variant Noted(Variant answer);
    Variant Get(const char* property) { return Noted(browser_.Get(property)); }
    // Subscribes to the browser's events. Done at the first use, not for a window that is only
    // listed.
    void Listen();
    void NoteNavigation(const EventArguments& arguments);
    void NoteShown(const EventArguments& arguments);
    void NoteComplete(const EventArguments& arguments);
    void NoteError(const EventArguments& arguments);
    // The browser is gone: releases everything and tells it.
    void Lose();
    // The same when the browser object answers no more, unless a successor may come.
    void Part();
    void Release();
    // Whether a successor may still come; takes it over when it has come.
    bool Moving();
    HWND Frame() override;
    HWND Content() override;
    std::shared_ptr<ExplorerDocument> Page() override;

    DispatchObject browser_;
    const ContentWindow found_;
    bool closed_ = false;  // it has said that it quits
    std::unique_ptr<EventConnection> events_;
    HWND window_ = nullptr;  // what Frame answered last
    // Until then a navigation counts as begun, although the browser does not say so yet.
    std::uint64_t begins_until_ = 0;
    FindSuccessor find_successor_;
    std::uint64_t may_move_until_ = 0;  // 0 when no successor may come
};

}  // namespace tamrin
