#include "app/record_finding.h"

#include <array>

#include "browser/element_keys.h"
#include "platform/text.h"
#include "player/input_data.h"
#include "recorder/event_record.h"
#include "scenario/record.h"

namespace tamrin {
namespace {

bool IsPassword(const Element& element) {
    return EqualsIgnoreCase(GetElementType(element), "password");
}

// What the element and the record have in common, by FoundBy.
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

std::string RecordWithoutPassword(const Element& element) {
    if (!IsPassword(element)) return RecordOfElement(element);
    return BuildEventRecord(GetElementId(element), {GetElementType(element), ""}, "input");
}

Found FindByRecord(const Document& document, std::string_view line) {
    const Record record = ParseRecord(line);
    const std::string indt = DecodeItemValue(record.indt);
    Found found = FindElement(document, {record.id, record.type, indt}, Count::kAll);
    const std::string item = DecodeItemValue(record.value);
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
