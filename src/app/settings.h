#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/form.h"
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

// The number that a setting's value stands for: to the nearest integer, halves to the even one; 0
// when it is not a number.
int SettingNumber(std::string_view value);

}  // namespace tamrin
