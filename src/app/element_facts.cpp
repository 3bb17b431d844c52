#include "app/element_facts.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "browser/element_keys.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// Always as many, for their number would tell something.
constexpr const char* kDots = "●●●●●●●●";

bool IsBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Reads the attributes of one tag.
class TagReader {
public:
    // `at` is behind the tag's name.
    TagReader(std::string_view html, std::size_t at) : html_(html), at_(at) {}

    struct Attribute {
        std::string_view name;
        std::size_t value = 0;  // where its value begins
        std::size_t length = 0;
    };

    // Goes on to the next attribute; false at the end of the tag.
    bool Next(Attribute& attribute) {
        while (!AtEnd() && (IsBlank(html_[at_]) || html_[at_] == '/')) ++at_;
        if (AtEnd() || html_[at_] == '>') return false;
        const std::size_t name = at_;
        while (!AtEnd() && !IsBlank(html_[at_]) && html_[at_] != '=' && html_[at_] != '>') ++at_;
        attribute = {html_.substr(name, at_ - name)};
        if (AtEnd() || html_[at_] != '=') return true;
        ++at_;
        const char quote = AtEnd() ? '\0' : html_[at_];
        const bool quoted = quote == '"' || quote == '\'';
        if (quoted) ++at_;
        attribute.value = at_;
        while (!AtEnd() &&
               (quoted ? html_[at_] != quote : !IsBlank(html_[at_]) && html_[at_] != '>'))
            ++at_;
        attribute.length = at_ - attribute.value;
        if (quoted && !AtEnd()) ++at_;
        return true;
    }

private:
    bool AtEnd() const { return at_ >= html_.size(); }

    std::string_view html_;
    std::size_t at_;
};

std::string FormText(const Element& element) {
    std::string name = GetFormName(element);
    if (!name.empty()) return name;
    const Element form = element.form();
    if (!form) return "";
    const std::string id = form.id();
    return id.empty() ? "（名前なし）" : id;
}

std::string FrameText(const std::vector<Element>& path) {
    std::string text;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const std::string name = path[i].name();
        const std::string& label = name.empty() ? path[i].id() : name;
        if (i > 0) text += " > ";
        text += label.empty() ? "（名前なし）" : label;
    }
    return text;
}

}  // namespace

ElementFacts KeysOf(const std::vector<Element>& path) {
    ElementFacts facts;
    if (path.empty()) return facts;
    const Element& element = path.back();
    facts[kTag] = GetTagName(element);
    facts[kId] = element.id();
    facts[kName] = GetElementName(element);
    facts[kType] = GetElementType(element);
    facts[kValue] = element.value();
    if (!facts[kValue].empty() && EqualsIgnoreCase(facts[kType], "password")) {
        facts[kValue] = kDots;
    }
    facts[kHref] = GetHref(element);
    facts[kFrames] = FrameText(path);
    return facts;
}

void ReadOtherFacts(const std::vector<Element>& path, ElementFacts& facts) {
    if (path.empty()) return;
    facts[kForm] = FormText(path.back());
    facts[kHtml] = HidePasswords(path.back().Get("outerHTML"));
}

std::string HidePasswords(const std::string& html) {
    constexpr std::string_view kTagStart = "<input";
    std::string shown;
    std::size_t copied = 0;
    for (std::size_t at = html.find('<'); at != std::string::npos; at = html.find('<', at + 1)) {
        if (!EqualsIgnoreCase(std::string_view(html).substr(at, kTagStart.size()), kTagStart)) {
            continue;
        }
        TagReader tag(html, at + kTagStart.size());
        TagReader::Attribute attribute;
        TagReader::Attribute value;
        bool password = false;
        while (tag.Next(attribute)) {
            const auto text = std::string_view(html).substr(attribute.value, attribute.length);
            password |=
                EqualsIgnoreCase(attribute.name, "type") && EqualsIgnoreCase(text, "password");
            if (EqualsIgnoreCase(attribute.name, "value")) value = attribute;
        }
        if (!password || value.length == 0) continue;
        shown.append(html, copied, value.value - copied).append(kDots);
        copied = value.value + value.length;
    }
    return shown.empty() ? html : shown.append(html, copied);
}

}  // namespace tamrin
