#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tamrin {

// How the calls into the browser went: their number, and on demand a line for each that failed.
class ComCalls {
public:
    // Gets every line from now on; none for no more. Without it nothing is written.
    void Trace(std::function<void(const std::string&)> write) { write_ = std::move(write); }

    // Counts a call and notes its failure as "get INPUT.value: 0x80020003"; answers whether it
    // succeeded. `detail` is what the object itself says of the failure.
    bool Note(HRESULT result, std::string_view kind, std::string_view object,
              std::string_view member, std::string_view detail = {});

    std::uint64_t count() const { return count_; }

private:
    std::function<void(const std::string&)> write_;
    std::uint64_t count_ = 0;
};

// Whether a call failed because the program that holds the object has ended or let go of it.
bool IsDisconnected(HRESULT result);

}  // namespace tamrin
