#include "platform/chromium/devtools_socket.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/error.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <chrono>
#include <deque>
#include <optional>
#include <tuple>

namespace tamrin {
namespace {

namespace asio = boost::asio;
namespace websocket = boost::beast::websocket;
using boost::beast::error_code;

// A page's whole text may come in one message.
constexpr std::size_t kLargestMessage = std::size_t{1} << 30;

}  // namespace

class DevToolsSocket::Stream {
public:
    Stream(unsigned short port, std::string path) : path_(std::move(path)) {
        host_ = "127.0.0.1:" + std::to_string(port);
        stream_.read_message_max(kLargestMessage);
        stream_.write_buffer_bytes(std::size_t{64} << 10);
        stream_.auto_fragment(false);
        stream_.next_layer().async_connect(
            asio::ip::tcp::endpoint(asio::ip::address_v4::loopback(), port),
            [this](const error_code& error) { OnConnected(error); });
    }

    State state() const { return state_; }

    void Send(std::string message) {
        if (state_ == State::kClosed) return;
        outgoing_.push_back(std::move(message));
        if (state_ == State::kOpen && outgoing_.size() == 1) WriteNext();
    }

    void Wait(int milliseconds) {
        if (state_ == State::kClosed) return;
        context_.restart();
        if (context_.poll() == 0 && milliseconds > 0) {
            context_.run_one_for(std::chrono::milliseconds(milliseconds));
            context_.poll();
        }
    }

    bool Next(std::string& message) {
        if (arrived_.empty()) return false;
        message = std::move(arrived_.front());
        arrived_.pop_front();
        return true;
    }

private:
    void OnConnected(const error_code& error) {
        if (error) return Close();
        error_code ignored;
        // A call is one small message; held back to be joined with the next it would only be late.
        std::ignore = stream_.next_layer().set_option(asio::ip::tcp::no_delay(true), ignored);
        stream_.async_handshake(host_, path_, [this](const error_code& failed) {
            if (failed) return Close();
            state_ = State::kOpen;
            ReadNext();
            if (!outgoing_.empty()) WriteNext();
        });
    }

    void ReadNext() {
        buffer_.emplace(incoming_);  // it counts what it holds beside the string
        stream_.async_read(*buffer_, [this](const error_code& error, std::size_t) {
            if (error) return Close();
            arrived_.push_back(std::move(incoming_));
            incoming_.clear();
            ReadNext();
        });
    }

    void WriteNext() {
        stream_.async_write(asio::buffer(outgoing_.front()),
                            [this](const error_code& error, std::size_t) {
                                if (error) return Close();
                                outgoing_.pop_front();
                                if (!outgoing_.empty()) WriteNext();
                            });
    }

    void Close() {
        state_ = State::kClosed;
        error_code ignored;
        std::ignore = stream_.next_layer().close(ignored);
    }

    asio::io_context context_{1};
    websocket::stream<asio::ip::tcp::socket, false> stream_{context_};
    std::string host_;
    std::string path_;
    State state_ = State::kConnecting;
    std::string incoming_;
    std::optional<asio::dynamic_string_buffer<char, std::char_traits<char>, std::allocator<char>>>
        buffer_;
    std::deque<std::string> arrived_;
    std::deque<std::string> outgoing_;  // the first one is being written
};

DevToolsSocket::DevToolsSocket(unsigned short port, const std::string& path)
    : stream_(std::make_unique<Stream>(port, path)) {}
DevToolsSocket::~DevToolsSocket() = default;

DevToolsSocket::State DevToolsSocket::state() const { return stream_->state(); }
void DevToolsSocket::Send(std::string message) { stream_->Send(std::move(message)); }
void DevToolsSocket::Wait(int milliseconds) { stream_->Wait(milliseconds); }
bool DevToolsSocket::Next(std::string& message) { return stream_->Next(message); }

}  // namespace tamrin
