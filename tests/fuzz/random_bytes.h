#pragma once

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

namespace tamrin {

// How often a test throws something at its reader: `rounds`, which takes about a second, times
// TAMRIN_FUZZ_FACTOR in the environment for a long run. Every reader of foreign text has one file
// in this folder.
inline int FuzzRounds(int rounds) {
    const char* factor = std::getenv("TAMRIN_FUZZ_FACTOR");
    return rounds * (factor ? std::max(1, std::atoi(factor)) : 1);
}

// Random texts, the same ones in every run.
class RandomBytes {
public:
    // A number below `limit`.
    std::size_t Below(std::size_t limit) { return random_() % limit; }

    // A text of about `most` bytes at most. Every other one is random throughout and so meets every
    // byte; the rest is put together from `words` and so comes near to what the reader expects.
    std::string Text(std::size_t most, std::initializer_list<std::string_view> words) {
        std::string text;
        const std::size_t size = Below(most + 1);
        const bool words_too = Below(2) == 0;
        while (text.size() < size) {
            if (words_too && Below(4) != 0) {
                text += words.begin()[Below(words.size())];
            } else {
                text += static_cast<char>(Below(256));
            }
        }
        return text;
    }

private:
    std::mt19937 random_;
};

}  // namespace tamrin
