#pragma once

namespace tamrin {

// Lets a crash of this program leave a minidump, which its user can send: "Tamrin-crash.dmp" in the
// program's folder or, where that cannot be written, in the folder for temporary files. It holds
// the threads' stacks and the loaded modules, and takes the place of an older one. The crash then
// goes on as the system has it.
void DumpCrashes();

}  // namespace tamrin
