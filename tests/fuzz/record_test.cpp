#include "scenario/record.h"

#include <gtest/gtest.h>

#include "fuzz/random_bytes.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// The rule step by step, as it was first made: ten commas behind the line, TABs to commas, split.
std::string ItemByRule(std::string line, std::string_view key) {
    line += ",,,,,,,,,,";
    std::replace(line.begin(), line.end(), '\t', ',');
    std::vector<std::string> pieces(1);
    for (const char c : line) {
        if (c == ',') {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    if (EqualsIgnoreCase(key, "Act")) return pieces[0];
    if (key.empty()) return pieces[1];
    for (const std::string& piece : pieces) {
        if (EqualsIgnoreCase(piece.substr(0, key.size() + 1), std::string(key) + "=")) {
            return piece.substr(key.size() + 1);
        }
    }
    return "";
}

TEST(GetRecordItem, FollowsItsRuleOnAnyLine) {
    RandomBytes random;
    for (int round = FuzzRounds(5000); round > 0; --round) {
        const auto line = random.Text(100, {"\t", ",", "id", "ＩＤ", "Type", "=", "==", "日本"});
        for (const char* key : {"", "Act", "ID", "ｉｄ", "type", "id=", "=", "id,id"}) {
            ASSERT_EQ(GetRecordItem(line, key), ItemByRule(line, key)) << line << " / " << key;
        }
        ASSERT_EQ(DecodeItemValue(EncodeItemValue(DecodeItemValue(line))), DecodeItemValue(line));
    }
}

}  // namespace
}  // namespace tamrin
