#include "platform/chromium/endpoint.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <charconv>
#include <nlohmann/json.hpp>
#include <utility>

#include "platform/text.h"

namespace tamrin {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using boost::beast::error_code;

// A folder below the one that a variable of the environment names.
struct Place {
    const char* variable;
    const char* folder;  // its parts separated by '/'
};
constexpr Place kPlaces[] = {
    {"LOCALAPPDATA", "Google/Chrome/User Data"},
    {"LOCALAPPDATA", "Google/Chrome Beta/User Data"},
    {"LOCALAPPDATA", "Microsoft/Edge/User Data"},
    {"LOCALAPPDATA", "Chromium/User Data"},
    {"XDG_CONFIG_HOME", "google-chrome"},
    {"XDG_CONFIG_HOME", "microsoft-edge"},
    {"XDG_CONFIG_HOME", "chromium"},
    {"HOME", ".config/google-chrome"},
    {"HOME", ".config/google-chrome-beta"},
    {"HOME", ".config/microsoft-edge"},
    {"HOME", ".config/chromium"},
    {"HOME", "snap/chromium/common/chromium"},
};

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

std::vector<std::string> ProfileFolders(const Processes& processes, char separator) {
    std::vector<std::string> folders;
    for (const Place& place : kPlaces) {
        std::string folder = processes.Environment(place.variable);
        if (folder.empty()) continue;
        folder += '/';
        folder += place.folder;
        std::replace(folder.begin(), folder.end(), '/', separator);
        folders.push_back(std::move(folder));
    }
    return folders;
}

class VersionRequest::Exchange {
public:
    explicit Exchange(unsigned short port) : request_(http::verb::get, "/json/version", 11) {
        // The browser refuses other host names, to keep web pages out.
        request_.set(http::field::host, "127.0.0.1:" + std::to_string(port));
        socket_.async_connect({asio::ip::address_v4::loopback(), port},
                              [this](const error_code& error) { OnConnected(error); });
    }

    bool Poll() {
        context_.restart();
        context_.poll();
        return ended_;
    }

    const std::string& path() const { return path_; }

private:
    void OnConnected(const error_code& error) {
        if (error) return End();
        http::async_write(socket_, request_, [this](const error_code& failed, std::size_t) {
            if (failed) return End();
            http::async_read(socket_, buffer_, reply_,
                             [this](const error_code& broken, std::size_t) {
                                 if (!broken) ReadPath();
                                 End();
                             });
        });
    }

    void ReadPath() {
        const auto version = nlohmann::json::parse(reply_.body(), nullptr, false);
        const auto url = version.is_object() ? version.find("webSocketDebuggerUrl") : version.end();
        if (!version.is_object() || url == version.end() || !url->is_string()) return;
        const std::string text = url->get<std::string>();
        const auto path = text.find("/devtools/");
        if (path != std::string::npos) path_ = text.substr(path);
    }

    void End() { ended_ = true; }

    asio::io_context context_{1};
    asio::ip::tcp::socket socket_{context_};
    http::request<http::empty_body> request_;
    http::response<http::string_body> reply_;
    boost::beast::flat_buffer buffer_;
    std::string path_;
    bool ended_ = false;
};

VersionRequest::VersionRequest(unsigned short port) : exchange_(std::make_unique<Exchange>(port)) {}
VersionRequest::~VersionRequest() = default;

bool VersionRequest::Poll() { return exchange_->Poll(); }
const std::string& VersionRequest::path() const { return exchange_->path(); }

}  // namespace tamrin
