#include "player/input_data.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text.h"

namespace tamrin {
namespace {

struct Number {
    double value = 0;
    std::string_view rest;
    bool found = false;
};

Number ReadNumber(std::string_view text) {
    text = Trim(text);
    const char* begin = text.data();
    const char* end = begin + text.size();
    if (begin != end && *begin == '+') ++begin;
    Number number;
    const auto [next, error] = std::from_chars(begin, end, number.value, std::chars_format::fixed);
    if (error == std::errc::invalid_argument || !std::isfinite(number.value)) return Number{};
    constexpr double kLargest = std::numeric_limits<int>::max();
    number.found = true;
    number.value = error == std::errc() ? std::clamp(number.value, -kLargest, kLargest) : kLargest;
    number.rest = std::string_view(next, static_cast<std::size_t>(end - next));
    return number;
}

}  // namespace

std::string ExpandReservedTexts(std::string_view text, const ReservedTexts& reserved) {
    std::string result;
    result.reserve(text.size());
    const auto take = [&](std::string_view mark) {
        if (!text.starts_with(mark)) return false;
        text.remove_prefix(mark.size());
        return true;
    };
    for (;;) {
        const auto mark = text.find("%%");
        result += text.substr(0, mark);
        if (mark == std::string_view::npos) return result;
        text.remove_prefix(mark);
        if (take("%%comma%%") || take("%%COMM%%")) {
            result += ',';
        } else if (take("%%DBLQ%%")) {
            result += '"';
        } else if (take("%%clipboard%%")) {
            result += reserved.clipboard();
        } else if (take("%%error%%")) {
            result += reserved.last_error;
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
}

std::string_view FirstToken(std::string_view text) {
    text = Trim(text);
    if (text.starts_with('"')) {
        text.remove_prefix(1);
        return text.substr(0, text.find('"'));
    }
    return text.substr(0, text.find(' '));
}

double LeadingNumber(std::string_view text) { return ReadNumber(text).value; }

std::optional<double> WholeNumber(std::string_view text) {
    const Number number = ReadNumber(text);
    if (!number.found || !number.rest.empty()) return std::nullopt;
    return number.value;
}

std::string_view RadioValue(std::string_view indt, std::string_view value) {
    return TruthValue(indt) ? value : indt;
}

std::optional<bool> TruthValue(std::string_view text) {
    text = Trim(text);
    if (EqualsIgnoreCase(text, "True")) return true;
    if (EqualsIgnoreCase(text, "False")) return false;
    if (const auto number = WholeNumber(text)) return *number != 0;
    return std::nullopt;
}

}  // namespace tamrin
