#include "scenario/record.h"

#include <algorithm>
#include <array>

#include "platform/browser.h"
#include "platform/text.h"

namespace tamrin {
namespace {

constexpr char kEncodedComma = '\x01';
constexpr char kEncodedLineEnd = '\x02';
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHtmlComma = "&#44;";

// What stands before the first separator.
std::string_view FirstPiece(std::string_view text) {
    text = text.substr(0, text.find(','));
    return text.substr(0, text.find('\t'));
}

// Whether the last piece of `text` is `key`, which holds no separator.
bool LastPieceIs(std::string_view text, std::string_view key) {
    if (text.size() < key.size()) return false;
    const std::size_t begin = text.size() - key.size();
    const bool whole = begin == 0 || text[begin - 1] == ',' || text[begin - 1] == '\t';
    return whole && EqualsIgnoreCase(text.substr(begin), key);
}

}  // namespace

std::string GetRecordItem(std::string_view line, std::string_view key) {
    if (EqualsIgnoreCase(key, "Act")) return std::string(FirstPiece(line));
    if (key.empty()) {
        const std::size_t begin = FirstPiece(line).size() + 1;
        return begin > line.size() ? std::string() : std::string(FirstPiece(line.substr(begin)));
    }
    if (FirstPiece(key) != key) return {};
    // There are few "=" in a line, and finding them is faster than walking through the pieces.
    for (std::size_t at = line.find('='); at != line.npos; at = line.find('=', at + 1)) {
        if (LastPieceIs(line.substr(0, at), key)) {
            return std::string(FirstPiece(line.substr(at + 1)));
        }
    }
    return {};
}

Record ParseRecord(std::string_view line) {
    struct Item {
        std::string_view key;
        std::string Record::* member;
    };
    static constexpr std::array kItems = {
        Item{"id", &Record::id},       Item{"type", &Record::type},
        Item{"indt", &Record::indt},   Item{"size_bar", &Record::size_bar},
        Item{"value", &Record::value}, Item{"userwait", &Record::userwait},
    };
    Record record;
    std::array<bool, kItems.size()> found{};
    for (int column = 0;; ++column) {
        const std::string_view piece = FirstPiece(line);
        if (column == 0) record.act = piece;
        if (column == 1) record.bare = piece;
        const auto equals = piece.find('=');
        for (std::size_t i = 0; equals != piece.npos && i < kItems.size(); ++i) {
            if (found[i] || !EqualsIgnoreCase(piece.substr(0, equals), kItems[i].key)) continue;
            record.*kItems[i].member = piece.substr(equals + 1);
            found[i] = true;
        }
        if (piece.size() == line.size()) return record;
        line.remove_prefix(piece.size() + 1);
    }
}

std::string EncodeItemValue(std::string_view text) {
    std::string value = ReplaceAll(text, kLineEnd, {&kEncodedLineEnd, 1});
    std::replace(value.begin(), value.end(), ',', kEncodedComma);
    return value;
}

std::string DecodeItemValue(std::string_view text) {
    std::string value = ReplaceAll(text, {&kEncodedLineEnd, 1}, kLineEnd);
    std::replace(value.begin(), value.end(), kEncodedComma, ',');
    return value;
}

std::string EncodeComma(std::string_view text) { return ReplaceAll(text, ",", kHtmlComma); }

std::string DecodeComma(std::string_view text) { return ReplaceAll(text, kHtmlComma, ","); }

std::string BuildElementRecord(std::string_view act, std::string_view id, std::string_view type,
                               std::string_view indt) {
    const std::string value = EncodeItemValue(indt);
    std::string line(act);
    line.append("\t,id=").append(id).append(",type=").append(type);
    return line.append(",indt=").append(Trim(value));
}

std::string BuildUrlRecord(std::string_view size_bar, std::string_view address) {
    std::string line = "url\t,id=,size_bar=";
    return line.append(size_bar).append(",indt=").append(EncodeItemValue(address));
}

std::string BuildSizeBar(const WindowPlace& place, const WindowBars& bars, bool full_screen) {
    std::string text;
    for (const int pixels : {place.left, place.top, place.width, place.height}) {
        text.append(std::to_string(pixels)).append(1, '.');
    }
    for (const bool shown : {bars.tool, bars.menu, bars.address, bars.status, full_screen}) {
        text += shown ? '1' : '0';
    }
    return text;
}

}  // namespace tamrin
