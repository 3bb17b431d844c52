#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tamrin {

// One request as it arrived.
struct WebRequest {
    std::string method;        // "GET", "POST", ...
    std::string path;          // begins with "/", as sent: percent signs are not decoded
    std::string query;         // what follows the "?", as sent; "" when there is none
    std::string content_type;  // the header's whole value
    std::string body;
    std::string cookie;  // the header's whole value
};

// The {} let a reply name only the members that it sets: {.body = "..."}.
struct WebReply {
    int status = 200;
    std::string content_type = "text/html; charset=utf-8";
    std::string body{};
    std::string location{};    // where a status of 301 to 308 sends the browser; else ""
    int delay_ms = 0;          // how long the reply is held back; other requests do not wait for it
    std::string set_cookie{};  // the header's whole value; "" sets none
};

// A small HTTP/1.1 server for the samples, the tests and the benchmarks. It listens on 127.0.0.1
// only; "http://localhost:port" reaches it too, and is another origin to a browser.
//
// `handler` is called on a thread of the server, not on the caller's, so what it shares with others
// needs a lock or an atomic. Write it as if it were called for several requests at once. A handler
// that blocks holds up the other requests: hold a reply back with delay_ms. When it throws, the
// request is answered with status 500 and the exception's text.
class WebServer {
public:
    // Listens from now on; port 0 takes a free one. Throws a std::runtime_error when the port
    // cannot be had.
    explicit WebServer(std::function<WebReply(const WebRequest&)> handler, unsigned short port = 0);

    // Drops all connections, also those that wait for a delayed reply, and returns at once.
    ~WebServer();

    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    unsigned short port() const;

    // The address of a path, "/" for the first page: "http://127.0.0.1:port/".
    std::string Url(std::string_view path) const;

private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

}  // namespace tamrin
