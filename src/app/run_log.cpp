#include "app/run_log.h"

#include "scenario/character_escape.h"

namespace tamrin {

void Log(const Platform& platform, const std::string& line) {
    Files& files = platform.files;
    std::string bytes;
    AppendEncoded(bytes, platform.clock.TimeStamp() + " " + line + "\r\n", platform.codec);
    files.Append(files.ProgramFolder() + files.Separator() + "Tamrin.log", bytes);
}

}  // namespace tamrin
