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
};

// The switches of a command line: what stands behind each " -" (or full-width space and "-"). What
// stands before the first is ignored.
std::vector<Switch> SplitSwitches(std::string_view command_line);

// The value of a switch that takes all the rest as one text, such as a file name with blanks:
// every occurrence of the name and a space removed, blanks around it trimmed. That a file name
// which itself holds such an occurrence loses it is how these switches have always read.
std::string SwitchValue(const Switch& item);

// The scenario text that a "stream" switch carries in its one word: "%SPC%" stands for a space and
// "%SPC-%" for a space and a hyphen.
std::string DecodeStream(std::string_view word);

// One command line of a program's arguments, those with blanks in double quotes.
std::string JoinArguments(const std::vector<std::string>& arguments);

}  // namespace tamrin
