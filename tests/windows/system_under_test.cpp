#include "system/system_under_test.h"

#include "platform/windows/files.h"
#include "platform/windows/processes.h"
#include "platform/windows/text_codec.h"
#include "windows/windows_desk.h"

namespace tamrin::test {

std::unique_ptr<TextCodec> MakeTextCodec() { return std::make_unique<WindowsTextCodec>(); }
std::unique_ptr<Files> MakeFiles() { return std::make_unique<WindowsFiles>(); }
std::unique_ptr<Processes> MakeProcesses() { return std::make_unique<WindowsProcesses>(); }
std::unique_ptr<Desk> MakeDesk() { return std::make_unique<WindowsDesk>(); }

}  // namespace tamrin::test
