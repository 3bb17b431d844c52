#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/form.h"
#include "platform/text.h"
#include "state/globals.h"

namespace tamrin {

// Sets every setting to its default. The main window's is the bottom right corner of the screen.
void SetDefaultConf(Settings& settings, const Place& screen);

// Calls `take` with each setting of a settings file's text: one per line, key and value parted by
// one "=". The key comes without the blanks around it and in lower case, the value without those in
// front of it. A line with no "=" or more than one is passed over.
void ForEachSetting(
    std::string_view text,
    const std::function<void(const std::string& key, std::string_view value)>& take);

// Reads Options.txt in the program's folder: "browser = PATH" names the browser's executable. What
// the file does not say stays as it is.
void OptionsLoad(Options& options, const Files& files, const TextCodec& codec);

}  // namespace tamrin
