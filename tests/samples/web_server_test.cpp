#include "samples/web_server.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <string>

namespace tamrin {
namespace {

// A browser's side of one connection.
class Client {
public:
    explicit Client(unsigned short port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(0, connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address));
    }
    ~Client() { close(socket_); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void Send(const std::string& request) const {
        EXPECT_EQ(static_cast<ssize_t>(request.size()),
                  send(socket_, request.data(), request.size(), MSG_NOSIGNAL));
    }

    // Reads until what has arrived ends with `end`, or the connection ends.
    std::string ReceiveUntil(const std::string& end) const {
        std::string received;
        char byte = 0;
        while (!received.ends_with(end) && recv(socket_, &byte, 1, 0) == 1) received += byte;
        return received;
    }

private:
    int socket_;
};

WebReply Echo(const WebRequest& request) {
    if (request.path == "/slow") return {.body = "late!", .delay_ms = 60'000};
    if (request.path == "/away") return {.status = 302, .location = "/here"};
    if (request.path == "/fault") throw std::runtime_error("broken!");
    return {.body = request.method + "|" + request.path + "|" + request.query + "|" +
                    request.content_type + "|" + request.body + "!"};
}

TEST(WebServer, AnswersSeveralRequestsOnOneConnection) {
    WebServer server(Echo);
    const Client client(server.port());
    client.Send(
        "POST /a/b?c=d HTTP/1.1\r\nHost: x\r\nContent-Type: text/plain\r\nContent-Length: 3\r\n\r\n"
        "e=f");
    const std::string first = client.ReceiveUntil("!");
    EXPECT_TRUE(first.starts_with("HTTP/1.1 200 OK\r\n")) << first;
    EXPECT_TRUE(first.ends_with("POST|/a/b|c=d|text/plain|e=f!")) << first;
    client.Send("GET /away HTTP/1.1\r\nHost: x\r\n\r\n");
    const std::string second = client.ReceiveUntil("\r\n\r\n");
    EXPECT_TRUE(second.starts_with("HTTP/1.1 302 ")) << second;
    EXPECT_NE(second.find("Location: /here\r\n"), std::string::npos) << second;
    client.Send("GET /fault HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(client.ReceiveUntil("broken!").starts_with("HTTP/1.1 500 "));
}

TEST(WebServer, ADelayedReplyHoldsUpNeitherOthersNorTheEnd) {
    const auto start = std::chrono::steady_clock::now();
    {
        WebServer server(Echo);
        const Client slow(server.port());
        const Client quick(server.port());
        slow.Send("GET /slow HTTP/1.1\r\nHost: x\r\n\r\n");
        quick.Send("GET /quick HTTP/1.1\r\nHost: x\r\n\r\n");
        EXPECT_TRUE(quick.ReceiveUntil("!").ends_with("GET|/quick|||!"));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST(WebServer, ClosesTheConnectionWhenToldSo) {
    WebServer server(Echo);
    const Client client(server.port());
    client.Send("GET /x HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    EXPECT_TRUE(client.ReceiveUntil("never").ends_with("GET|/x|||!"));
    EXPECT_EQ(server.Url("/x"), "http://127.0.0.1:" + std::to_string(server.port()) + "/x");
}

TEST(WebServer, ThrowsWhenThePortIsTaken) {
    const WebServer server(Echo);
    EXPECT_THROW(WebServer(Echo, server.port()), std::runtime_error);
}

}  // namespace
}  // namespace tamrin
