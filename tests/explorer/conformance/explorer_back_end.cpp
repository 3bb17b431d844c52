#include <boost/asio/ip/tcp.hpp>
#include <cstdlib>
#include <sstream>

#include "conformance/back_end.h"
#include "explorer/explorer_machine.h"
#include "platform/explorer/explorer_launcher.h"
#include "platform/windows/clock.h"

namespace tamrin::conformance {
namespace {

using test::Reply;

// Asks a server of this machine. The doubles wait for the answer.
Reply Fetch(const std::string& url) {
    Reply reply;
    constexpr std::string_view kScheme = "http://";
    const auto slash = url.find('/', kScheme.size());
    if (!url.starts_with(kScheme)) return reply;
    const std::string host = url.substr(kScheme.size(), slash - kScheme.size());
    const std::string path = slash == std::string::npos ? "/" : url.substr(slash);
    boost::asio::ip::tcp::iostream stream;
    stream.expires_after(std::chrono::seconds(5));
    stream.connect("127.0.0.1", host.substr(host.find(':') + 1));
    stream << "GET " << path.substr(0, path.find('#')) << " HTTP/1.0\r\nHost: " << host
           << "\r\n\r\n"
           << std::flush;
    std::string line;
    std::getline(stream, line);
    if (line.size() < 12) return reply;
    reply.status = std::stoi(line.substr(9, 3));
    while (std::getline(stream, line) && line != "\r") continue;
    std::ostringstream body;
    body << stream.rdbuf();
    reply.body = body.str();
    return reply;
}

class ExplorerBackEnd : public BackEnd {
public:
    ExplorerBackEnd() {
        if (const char* mode = std::getenv("DOCUMENT_MODE")) machine_.mode = std::stoi(mode);
        clock_.AddSource([this] {
            machine_.Tick();
            launcher_.DeliverEvents();
        });
    }

    BrowserLauncher& launcher() override { return launcher_; }
    Clock& clock() override { return clock_; }
    std::uint64_t RoundTrips() override { return calls_.count(); }
    bool BringsKeysAlong() override { return false; }

private:
    ComCalls calls_;
    WindowsClock clock_;
    test::ExplorerMachine machine_{Fetch};
    test::NoInput input_;
    ExplorerLauncher launcher_{calls_, machine_.Sources(), input_};
};

}  // namespace

std::unique_ptr<BackEnd> MakeBackEnd() { return std::make_unique<ExplorerBackEnd>(); }

}  // namespace tamrin::conformance
