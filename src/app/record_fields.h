#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tamrin {

// The fields of a record as a person edits them: commas and line ends stand in them as they are.
struct RecordFields {
    std::string act;
    std::string id;
    std::string type;
    std::string size_bar;
    std::string indt;
    std::string userwait;  // seconds

    bool operator==(const RecordFields&) const = default;
};

RecordFields ReadRecordFields(std::string_view line);

// The record with these fields in place of those of `line`. Items that are not among them stay
// where they are; nothing changes when the fields are those of `line`. All actions but comments and
// keys get a "userwait" item, at the end. A tab, which no field can hold, becomes a blank.
std::string RewriteRecord(std::string_view line, const RecordFields& fields);

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

// The action that such an item, or a typed text, stands for: what precedes its first blank.
std::string ActionOfItem(std::string_view item);

// The element types in the order in which they are offered.
std::span<const std::string_view> ElementTypes();

}  // namespace tamrin
