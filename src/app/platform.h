#pragma once

#include "platform/browser.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/text.h"
#include "platform/window_system.h"

namespace tamrin {

// What the program runs on.
struct Platform {
    WindowSystem& windows;
    Clock& clock;
    Files& files;
    const TextCodec& codec;
    Processes& processes;
    BrowserLauncher& launcher;
    BrowserWindows& browsers;
};

}  // namespace tamrin
