#include "app/command_line.h"

#include "app/paths.h"
#include "platform/text.h"

namespace tamrin {
namespace {

Switch ReadSwitch(std::string_view piece) {
    Switch item;
    item.text = CollapseBlanks(piece);
    const std::string_view text = item.text;
    const auto end = text.find(' ');
    item.name = text.substr(0, end);
    if (end != std::string_view::npos) {
        const std::string_view rest = text.substr(end + 1);
        item.second = rest.substr(0, rest.find(' '));
        item.rest = piece.substr(std::min(piece.find(item.name) + item.name.size(), piece.size()));
    }
    return item;
}

}  // namespace

std::vector<Switch> SplitSwitches(std::string_view command_line) {
    const std::string text =
        ReplaceAll(" " + std::string(TrimBlankRuns(command_line)), "　-", " -");
    std::vector<Switch> switches;
    std::string_view rest = text;
    auto at = rest.find(" -");
    while (at != std::string_view::npos) {
        rest.remove_prefix(at + 2);
        at = rest.find(" -");
        switches.push_back(ReadSwitch(rest.substr(0, at)));
    }
    return switches;
}

std::string SwitchValue(const Switch& item) {
    return std::string(TrimBlankRuns(ReplaceAll(item.text, item.name + " ", "")));
}

std::string DecodeStream(std::string_view word) {
    return ReplaceAll(ReplaceAll(word, "%SPC%", " "), "%SPC-%", " -");
}

std::string JoinArguments(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments) {
        if (!line.empty()) line += ' ';
        const bool quote = argument.empty() || argument.find(' ') != std::string::npos ||
                           argument.find("　") != std::string::npos;
        line += quote ? '"' + argument + '"' : argument;
    }
    return line;
}

}  // namespace tamrin
