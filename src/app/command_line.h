#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tamrin {

// One switch of the command line, without its " -".
struct Switch {
    std::string name;    // its first word
    std::string second;  // its second word, "" when there is none
    std::string text;    // all of it, runs of blanks collapsed
    std::string rest;    // what follows the name, as it was written
};

// The switches of a command line: the text after each " -" (or full-width space and "-"). Text
// before the first switch is ignored.
std::vector<Switch> SplitSwitches(std::string_view command_line);

// The value of a switch that takes the rest of its text, such as a file name with blanks: every
// occurrence of the switch's name and a space is removed, and blanks around the rest. A file name
// that contains such an occurrence loses it too; scripts in use rely on this reading. `rest` is the
// value as it was written.
std::string SwitchValue(const Switch& item);

// The scenario text that a "stream" switch carries in its one word: "%SPC%" stands for a space and
// "%SPC-%" for a space and a hyphen.
std::string DecodeStream(std::string_view word);

// One command line of a program's arguments, those with blanks in double quotes.
std::string JoinArguments(const std::vector<std::string>& arguments);

}  // namespace tamrin
