#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/process.h"

namespace tamrin {

// Paths as the command line and the settings hold them. "Blank" is an ASCII space or the full-width
// space U+3000.

// Keeps the first blank of each run of blanks and drops the others.
std::string CollapseBlanks(std::string_view text);

// A text without the blanks around it.
std::string_view TrimBlankRuns(std::string_view text);

// A text without the blanks around it and, when double quotes enclose the rest, without these.
std::string StripQuotes(std::string_view text);

// The absolute path of a relative one (beginning with ".\" or "..", or without a drive, "\\" or,
// on systems that have it, "/" in front) against the folder `base`. An absolute path is answered as
// it is. With an empty `base` the system's current folder counts.
std::string ResolvePath(std::string_view path, std::string_view base, const Files& files);

// The path of a file or folder relative to the folder `base`: ".\\x" inside it, "..\\x" beside it,
// "" for `base` itself. A path on another drive stays as it is.
std::string RelativePath(std::string_view path, std::string_view base, const Files& files);

// The folder of a path, without a final separator unless it is a root; "" when there is none.
std::string FolderOf(std::string_view path, const Files& files);

// The absolute path of the existing file that a text names, in double quotes or not: from the
// current folder or, where that has no such file, from the program's. "" when there is none.
std::string ExistingFile(std::string_view text, const Files& files);

// What follows the last backslash; the whole text when there is none.
std::string_view FileNameOf(std::string_view path);

// The folder in which the browser for recording keeps its profile: in the user's data folder, or in
// the program's folder where the system has none. It may not exist yet; the folder around it does.
std::string ProfileFolder(const Processes& processes, const Files& files);

}  // namespace tamrin
