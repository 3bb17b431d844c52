#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/browser.h"
#include "platform/clock.h"
#include "recorder/event_record.h"
#include "recorder/page_link.h"
#include "state/globals.h"

namespace tamrin {

// What the recorder needs of the main window.
class RecorderHost {
public:
    virtual ~RecorderHost() = default;

    // The record list. A line's view lasts until events are handled.
    virtual int RecordCount() = 0;
    virtual std::string_view Record(int row) = 0;
    // Adds a record at the end.
    virtual void AppendRecord(const std::string& line) = 0;
    virtual void SelectRecord(int row) = 0;

    virtual void SetStatus(const std::string& text) = 0;
    virtual void ShowMessage(const std::string& text, const std::string& title) = 0;
    // Shows a text for a second without taking the focus. Returns at once.
    virtual void ShowNotice(const std::string& text) = 0;

    // The recorded window shows another page, which is complete.
    virtual void PageShown() = 0;
    // The recorded window is closed.
    virtual void BrowserClosed() = 0;
};

// What a recording begins with: a new scenario, or one that it goes on with.
enum class RecordKind { kNew, kAppend };

// Turns what a user does in a browser window into records of the list, from Start to Finish.
class Recorder : private BrowserEvents, private PageListener {
public:
    Recorder(Globals& globals, Clock& clock, RecorderHost& host)
        : globals_(globals), clock_(clock), host_(host) {}
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // Connects to the window and sets the activity to "rec".
    void Start(std::shared_ptr<Browser> browser, RecordKind kind);

    // Whether a handler is running. It may wait, and the user can act meanwhile.
    bool Handling() const { return handling_ > 0; }

    // Handles what the user has done until now, and records the field that still has the focus if
    // its value has changed. Must not be called while a handler is running.
    void Finish();

    // Ends all connections.
    void Release();

    // The recorded window; null when nothing is recorded or it is closed.
    const std::shared_ptr<Browser>& browser() const { return browser_; }
    // Its top document as it is recorded.
    const Document& document() const;

    // Whether this recording holds a password.
    bool has_password() const { return has_password_; }

private:
    // BrowserEvents
    void DocumentComplete(bool top) override;
    void BeforeNavigate2(const std::string& url) override;
    void NavigateComplete2() override;
    void NavigateError(const std::string& url, const std::string& reason) override;
    void OnQuit() override;

    // PageListener
    void onclick(PageLink& page) override;
    void onfocusin(PageLink& page) override;
    void onbeforedeactivate(PageLink& page) override;
    void onkeypress(PageLink& page, int key_code) override;
    void onsubmit(PageLink& page) override;

    // The button that Enter in a field presses, and the record of that click.
    struct DefaultButton {
        std::string id;
        EventValue click;
    };

    // watch.cpp: which element and value are watched.
    std::unique_ptr<PageLink> Link(const Document& document, const Element& frame);
    void ConnectDocument();
    void ConnectFrames();
    PageLink* FrameWith(const Element& frame);
    void WatchActiveElement(PageLink& page);
    void WatchFrame(const Element& frame);
    void Watch(Element element);
    static std::string InputText(const Element& field);
    void CheckClickedFrame(PageLink& page);
    static std::optional<DefaultButton> FindDefaultButton(const PageLink& page);

    // Handles events until the browser has no more of what the user has done.
    void HandleAllEvents();

    void RecordEvent(std::string_view event, const PageLink* page);
    void Append(const std::string& id, const EventValue& read, std::string_view event);
    // Whether an event that gives the same line as the one before is only that one's echo.
    bool IsEcho(std::string_view event) const;
    void RecordUrl();
    void Pause();
    bool Recording() const { return globals_.ActivityContains("rec"); }

    // Marks that a handler is running.
    class Handler;

    Globals& globals_;
    Clock& clock_;
    RecorderHost& host_;
    RecordKind kind_ = RecordKind::kNew;

    std::shared_ptr<Browser> browser_;
    std::unique_ptr<Connection> event_ie_;
    std::unique_ptr<PageLink> event_doc_;
    std::vector<std::unique_ptr<PageLink>> frames_;  // of the page, one level deep
    std::string address_;                            // of the page
    WindowState window_;                             // as it was at the start
    bool connected_early_ = false;                   // to a page that is not complete yet

    Element watch_elm_;
    std::string watch_value_;
    std::string watch_text_;  // what leaving it at that moment would have recorded
    bool watch_left_ = true;  // the focus has left the watched element since
    // What was recorded of the watched element when Enter submitted its form.
    std::optional<std::string> sent_text_;
    std::optional<DefaultButton> default_button_;  // just pressed by Enter

    std::optional<std::uint32_t> left_at_;  // when the page was last about to go

    int handling_ = 0;
    std::uint32_t handled_at_ = 0;  // when the last handler ended
    bool paused_ = false;           // in one of the handlers that follow each other without a gap
    bool has_password_ = false;
};

}  // namespace tamrin
