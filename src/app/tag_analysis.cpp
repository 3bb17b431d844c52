#include "app/tag_analysis.h"

#include <cctype>
#include <string_view>

#include "browser/element_keys.h"
#include "platform/text.h"
#include "player/input_data.h"
#include "recorder/event_record.h"
#include "scenario/record.h"

namespace tamrin {
namespace {

bool IsBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Reads the attributes of one tag.
class TagReader {
public:
    // `at` is the position after the tag's name.
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

// How the record found the element, by FoundBy.
constexpr std::array<const char*, 10> kWays{
    "",
    "段階 1：type と値が同じ",
    "段階 2：name と type が同じ",
    "段階 3：id が同じ",
    "段階 4：name が同じ",
    "段階 5：フォームの中で id か name が同じ",
    "name と value が同じラジオボタン",
    "値が同じ",
    "リンクの文字が同じ",
    "リンクのアドレスが同じ",
};

std::string Way(const Found& found) {
    return std::string("（") + kWays[static_cast<std::size_t>(found.by)] + "）";
}

std::string Others(int count) {
    if (count <= 1) return "同じ条件の要素は、ほかにありません。";
    return "同じ条件の要素がほかに " + std::to_string(count - 1) +
           " 個あり、最初のものが使われます。";
}

std::string Name(const Element& element) {
    const std::string id = GetElementId(element);
    return GetTagName(element) + (id.empty() ? "" : " " + id);
}

std::string Result(const Finding& finding) {
    const Found& found = finding.found;
    if (!found.element) {
        const bool deep = finding.frames.size() > 1;
        return std::string("このレコードでは、要素が見つかりません。") +
               (deep ? "フレームの中のフレームは、探しません。" : "");
    }
    if (!(found.element == finding.element)) {
        return "このレコードでは、別の要素 " + Name(found.element) + " が見つかります" +
               Way(found) + "。";
    }
    std::string text = "このレコードで、この要素が見つかります" + Way(found) + "。";
    if (!finding.frames.empty()) {
        text += "フレーム " + GetElementId(finding.frames.front()) + " の中で見つかりました。";
    }
    return text + Others(found.count);
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
    facts[kValue] = ShownValue(facts[kType], element.value());
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

std::string RecordWithoutPassword(const Element& element) {
    if (!IsPassword(element)) return RecordOfElement(element);
    return BuildEventRecord(GetElementId(element), {GetElementType(element), ""}, "input");
}

Found FindByRecord(const Document& document, std::string_view line) {
    const Record record = ParseRecord(line);
    const std::string indt = DecodeItemValue(record.indt);
    const std::string item = DecodeItemValue(record.value);
    Found found = FindElement(document, {record.id, record.type, indt, item}, Count::kAll);
    const std::string_view radio = RadioValue(indt, item);
    if (radio.empty() || !EqualsIgnoreCase(GetElementType(found.element), "radio")) return found;
    return FindRadio(document, found.element.name(), radio);
}

std::string Describe(const Finding& finding) {
    std::string text;
    if (!(finding.element == finding.pointed)) {
        text = "ポインターの下の " + GetTagName(finding.pointed) + " を囲む " +
               GetTagName(finding.element) + " のレコードです。\r\n";
    }
    if (IsPassword(finding.element)) text += "パスワードは入れていません。\r\n";
    return text + Result(finding);
}

}  // namespace tamrin
