#pragma once

#include <string>
#include <string_view>

namespace tamrin {

struct WindowBars;
struct WindowPlace;

// A record is one line: the action keyword, a TAB, and items that each begin with a comma:
//
//     click<TAB>,id=send,type=submit,indt=
//
// The list of the main window holds its records as lines and in no other form; every reader takes
// the items from them.

// Answers the value of the item `key` ("id", "type", "indt", "size_bar", "value", "userwait"),
// letter case ignored; the first such item wins, and "" is answered when there is none. The key
// "Act" answers the action keyword; the empty key answers the text between the keyword and the
// first item, which is empty in a well-formed line.
//
// A TAB separates as a comma does, so a value can hold neither of them as it stands. Allocates
// nothing but the answer.
std::string GetRecordItem(std::string_view line, std::string_view key);

// The items of a record as they stand in its line, still encoded; "" for one that is missing.
struct Record {
    std::string act;  // the action keyword
    std::string id;
    std::string type;
    std::string size_bar;
    std::string indt;
    std::string userwait;
    std::string value = {};
    std::string bare = {};  // what stands between the keyword and the first item

    bool operator==(const Record&) const = default;
};

// Reads all items of a line at once, each as GetRecordItem answers it.
Record ParseRecord(std::string_view line);

// The form in which "indt" holds a value: code 1 for each comma, code 2 for each CR LF pair.
std::string EncodeItemValue(std::string_view text);

// The reverse. "%%comma%%" stays as it is: scenarios rely on it being no escape here.
std::string DecodeItemValue(std::string_view text);

// The form of the "userwait" value: "&#44;" for each comma; and the reverse.
std::string EncodeComma(std::string_view text);
std::string DecodeComma(std::string_view text);

// Builds the record of an action on an element. `indt` is encoded and loses the blanks at both
// ends; `id` and `type` stand as they are.
std::string BuildElementRecord(std::string_view act, std::string_view id, std::string_view type,
                               std::string_view indt);

// Builds the record that opens a page, `size_bar` being the answer of BuildSizeBar.
std::string BuildUrlRecord(std::string_view size_bar, std::string_view address);

// Builds "left.top.width.height." and five flags, "1" for shown: tool, menu, address and status
// bar, full screen. 0.0.1024.768.11110 is a window of 1024 by 768 pixels with all its bars.
std::string BuildSizeBar(const WindowPlace& place, const WindowBars& bars, bool full_screen);

}  // namespace tamrin
