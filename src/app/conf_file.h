#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/text.h"
#include "state/globals.h"

namespace tamrin {

// Conf.txt in the program's folder: one setting per line, key " = " value CR LF, in Shift-JIS.
//
// Two settings are written and not read back, which is intended: whoever relies on the file knows
// that enciphering ("cipher") and the play count start every run at their defaults. The file is
// read under the key "scipher" instead, so an older file may still switch enciphering on.

// Sets what the text of a settings file says; everything else stays as it is. Unknown keys and
// damaged lines are passed over.
void ReadConf(Settings& settings, std::string_view text);

// The whole text of a settings file.
std::string WriteConf(const Settings& settings);

// The same with the file. Without a file that can be read nothing changes; false when it could not
// be written, and the old one stands.
void ReadConfFile(Settings& settings, const Files& files, const TextCodec& codec);
bool WriteConfFile(const Settings& settings, Files& files, const TextCodec& codec);

}  // namespace tamrin
