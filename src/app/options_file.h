#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/text.h"
#include "state/globals.h"

namespace tamrin {

// Options.txt in the program's folder, in the form of Conf.txt: "browser kind = explorer" (or
// "chromium") keeps to one kind of browser, "browser = PATH" names the executable of Edge or
// Chrome, "trace = PATH" a file that is told of Internet Explorer's failed calls, "debug address =
// HOST:PORT" a browser to be recorded, each "recent = PATH" an open scenario, the latest first. A
// path may hold "=", so a line is parted at its first one. What the file does not say stays as it
// is.

// The most recent files that are remembered.
inline constexpr std::size_t kMostRecentFiles = 5;

void OptionsLoad(Options& options, const Files& files, const TextCodec& codec);

// False when the file could not be written; the old one stands.
bool OptionsSave(const Options& options, Files& files, const TextCodec& codec);

// Puts a file in front of the recent ones; the oldest beyond the most falls off.
void RememberRecentFile(Options& options, const std::string& path);

}  // namespace tamrin
