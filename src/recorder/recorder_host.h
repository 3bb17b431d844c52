#pragma once

#include <string>
#include <string_view>

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
    // Shows a text for a second, in nobody's way. Returns at once.
    virtual void ShowNotice(const std::string& text) = 0;

    // The recorded window shows another page, which is complete.
    virtual void PageShown() = 0;
    // The recorded window is closed.
    virtual void BrowserClosed() = 0;
};

}  // namespace tamrin
