#include "scenario/scenario_text.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"
#include "platform/utf8.h"
#include "scenario/character_escape.h"
#include "scenario/cipher.h"

namespace tamrin {
namespace {

constexpr std::string_view kRecordEnd = "\r\n";
constexpr std::string_view kCipherMark = "CIPHER";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Appends the lines of `text`, each decoded by `decode`. The text is split before it is decoded: CR
// and LF are never part of a longer character, so a damaged character cannot join two lines.
template <typename Decode>
void AppendLines(std::vector<std::string>& lines, std::string_view text, Decode decode) {
    if (lines.empty()) {
        const auto ends = std::count(text.begin(), text.end(), '\n');
        lines.reserve(static_cast<std::size_t>(ends) + 1);
    }
    while (!text.empty())
        lines.push_back(UnescapeCharacters(decode(TakeLine(text, LineEnds::kAny))));
}

// Deciphers each line below the mark separately, so that a file joined from several files works.
template <typename Decode>
std::vector<std::string> DecipherLines(std::string_view text, Decode decode) {
    // Empty lines at the end of the file are no records.
    text = text.substr(0, text.find_last_not_of(kRecordEnd) + 1);
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::string plain =
            DecipherText(TakeLine(text, LineEnds::kAny), kScenarioCipherParameter);
        // Only filler is an empty record, except as the only line of a scenario without records.
        if (plain.empty() && (!lines.empty() || !text.empty())) lines.emplace_back();
        AppendLines(lines, plain, decode);
    }
    return lines;
}

// Encodes a text of whole lines. The code page almost always holds all of it; otherwise only lines
// with other characters are encoded character by character.
std::string EncodeLines(std::string_view text, const TextCodec& codec) {
    if (auto all = codec.Encode(text)) return *std::move(all);
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const std::string_view line = TakeLine(text, LineEnds::kAny);
        if (const auto encoded = codec.Encode(line)) {
            bytes += *encoded;
        } else {
            AppendEncoded(bytes, line, codec);
        }
        bytes += kRecordEnd;
    }
    return bytes;
}

}  // namespace

std::string WriteScenarioText(const std::vector<std::string>& lines, const TextCodec& codec,
                              bool cipher) {
    std::size_t size = 0;
    for (const std::string& line : lines) size += line.size() + kRecordEnd.size();
    std::string text;
    text.reserve(size);
    for (const std::string& line : lines) {
        std::string_view rest = line;
        if (!cipher && text.empty() && line == kCipherMark) {
            // As the first line it would mark an enciphered file.
            AppendEscape(text, static_cast<unsigned char>(rest.front()));
            rest.remove_prefix(1);
        }
        AppendEscaped(text, rest);
        text += kRecordEnd;
    }
    std::string bytes = EncodeLines(text, codec);
    if (!cipher) return bytes;
    std::string file(kCipherMark);
    file.append(kRecordEnd)
        .append(EncipherText(bytes, kScenarioCipherParameter))
        .append(kRecordEnd);
    return file;
}

std::vector<std::string> ReadScenarioText(std::string_view bytes, const TextCodec& codec) {
    const bool utf8 = bytes.starts_with(kByteOrderMark);
    if (utf8) bytes.remove_prefix(kByteOrderMark.size());
    const auto decode = [&codec](std::string_view line) { return codec.Decode(line); };
    std::string_view rest = bytes;
    if (TakeLine(rest, LineEnds::kAny) == kCipherMark) return DecipherLines(rest, decode);
    if (utf8) return ScenarioTextLines(bytes);
    std::vector<std::string> lines;
    AppendLines(lines, bytes, decode);
    return lines;
}

std::vector<std::string> ScenarioTextLines(std::string_view text) {
    std::vector<std::string> lines;
    AppendLines(lines, text, ValidUtf8);
    return lines;
}

}  // namespace tamrin
