#include "app/record_finding.h"

#include <array>

#include "browser/element_keys.h"
#include "platform/text.h"
#include "recorder/event_record.h"
#include "recorder/tag_list.h"

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

std::string Way(const RecordTarget& target) {
    return std::string("（") + kWays[static_cast<std::size_t>(target.by)] + "）";
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
    const RecordTarget& target = finding.target;
    if (!target.element) {
        const bool deep = finding.frames.size() > 1;
        return std::string("このレコードでは、要素が見つかりません。") +
               (deep ? "フレームの中のフレームは、探しません。" : "");
    }
    if (!(target.element == finding.element)) {
        return "このレコードでは、別の要素 " + Name(target.element) + " が見つかります" +
               Way(target) + "。";
    }
    std::string text = "このレコードで、この要素が見つかります" + Way(target) + "。";
    if (!finding.frames.empty()) {
        text += "フレーム " + GetElementId(finding.frames.front()) + " の中で見つかりました。";
    }
    return text + Others(target.count);
}

}  // namespace

std::string RecordWithoutPassword(const Element& element) {
    if (!IsPassword(element)) return RecordOfElement(element);
    return BuildEventRecord(GetElementId(element), {GetElementType(element), ""}, "input");
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
