#include "platform/chromium/devtools_channel.h"

#include <algorithm>
#include <array>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/windows/stream_handle.hpp>
#include <boost/asio/write.hpp>
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

// What all kinds of channel share: the messages on their way, and the wait.
class QueuedChannel : public DevToolsChannel {
public:
    State state() const override { return state_; }

    void Send(std::string message) override {
        if (state_ == State::kClosed) return;
        outgoing_.push_back(std::move(message));
        if (state_ == State::kOpen && outgoing_.size() == 1) WriteFirst();
    }

    void Wait(int milliseconds) override {
        if (state_ == State::kClosed) return;
        context_.restart();
        if (context_.poll() == 0 && milliseconds > 0) {
            context_.run_one_for(std::chrono::milliseconds(milliseconds));
            context_.poll();
        }
    }

    bool Next(std::string& message) override {
        if (arrived_.empty()) return false;
        message = std::move(arrived_.front());
        arrived_.pop_front();
        return true;
    }

protected:
    // Begins to read, and to write the first message of `outgoing_`; OnWritten follows.
    virtual void ReadNext() = 0;
    virtual void WriteFirst() = 0;
    virtual void CloseSystem() = 0;

    void Open() {
        state_ = State::kOpen;
        ReadNext();
        if (!outgoing_.empty()) WriteFirst();
    }

    void OnWritten(const error_code& error) {
        if (error) return Close();
        outgoing_.pop_front();
        if (!outgoing_.empty()) WriteFirst();
    }

    void Close() {
        state_ = State::kClosed;
        CloseSystem();
    }

    asio::io_context context_{1};
    std::deque<std::string> arrived_;
    std::deque<std::string> outgoing_;  // the first one is being written

private:
    State state_ = State::kConnecting;
};

class SocketChannel : public QueuedChannel {
public:
    explicit SocketChannel(const Endpoint& endpoint)
        : host_("127.0.0.1:" + std::to_string(endpoint.port)), path_(endpoint.path) {
        stream_.read_message_max(kLargestMessage);
        stream_.write_buffer_bytes(std::size_t{64} << 10);
        stream_.auto_fragment(false);
        stream_.next_layer().async_connect(
            asio::ip::tcp::endpoint(asio::ip::address_v4::loopback(), endpoint.port),
            [this](const error_code& error) { OnConnected(error); });
    }

private:
    void OnConnected(const error_code& error) {
        if (error) return Close();
        error_code ignored;
        // A call is one small message; held back to be joined with the next it would only be late.
        std::ignore = stream_.next_layer().set_option(asio::ip::tcp::no_delay(true), ignored);
        stream_.async_handshake(host_, path_, [this](const error_code& failed) {
            if (failed) return Close();
            Open();
        });
    }

    void ReadNext() override {
        buffer_.emplace(incoming_);  // it counts what it holds beside the string
        stream_.async_read(*buffer_, [this](const error_code& error, std::size_t) {
            if (error) return Close();
            arrived_.push_back(std::move(incoming_));
            incoming_.clear();
            ReadNext();
        });
    }

    void WriteFirst() override {
        stream_.async_write(asio::buffer(outgoing_.front()),
                            [this](const error_code& error, std::size_t) { OnWritten(error); });
    }

    void CloseSystem() override {
        error_code ignored;
        std::ignore = stream_.next_layer().close(ignored);
    }

    websocket::stream<asio::ip::tcp::socket, false> stream_{context_};
    std::string host_;
    std::string path_;
    std::string incoming_;
    std::optional<asio::dynamic_string_buffer<char, std::char_traits<char>, std::allocator<char>>>
        buffer_;
};

// An open file of the system by its number.
#ifdef BOOST_ASIO_HAS_WINDOWS_STREAM_HANDLE
using PipeEnd = asio::windows::stream_handle;
PipeEnd MakeEnd(asio::io_context& context, std::intptr_t number) {
    return PipeEnd(context, reinterpret_cast<PipeEnd::native_handle_type>(number));
}
#else
using PipeEnd = asio::local::stream_protocol::socket;
PipeEnd MakeEnd(asio::io_context& context, std::intptr_t number) {
    return PipeEnd(context, asio::local::stream_protocol(), static_cast<int>(number));
}
#endif

// Each message ends with a zero byte.
class PipeChannel : public QueuedChannel {
public:
    explicit PipeChannel(const PipeEnds& pipe)
        : from_(MakeEnd(context_, pipe.from)), to_(MakeEnd(context_, pipe.to)) {
        Open();
    }
    // The browser may hold the same files: closing them here would not end a read that goes on.
    ~PipeChannel() override {
        error_code ignored;
        std::ignore = from_.cancel(ignored);
        std::ignore = to_.cancel(ignored);
    }

private:
    void ReadNext() override {
        from_.async_read_some(asio::buffer(buffer_),
                              [this](const error_code& error, std::size_t n) {
                                  if (error || incoming_.size() > kLargestMessage) return Close();
                                  const char* begin = buffer_.data();
                                  const char* const all = begin + n;
                                  for (;;) {
                                      const char* const end = std::find(begin, all, '\0');
                                      incoming_.append(begin, end);
                                      if (end == all) break;
                                      arrived_.push_back(std::move(incoming_));
                                      incoming_.clear();
                                      begin = end + 1;
                                  }
                                  ReadNext();
                              });
    }

    void WriteFirst() override {
        // The text's own zero at its end is sent with it.
        const std::string& text = outgoing_.front();
        asio::async_write(to_, asio::buffer(text.c_str(), text.size() + 1),
                          [this](const error_code& error, std::size_t) { OnWritten(error); });
    }

    void CloseSystem() override {
        error_code ignored;
        std::ignore = from_.close(ignored);
        std::ignore = to_.close(ignored);
    }

    PipeEnd from_, to_;
    std::array<char, 65536> buffer_;
    std::string incoming_;
};

}  // namespace

std::unique_ptr<DevToolsChannel> ConnectSocket(const Endpoint& endpoint) {
    return std::make_unique<SocketChannel>(endpoint);
}

std::unique_ptr<DevToolsChannel> OpenPipe(const PipeEnds& pipe) {
    return std::make_unique<PipeChannel>(pipe);
}

}  // namespace tamrin
