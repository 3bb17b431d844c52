#include "samples/sample_site.h"

#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>

namespace tamrin {
namespace {

struct Page {
    std::string_view path;
    std::string_view file;
    std::string_view content_type;
    std::string_view next;  // where the page's form leads; "" when it has none
};

constexpr std::string_view kHtml = "text/html; charset=utf-8";
constexpr std::string_view kShiftJisHtml = "text/html; charset=Shift_JIS";

constexpr std::array kPages = {
    Page{"/", "login.html", kHtml, "/order"},
    Page{"/order", "order.html", kHtml, "/delivery"},
    Page{"/delivery", "delivery.html", kHtml, ""},
    Page{"/address", "address.html", kHtml, "/address"},
    Page{"/notes", "notes.html", kShiftJisHtml, "/confirm"},
    Page{"/confirm", "confirm.html", kHtml, "/done"},
    Page{"/done", "done.html", kHtml, ""},
    Page{"/style.css", "style.css", "text/css; charset=utf-8", ""},
    Page{"/cart.svg", "cart.svg", "image/svg+xml", ""},
};

constexpr std::string_view kCookie = "visitor=";
constexpr std::size_t kMostOrders = 1000;

const Page* FindPage(std::string_view path) {
    for (const Page& page : kPages) {
        if (page.path == path) return &page;
    }
    return nullptr;
}

// The byte that two hex digits stand for.
std::optional<char> HexByte(std::string_view digits) {
    unsigned value = 0;
    const char* begin = digits.data();
    const char* end = begin + digits.size();
    if (digits.size() != 2 || std::from_chars(begin, end, value, 16).ptr != end) return {};
    return static_cast<char>(value);
}

std::string DecodeField(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = text[i] == '%' ? HexByte(text.substr(i + 1, 2)) : std::nullopt;
        if (byte) i += 2;
        decoded += byte.value_or(text[i] == '+' ? ' ' : text[i]);
    }
    return decoded;
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// One dot for each character: the site shows that a password arrived and keeps nothing of it.
std::string Dots(std::string_view text) {
    std::string dots;
    for (const char byte : text) {
        const bool starts_character = (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
        if (starts_character) dots += "●";
    }
    return dots;
}

// The page with each {{name}} replaced by what `value_of` answers for the name.
template <typename ValueOf>
std::string Fill(std::string_view page, ValueOf value_of) {
    std::string filled;
    while (true) {
        const auto open = page.find("{{");
        const auto close = page.find("}}", open);
        if (open == std::string_view::npos || close == std::string_view::npos) break;
        filled += page.substr(0, open);
        filled += EscapeHtml(value_of(std::string(page.substr(open + 2, close - open - 2))));
        page.remove_prefix(close + 2);
    }
    return filled.append(page);
}

}  // namespace

FormFields ParseForm(std::string_view body) {
    FormFields fields;
    while (!body.empty()) {
        const std::string_view field = body.substr(0, body.find('&'));
        body.remove_prefix(std::min(field.size() + 1, body.size()));
        const auto equals = std::min(field.find('='), field.size());
        const auto value = field.substr(std::min(equals + 1, field.size()));
        if (!field.empty()) fields[DecodeField(field.substr(0, equals))] = DecodeField(value);
    }
    return fields;
}

std::string EscapeHtml(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char byte : text) {
        switch (byte) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default:
                escaped += byte;
        }
    }
    return escaped;
}

WebReply SampleSite::Answer(const WebRequest& request) {
    const Page* page = FindPage(request.path);
    if (!page) return {.status = 404, .body = "<!DOCTYPE html><p>ページがありません。"};

    const std::lock_guard lock(mutex_);
    const unsigned visitor = VisitorOf(request);
    Order& order = orders_[visitor];
    if (orders_.size() > kMostOrders) orders_.erase(orders_.begin());

    if (request.method == "POST" && !page->next.empty()) {
        FormFields fields = ParseForm(request.body);
        if (const auto at = fields.find("password"); at != fields.end())
            at->second = Dots(at->second);
        order[request.path] = std::move(fields);
        // Answered by sending the browser on, so that going back never asks to send again.
        return {.status = 303, .location = std::string(page->next)};
    }
    const auto value_of = [&](const std::string& name) {
        if (name == "number") return std::to_string(visitor);
        for (const auto& [path, fields] : order) {
            if (const auto at = fields.find(name); at != fields.end()) return at->second;
        }
        return std::string();
    };
    return {.content_type = std::string(page->content_type),
            .body = Fill(ReadFile(folder_ + "/" + std::string(page->file)), value_of),
            .set_cookie = std::string(kCookie) + std::to_string(visitor) + "; HttpOnly"};
}

// The number in the visitor's cookie, or a new one.
unsigned SampleSite::VisitorOf(const WebRequest& request) {
    unsigned visitor = 0;
    if (const auto at = request.cookie.find(kCookie); at != std::string::npos) {
        const char* digits = request.cookie.data() + at + kCookie.size();
        std::from_chars(digits, request.cookie.data() + request.cookie.size(), visitor);
    }
    return orders_.contains(visitor) ? visitor : ++last_visitor_;
}

}  // namespace tamrin
