#include "platform/chromium/field_block.h"

#include <charconv>

#include "platform/utf8.h"

namespace tamrin {
namespace {

constexpr std::string_view kValue = R"("value":")";

// Moves a character of UTF-8 from `at` to `out`, and takes its UTF-16 units off `units`.
bool TakeCharacter(const char*& at, const char* end, long& units, std::string& out) {
    const auto lead = static_cast<unsigned char>(*at);
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    if (end - at < length) return false;
    out.append(at, static_cast<std::size_t>(length));
    at += length;
    units -= length == 4 ? 2 : 1;
    return true;
}

// Reads plain text, counting as Reader does.
class PlainReader {
public:
    PlainReader(std::string_view text, std::string& out)
        : at_(text.data()), end_(at_ + text.size()), out_(out) {}

    bool Take(long units) {
        while (units > 0) {
            if (at_ == end_ || !TakeCharacter(at_, end_, units, out_)) return false;
        }
        return true;
    }

private:
    const char* at_;
    const char* end_;
    std::string& out_;
};

// Reads the inside of a JSON string, counting in UTF-16 units as the page does. A half of a
// surrogate pair that stands alone reads as U+FFFD.
class Reader {
public:
    Reader(std::string_view text, std::string& out)
        : at_(text.data()), end_(at_ + text.size()), out_(out) {}

    // Appends the next `units` units; false when the string ends before.
    bool Take(long units) {
        while (units > 0) {
            const char* plain = at_;
            const char* last = end_ - at_ > units ? at_ + units : end_;
            while (at_ < last && static_cast<signed char>(*at_) > 0 && *at_ != '\\' && *at_ != '"')
                ++at_;
            out_.append(plain, at_);
            units -= at_ - plain;
            if (units > 0 && !TakeSpecial(units)) return false;
        }
        return true;
    }

private:
    bool TakeSpecial(long& units) {
        if (at_ == end_ || *at_ == '"') return false;
        if (*at_ == '\\') return TakeEscape(units);
        return TakeCharacter(at_, end_, units, out_);
    }

    bool TakeEscape(long& units) {
        if (end_ - at_ < 2) return false;
        const char kind = at_[1];
        --units;
        if (kind == 'u') return TakeUnit(units);
        constexpr std::string_view kKinds = "bfnrt";
        constexpr std::string_view kMeant = "\b\f\n\r\t";
        const auto place = kKinds.find(kind);
        out_ += place == std::string_view::npos ? kind : kMeant[place];
        at_ += 2;
        return true;
    }

    bool TakeUnit(long& units) {
        std::uint32_t unit = 0;
        if (!ReadUnit(at_, unit)) return false;
        at_ += 6;
        std::uint32_t low = 0;
        if (unit >= 0xD800 && unit < 0xDC00 && units > 0 && ReadUnit(at_, low) && low >= 0xDC00 &&
            low < 0xE000) {
            at_ += 6;
            --units;
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
        AppendUtf8(out_, unit);
        return true;
    }

    bool ReadUnit(const char* from, std::uint32_t& unit) const {
        if (end_ - from < 6 || from[0] != '\\' || from[1] != 'u') return false;
        return std::from_chars(from + 2, from + 6, unit, 16).ptr == from + 6;
    }

    const char* at_;
    const char* end_;
    std::string& out_;
};

std::vector<int> ReadLengths(std::string_view header) {
    std::vector<int> lengths;
    const char* at = header.data();
    const char* end = at + header.size();
    while (at < end) {
        int length = 0;
        const auto [after, error] = std::from_chars(at, end, length);
        if (error != std::errc() || length < -1) return {};
        lengths.push_back(length);
        at = after + 1;  // the comma
    }
    return lengths;
}

}  // namespace

FieldBlock FieldBlock::FromReply(std::string_view reply) {
    const auto value = reply.find(kValue);
    if (value == std::string_view::npos) return {};
    return Read<Reader>(reply.substr(value + kValue.size()));
}

FieldBlock FieldBlock::FromText(std::string_view text) { return Read<PlainReader>(text); }

template <class Source>
FieldBlock FieldBlock::Read(std::string_view reply) {
    const auto header_end = reply.find(';');
    if (header_end == std::string_view::npos) return {};
    const std::vector<int> lengths = ReadLengths(reply.substr(0, header_end));

    FieldBlock block;
    block.text_.reserve(reply.size() - header_end);
    block.ends_.reserve(lengths.size());
    Source reader(reply.substr(header_end + 1), block.text_);
    for (const int length : lengths) {
        if (!reader.Take(length)) return {};
        const auto end = static_cast<std::uint32_t>(block.text_.size());
        block.ends_.push_back(length < 0 ? end | kNull : end);
    }
    return block;
}

std::string_view FieldBlock::Text(std::size_t position) const {
    if (position >= ends_.size()) return {};
    const std::uint32_t begin = position == 0 ? 0 : ends_[position - 1] & ~kNull;
    return std::string_view(text_).substr(begin, (ends_[position] & ~kNull) - begin);
}

bool FieldBlock::IsNull(std::size_t position) const {
    return position >= ends_.size() || (ends_[position] & kNull) != 0;
}

std::optional<std::string> FieldBlock::Optional(std::size_t position) const {
    if (IsNull(position)) return std::nullopt;
    return std::string(Text(position));
}

int FieldBlock::Int(std::size_t position) const {
    const std::string_view text = Text(position);
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

double FieldBlock::Number(std::size_t position) const {
    const std::string_view text = Text(position);
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace tamrin
