#include "platform/chromium/endpoint.h"

#include <charconv>

#include "platform/text.h"

namespace tamrin {
namespace {

unsigned short ReadPort(std::string_view text) {
    unsigned short port = 0;
    const char* begin = text.data();
    const char* end = begin + text.size();
    const auto [after, error] = std::from_chars(begin, end, port);
    return error == std::errc() && after == end ? port : 0;
}

}  // namespace

std::optional<Endpoint> ReadActivePort(std::string_view text) {
    const auto line_end = text.find('\n');
    if (line_end == std::string_view::npos) return std::nullopt;
    Endpoint endpoint{ReadPort(Trim(text.substr(0, line_end), kWhiteSpace)),
                      std::string(Trim(text.substr(line_end), kWhiteSpace))};
    if (endpoint.port == 0 || !endpoint.path.starts_with('/')) return std::nullopt;
    return endpoint;
}

std::optional<Endpoint> ReadDebugAddress(std::string_view text) {
    text = Trim(text, kWhiteSpace);
    const auto scheme = text.find("://");
    if (scheme != std::string_view::npos) text.remove_prefix(scheme + 3);
    const auto slash = text.find('/');
    std::string_view host = text.substr(0, slash);
    const auto colon = host.find(':');
    const unsigned short port =
        ReadPort(colon == std::string_view::npos ? host : host.substr(colon + 1));
    host = colon == std::string_view::npos ? std::string_view() : host.substr(0, colon);
    const bool is_here = host.empty() || host == "127.0.0.1" || host == "localhost";
    if (port == 0 || !is_here) return std::nullopt;
    const auto path = slash == std::string_view::npos ? std::string_view() : text.substr(slash);
    return Endpoint{port, path.starts_with("/devtools/") ? std::string(path) : std::string()};
}

}  // namespace tamrin
