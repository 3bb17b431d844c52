#include "platform/chromium/version_request.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <nlohmann/json.hpp>

namespace tamrin {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using boost::beast::error_code;

}  // namespace

class VersionRequest::Exchange {
public:
    explicit Exchange(unsigned short port) : request_(http::verb::get, "/json/version", 11) {
        // The browser takes names of this computer only, as a guard against pages of the web.
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
