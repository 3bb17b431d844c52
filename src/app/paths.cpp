#include "app/paths.h"

#include <vector>

#include "platform/text.h"

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

// Bytes of a path's root without the separator behind it: a drive, nothing, or "\\\\server\\share".
std::size_t RootLength(std::string_view path) {
    if (!path.starts_with("\\\\")) return std::min(path.find_first_of("\\/"), path.size());
    const auto share = std::min(path.find_first_of("\\/", 2), path.size());
    return std::min(path.find_first_of("\\/", share + 1), path.size());
}

// The parts of a path with "." and ".." carried out; the first one, its root, is never left.
std::vector<std::string_view> PartsOf(std::string_view path, char separator) {
    const std::size_t root = RootLength(path);
    std::vector<std::string_view> parts = {path.substr(0, root)};
    for (std::size_t at = root + 1; at <= path.size();) {
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
    return parts;
}

std::string Normalized(std::string_view path, char separator) {
    const auto parts = PartsOf(path, separator);
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
        return Normalized(folder.substr(0, RootLength(folder)) + relative, separator);
    }
    return Normalized(folder + separator + relative, separator);
}

std::string RelativePath(std::string_view path, std::string_view base, const Files& files) {
    const char separator = files.Separator();
    const auto same = [&](std::string_view a, std::string_view b) {
        return separator == '\\' ? EqualsIgnoreCase(a, b) : a == b;
    };
    if (!IsAbsolute(path, files) || path.starts_with("\\\\")) return std::string(path);
    std::vector<std::string_view> to = PartsOf(path, separator);
    std::vector<std::string_view> from = PartsOf(base, separator);
    if (to.size() > 1 && to.back().empty()) to.pop_back();
    if (from.size() > 1 && from.back().empty()) from.pop_back();
    if (!same(to.front(), from.front())) return std::string(path);
    std::size_t common = 1;
    while (common < to.size() && common < from.size() && same(to[common], from[common])) ++common;
    std::string result;
    for (std::size_t i = common; i < from.size(); ++i) result += std::string("..") + separator;
    if (result.empty() && common < to.size()) result = std::string(".") + separator;
    for (std::size_t i = common; i < to.size(); ++i) result += std::string(to[i]) + separator;
    if (!result.empty()) result.pop_back();
    return result;
}

std::string FolderOf(std::string_view path, const Files& files) {
    const std::string_view separators = files.Separator() == '/' ? "/" : "\\/";
    const auto last = path.find_last_of(separators);
    if (last == std::string_view::npos) return "";
    const std::string_view folder = path.substr(0, last);
    const bool is_root = folder.empty() || folder.ends_with(':');
    return std::string(path.substr(0, is_root ? last + 1 : last));
}

std::string ExistingFile(std::string_view text, const Files& files) {
    const std::string name = StripQuotes(text);
    for (const std::string& folder : {files.CurrentFolder(), files.ProgramFolder()}) {
        const std::string path = ResolvePath(name, folder, files);
        if (!name.empty() && files.IsFile(path)) return path;
    }
    return "";
}

std::string_view FileNameOf(std::string_view path) {
    // npos + 1 is 0: the whole text.
    return path.substr(path.rfind('\\') + 1);
}

std::string ProfileFolder(const Processes& processes, const Files& files) {
    const struct {
        const char* variable;
        const char* below;
    } places[] = {
        {"LOCALAPPDATA", "\\TamrinBrowser"},
        {"HOME", "/.tamrin-browser"},
    };
    for (const auto& place : places) {
        const std::string folder = processes.Environment(place.variable);
        if (!folder.empty()) return folder + place.below;
    }
    return files.ProgramFolder() + files.Separator() + "TamrinBrowser";
}

}  // namespace tamrin
