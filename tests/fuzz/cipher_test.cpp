#include "scenario/cipher.h"

#include <gtest/gtest.h>

#include "fuzz/random_bytes.h"

namespace tamrin {
namespace {

TEST(DecipherText, TakesAnyLine) {
    RandomBytes random;
    std::mt19937 filler;
    for (int round = FuzzRounds(2000); round > 0; --round) {
        const int parameter = static_cast<int>(random.Below(0xFFFFFFFF));
        const std::string text = random.Text(200, {std::string_view("\0", 1), "V", "N", "\r\n"});
        ASSERT_EQ(DecipherText(EncipherText(text, parameter, filler), parameter), text);
        ASSERT_EQ(DecipherText(text, parameter).size(),
                  std::max<std::size_t>(text.size() / 2, 50) - 50);
    }
}

}  // namespace
}  // namespace tamrin
