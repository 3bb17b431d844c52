#pragma once

#include <string>

namespace tamrin {

// The value of an environment variable, empty when there is none.
std::wstring EnvironmentVariable(const std::wstring& name);

// The full path of this program's own file.
std::wstring OwnExecutable();

// The full path of an executable by its name (with or without ".exe"); empty when it is not found.
std::wstring LocateExecutable(std::wstring name);

// A command line that a program splits into these words again, by the rule of the C run-time
// library: a backslash is an ordinary character except in front of a double quote.
std::wstring QuoteArgument(const std::wstring& argument);

}  // namespace tamrin
