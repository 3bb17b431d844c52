#include "samples/web_server.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <chrono>
#include <thread>
#include <utility>

namespace tamrin {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using Handler = std::function<WebReply(const WebRequest&)>;

constexpr std::uint64_t kLargestBody = 64U << 20;

std::string Text(beast::string_view view) { return {view.data(), view.size()}; }

WebRequest ToWebRequest(http::request<http::string_body>& message) {
    WebRequest request;
    request.method = Text(message.method_string());
    request.path = Text(message.target());
    if (const auto mark = request.path.find('?'); mark != std::string::npos) {
        request.query = request.path.substr(mark + 1);
        request.path.erase(mark);
    }
    request.content_type = Text(message[http::field::content_type]);
    request.cookie = Text(message[http::field::cookie]);
    request.body = std::move(message.body());
    return request;
}

http::response<http::string_body> ToResponse(WebReply reply, unsigned version, bool keep_alive) {
    http::response<http::string_body> response;
    response.version(version);
    response.result(static_cast<unsigned>(reply.status));
    response.set(http::field::content_type, reply.content_type);
    response.set(http::field::cache_control, "no-store");
    if (!reply.location.empty()) response.set(http::field::location, reply.location);
    if (!reply.set_cookie.empty()) response.set(http::field::set_cookie, reply.set_cookie);
    response.body() = std::move(reply.body);
    response.keep_alive(keep_alive);
    response.prepare_payload();
    return response;
}

WebReply Answer(const Handler& handler, const WebRequest& request) {
    try {
        return handler(request);
    } catch (const std::exception& error) {
        return {.status = 500, .content_type = "text/plain; charset=utf-8", .body = error.what()};
    }
}

// One connection. It lives as long as one of its operations is under way.
class Session : public std::enable_shared_from_this<Session> {
public:
    Session(tcp::socket socket, const Handler& handler)
        : socket_(std::move(socket)), timer_(socket_.get_executor()), handler_(handler) {}

    void Read() {
        parser_ = std::make_unique<Parser>();
        parser_->body_limit(kLargestBody);
        http::async_read(socket_, buffer_, *parser_,
                         [self = shared_from_this()](beast::error_code error, std::size_t) {
                             if (!error) self->Reply();
                         });
    }

private:
    using Parser = http::request_parser<http::string_body>;

    void Reply() {
        auto& message = parser_->get();
        const unsigned version = message.version();
        const bool keep_alive = message.keep_alive();
        WebReply reply = Answer(handler_, ToWebRequest(message));
        const std::chrono::milliseconds delay(reply.delay_ms);
        response_ = ToResponse(std::move(reply), version, keep_alive);
        if (delay.count() <= 0) return Write();
        timer_.expires_after(delay);
        timer_.async_wait([self = shared_from_this()](beast::error_code error) {
            if (!error) self->Write();
        });
    }

    void Write() {
        http::async_write(socket_, response_,
                          [self = shared_from_this()](beast::error_code error, std::size_t) {
                              if (!error && self->response_.keep_alive()) self->Read();
                          });
    }

    tcp::socket socket_;
    asio::steady_timer timer_;
    const Handler& handler_;
    beast::flat_buffer buffer_;
    std::unique_ptr<Parser> parser_;  // reads one request
    http::response<http::string_body> response_;
};

}  // namespace

class WebServer::Listener {
public:
    Listener(Handler handler, unsigned short port)
        : handler_(std::move(handler)),
          acceptor_(io_, {asio::ip::address_v4::loopback(), port}),
          port_(acceptor_.local_endpoint().port()) {
        Accept();
        thread_ = std::thread([this] { io_.run(); });
    }

    ~Listener() {
        io_.stop();
        thread_.join();
    }

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    unsigned short port() const { return port_; }

private:
    void Accept() {
        acceptor_.async_accept([this](beast::error_code error, tcp::socket socket) {
            // Small replies go out at once instead of waiting for the browser's acknowledgment.
            if (!error && !socket.set_option(tcp::no_delay(true), error))
                std::make_shared<Session>(std::move(socket), handler_)->Read();
            Accept();
        });
    }

    Handler handler_;
    asio::io_context io_{1};
    tcp::acceptor acceptor_;
    unsigned short port_;
    std::thread thread_;
};

WebServer::WebServer(std::function<WebReply(const WebRequest&)> handler, unsigned short port)
    : listener_(std::make_unique<Listener>(std::move(handler), port)) {}

WebServer::~WebServer() = default;

unsigned short WebServer::port() const { return listener_->port(); }

std::string WebServer::Url(std::string_view path) const {
    return "http://127.0.0.1:" + std::to_string(port()) + std::string(path);
}

}  // namespace tamrin
