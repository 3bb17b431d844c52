#include "platform/chromium/chromium_browser.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "platform/text.h"

namespace tamrin {
namespace {

constexpr std::string_view kScript = "javascript:";

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Trimmed(std::string_view text) {
    const auto is_space = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    while (!text.empty() && is_space(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_space(text.back())) text.remove_suffix(1);
    return text;
}

// Whether the text begins with a scheme. A name before a number is a host and its port; a single
// letter is a drive.
bool HasScheme(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || colon < 2 || !IsLetter(text.front())) return false;
    const std::string_view scheme = text.substr(0, colon);
    const bool well_formed = std::all_of(scheme.begin(), scheme.end(), [](char c) {
        return IsLetter(c) || IsDigit(c) || c == '+' || c == '-' || c == '.';
    });
    return well_formed && (colon + 1 == text.size() || !IsDigit(text[colon + 1]));
}

// The address of a path; characters that would end the path in an address are escaped.
std::string FileAddress(std::string_view prefix, std::string_view path) {
    std::string address(prefix);
    for (const char c : path) {
        if (c == '\\') {
            address += '/';
        } else if (c == '%' || c == '#' || c == '?' || c == ' ') {
            constexpr std::string_view kDigits = "0123456789ABCDEF";
            address += '%';
            address += kDigits[static_cast<std::size_t>(c) >> 4];
            address += kDigits[static_cast<std::size_t>(c) & 15];
        } else {
            address += c;
        }
    }
    return address;
}

// The full address of what a user writes, as the browser needs it: without white space around it; a
// path as a file address; with "http://" where there is no scheme.
std::string FullAddress(std::string_view text) {
    text = Trimmed(text);
    if (text.starts_with("\\\\")) return FileAddress("file:", text);
    if (text.starts_with('/') && !text.starts_with("//")) return FileAddress("file://", text);
    const bool has_drive = text.size() > 2 && IsLetter(text[0]) && text[1] == ':' &&
                           (text[2] == '\\' || text[2] == '/');
    if (has_drive) return FileAddress("file:///", text);
    if (text.empty() || HasScheme(text)) return std::string(text);
    return (text.starts_with("//") ? "http:" : "http://") + std::string(text);
}

// The script of a "javascript:" address (percent signs decoded), "" of any other address.
std::string ScriptOf(std::string_view address) {
    address = Trimmed(address);
    if (!StartsWithIgnoreCase(address, kScript)) return "";
    address.remove_prefix(kScript.size());
    std::string script;
    for (std::size_t i = 0; i < address.size(); ++i) {
        unsigned code = 0;
        const char* digits = address.data() + i + 1;
        if (address[i] == '%' && address.size() - i > 2 &&
            std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2) {
            script += static_cast<char>(code);
            i += 2;
        } else {
            script += address[i];
        }
    }
    return script;
}

}  // namespace

bool ChromiumBrowser::Navigate(const std::string& address) {
    const std::string full = FullAddress(address);
    if (!tab_->Alive() || full.empty()) return false;
    if (const std::string script = ScriptOf(full); !script.empty()) {
        tab_->agents().Post("Runtime.evaluate", {{"expression", script}, {"userGesture", true}});
    } else {
        tab_->Navigate(full);
    }
    return true;
}

void ChromiumBrowser::Quit() { tab_->Close(); }

Document ChromiumBrowser::document() {
    const std::string agent = tab_->watcher().TopAgent();
    if (agent.empty()) return Document();
    if (!document_ || document_->agent() != agent) {
        document_ = std::make_shared<ChromiumDocument>(tab_, agent);
    }
    return Document(document_);
}

std::optional<ScreenPoint> ChromiumBrowser::ElementScreenPoint(const Element& element) {
    const auto own = std::dynamic_pointer_cast<ChromiumElement>(element.object());
    return own && &own->document().tab() == tab_.get() ? own->ToScreen() : std::nullopt;
}

std::vector<Element> ChromiumBrowser::UnderPointer() {
    return document() ? document_->UnderPointer() : std::vector<Element>();
}

std::uint64_t ChromiumBrowser::Handle() {
    return tab_->Alive() ? static_cast<std::uint64_t>(tab_->window()) : 0;
}

void ChromiumBrowser::DeliverEvents() {
    if (delivering_) return;
    delivering_ = true;
    for (;;) {
        const Notice* notice = tab_->watcher().Next();
        tab_->NextMoment();
        if (!notice) break;
        Deliver(*notice);
    }
    delivering_ = false;
}

void ChromiumBrowser::Deliver(const Notice& notice) {
    subscribers_.ForEach([&](BrowserEvents& events) {
        switch (notice.kind) {
            case Notice::Kind::kComplete:
                return events.DocumentComplete(notice.top);
            case Notice::Kind::kBeforeNavigate:
                return events.BeforeNavigate2(notice.url);
            case Notice::Kind::kNavigated:
                return events.NavigateComplete2();
            case Notice::Kind::kError:
                return events.NavigateError(notice.url, notice.reason);
            case Notice::Kind::kNotResponding:
                return events.NotResponding();
            case Notice::Kind::kQuit:
                return events.OnQuit();
            default:
                return;
        }
    });
    tab_->watcher().Deliver(notice);
}

}  // namespace tamrin
