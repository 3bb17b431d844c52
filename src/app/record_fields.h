#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "scenario/record.h"

namespace tamrin {

// A record as a person edits it: commas and line ends stand in its items as they are. `value` and
// `bare` are not edited and always "".
Record ReadRecordFields(std::string_view line);

// The line with these items in place of its own. Items that are not edited stay where they are;
// nothing changes when `fields` are those of the line. All actions but comments and keys get a
// "userwait" item, at the end. A tab, which no item can hold, becomes a blank.
std::string RewriteRecord(std::string_view line, const Record& fields);

// Whether the player waits before such a record.
bool TakesUserWait(std::string_view act);

// The actions in the order in which they are offered.
struct ActionName {
    std::string_view keyword;
    std::string_view description;
};
std::span<const ActionName> Actions();

// An action as a list offers it: the keyword filled up with blanks to 17 characters, "'" and the
// description. Any other action is offered as it is.
std::string ActionItem(std::string_view act);

// The action that such an item, or a typed text, stands for: what precedes the description, or the
// first comma or tab, which no action can hold.
std::string ActionOfItem(std::string_view item);

// The element types in the order in which they are offered.
std::vector<std::string> OfferedTypes();

}  // namespace tamrin
