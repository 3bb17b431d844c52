#pragma once

#include <iconv.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/text.h"

namespace tamrin {

// Code page 932 by the system's iconv. Where the system lacks that code page, only ASCII is text.
class PosixTextCodec : public TextCodec {
public:
    PosixTextCodec();
    ~PosixTextCodec() override;
    PosixTextCodec(const PosixTextCodec&) = delete;
    PosixTextCodec& operator=(const PosixTextCodec&) = delete;

    std::string Decode(std::string_view bytes) const override;
    std::optional<std::string> Encode(std::string_view utf8) const override;

private:
    iconv_t to_utf8_;
    iconv_t from_utf8_;
};

}  // namespace tamrin
