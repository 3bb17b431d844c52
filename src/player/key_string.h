#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/input.h"

namespace tamrin {

// Reads a key string as Windows programs write it: "+" Shift, "^" Ctrl, "%" Alt for the next key or
// the next group in parentheses, "~" Enter, named keys in braces ("{TAB}", "{F5}"), a repeat count
// behind a name or character ("{LEFT 42}", "{h 10}"), and special characters as themselves in
// braces ("{+}", "{{}", "{}}"). Names count without regard to case; a second name of a key is
// answered as its first ("BS" as "BACKSPACE"). Nothing when the string is malformed, and `why` says
// in Japanese what is wrong: an unknown name, a brace or parenthesis without its partner, a
// modifier without a key.
std::optional<std::vector<KeyStroke>> ParseKeyString(std::string_view text, std::string& why);

// A text as a key string that types exactly it; a line break becomes Enter.
std::string KeyStringOf(std::string_view text);

}  // namespace tamrin
