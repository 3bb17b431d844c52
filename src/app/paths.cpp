#include "app/paths.h"

#include <vector>

namespace tamrin {
namespace {

constexpr std::string_view kFullWidthSpace = "\xE3\x80\x80";

// Bytes of the blank with which a text begins, 0 when it begins with none.
std::size_t BlankLength(std::string_view text) {
    if (text.starts_with(' ')) return 1;
    return text.starts_with(kFullWidthSpace) ? kFullWidthSpace.size() : 0;
}

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

bool IsAbsolute(std::string_view path, const Files& files) {
    if (path.starts_with("\\\\")) return true;
    if (files.Separator() == '/') return path.starts_with('/');
    return path.size() > 1 && path[1] == ':';
}

// The path with "." and ".." carried out; what precedes the first separator (a drive, or nothing)
// is never left.
std::string Normalized(std::string_view path, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at <= path.size();) {
        std::size_t end = at;
        while (end < path.size() && !(path[end] == separator || path[end] == '/')) ++end;
        const std::string_view part = path.substr(at, end - at);
        at = end + 1;
        if (part == "." || (part.empty() && !parts.empty() && end < path.size())) continue;
        if (part == "..") {
            if (parts.size() > 1) parts.pop_back();
        } else {
            parts.push_back(part);
        }
    }
    std::string result;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) result += separator;
        result += parts[i];
    }
    return result;
}

}  // namespace

std::string CollapseBlanks(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool in_blanks = false;
    while (!text.empty()) {
        const std::size_t blank = BlankLength(text);
        const std::size_t length = blank > 0 ? blank : 1;
        if (blank == 0 || !in_blanks) result += text.substr(0, length);
        in_blanks = blank > 0;
        text.remove_prefix(length);
    }
    return result;
}

std::string_view TrimBlankRuns(std::string_view text) {
    while (const std::size_t blank = BlankLength(text)) text.remove_prefix(blank);
    for (;;) {
        if (text.ends_with(' ')) {
            text.remove_suffix(1);
        } else if (text.ends_with(kFullWidthSpace)) {
            text.remove_suffix(kFullWidthSpace.size());
        } else {
            return text;
        }
    }
}

std::string StripQuotes(std::string_view text) {
    text = TrimBlankRuns(text);
    if (text.size() >= 2 && text.starts_with('"') && text.ends_with('"')) {
        text = text.substr(1, text.size() - 2);
    }
    return std::string(text);
}

std::string ResolvePath(std::string_view path, std::string_view base, const Files& files) {
    if (path.empty() || IsAbsolute(path, files)) return std::string(path);
    const std::string folder = base.empty() ? files.CurrentFolder() : std::string(base);
    const char separator = files.Separator();
    std::string relative(path);
    // A path written on Windows reads the same everywhere.
    if (path.starts_with(".\\") || path.starts_with("..\\")) {
        for (char& c : relative) {
            if (IsSeparator(c)) c = separator;
        }
    }
    if (separator == '\\' && IsSeparator(relative.front())) {
        return Normalized(folder.substr(0, 2) + relative, separator);  // the root of the same drive
    }
    return Normalized(folder + separator + relative, separator);
}

bool IsExistingFile(std::string_view text, const Files& files) {
    if (text.empty()) return false;
    const std::string path = StripQuotes(text);
    return !path.empty() && files.IsFile(ResolvePath(path, files.ProgramFolder(), files));
}

std::string_view FileNameOf(std::string_view path) {
    // npos + 1 is 0: the whole text.
    return path.substr(path.rfind('\\') + 1);
}

}  // namespace tamrin
