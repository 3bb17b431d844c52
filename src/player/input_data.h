#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tamrin {

// What the reserved texts of a record's input data stand for.
struct ReservedTexts {
    std::function<std::string()> clipboard;  // asked only when "%%clipboard%%" occurs
    std::string_view last_error;
};

// The input data with its reserved texts expanded: "%%comma%%" and "%%COMM%%" a comma, "%%DBLQ%%" a
// double quote, "%%clipboard%%" the clipboard's text, "%%error%%" the last error line. What an
// expansion brings is not expanded again.
std::string ExpandReservedTexts(std::string_view text, const ReservedTexts& reserved);

// The first token of a text: what stands between double quotes when it begins with one, else what
// stands before the first blank. Blanks around the text do not count.
std::string_view FirstToken(std::string_view text);

// The number with which a text begins, 0 when it begins with none. Never beyond what fits 32 bits.
double LeadingNumber(std::string_view text);

// A number that is the whole text (blanks around it aside), or nothing.
std::optional<double> WholeNumber(std::string_view text);

// The value of the radio button that a record means: what its item "value" says, or the input data
// where that is no state. "" when the record names none.
std::string_view RadioValue(std::string_view indt, std::string_view value);

// A text read as a truth value: "True" or "False" in any case, or a number, non-zero true. Nothing
// for any other text.
std::optional<bool> TruthValue(std::string_view text);

}  // namespace tamrin
