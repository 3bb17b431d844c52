#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/form.h"
#include "platform/text.h"
#include "state/globals.h"

namespace tamrin {

// The two settings files in the program's folder. Both hold one setting per line, key " = " value
// CR LF, in Shift-JIS. Keys are read in upper or lower case and with blanks around them. Unknown
// keys and damaged lines are skipped; what a file does not say stays as it is.

// Sets every setting to its default. The default place of the main window is the bottom right
// corner of the screen.
void SetDefaultConf(Settings& settings, const Place& screen);

// Conf.txt holds the settings that users know. A line with more than one "=" is skipped. A number
// is rounded to the nearest integer, halves to the even one; a text that is no number counts as 0.
//
// Two settings are written but not read back, which is intended: users rely on enciphering
// ("cipher") and the play count being at their defaults at each start. The reader looks for
// "scipher" instead, so an older file may still switch enciphering on.
void ReadConf(Settings& settings, std::string_view text);
std::string WriteConf(const Settings& settings);

// The same with the file. Without a readable file nothing changes, and a window without width or
// height keeps the place that it has. SaveConf answers false when the file cannot be written; the
// old one stays.
void LoadConf(Settings& settings, const Files& files, const TextCodec& codec);
bool SaveConf(const Settings& settings, Files& files, const TextCodec& codec);

// Options.txt holds what Conf.txt does not know. "browser kind = explorer" (or "chromium") keeps to
// one kind of browser, "browser = PATH" names the executable of Edge or Chrome, "trace = PATH" a
// file for Internet Explorer's failed calls, "debug address = HOST:PORT" a browser to record, "tool
// panel = 1" shows the tool panel, and each "recent = PATH" names a scenario that was open, the
// latest first. The value begins after the first
// "=", because a path may contain others; quotes around it are dropped.
void ReadOptions(Options& options, std::string_view text);
std::string WriteOptions(const Options& options);

void LoadOptions(Options& options, const Files& files, const TextCodec& codec);
bool SaveOptions(const Options& options, Files& files, const TextCodec& codec);

// The play count that a text means, 1 to 99999; nothing for any other text. kPlayCountFault is what
// the user is told then.
std::optional<int> PlayCountOf(std::string_view text);
inline constexpr const char* kPlayCountFault = "1 から 99999 までの数を入力してください。";

// How many recently opened files are remembered.
inline constexpr std::size_t kMaxRecentFiles = 5;

}  // namespace tamrin
