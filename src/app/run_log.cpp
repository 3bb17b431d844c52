#include "app/run_log.h"

#include "scenario/character_escape.h"

namespace tamrin {
namespace {

constexpr std::size_t kMostBytes = 65536;

}  // namespace

void Log(const Platform& platform, const std::string& line) {
    Files& files = platform.files;
    const std::string path = files.ProgramFolder() + files.Separator() + "Tamrin.log";
    std::string bytes = files.Read(path).value_or("");
    AppendEncoded(bytes, platform.clock.TimeStamp() + " " + line + "\r\n", platform.codec);
    if (bytes.size() > kMostBytes) bytes.erase(0, bytes.find('\n', bytes.size() - kMostBytes) + 1);
    files.Replace(path, bytes);
}

}  // namespace tamrin
