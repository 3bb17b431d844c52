#include "app/record_fields.h"

#include <algorithm>
#include <utility>

#include "browser/element_types.h"
#include "platform/text.h"

namespace tamrin {
namespace {

constexpr ActionName kActions[] = {
    {"//", "コメント"},
    {"sendkeys", "キー入力"},
    {"sendkeys-if-busy", "ビジー時キー入力"},
    {"url", "Webページアドレス"},
    {"input", "入力"},
    {"submit", "送信"},
    {"click", "クリック"},
    {"click_mouse", "実マウスクリック"},
    {"navigate", "ページ移動"},
    {"quit", "終了"},
    {"wait", "指定時間ミリ秒)待機"},
};

constexpr std::size_t kKeywordWidth = 17;

bool IsKeys(std::string_view act) { return act == "sendkeys" || act == "sendkeys-if-busy"; }

// The second column of a record.
class Items {
public:
    explicit Items(std::string_view column) {
        for (bool first = true;; first = false) {
            const auto end = column.find_first_of(",\t");
            if (first) {
                head_ = column.substr(0, end);
            } else {
                items_.emplace_back(column.substr(0, end));
            }
            if (end == std::string_view::npos) return;
            column.remove_prefix(end + 1);
        }
    }

    // Gives an item its value, at its place or, when it is `wanted` and missing, at the end. The
    // first of several is the one that counts; the others go.
    void Set(std::string_view key, std::string_view value, bool wanted) {
        const std::string item = std::string(key) + "=" + std::string(value);
        const auto is_key = [&](const std::string& each) {
            return StartsWithIgnoreCase(each, std::string(key) + "=");
        };
        const auto found = std::find_if(items_.begin(), items_.end(), is_key);
        if (found == items_.end()) {
            if (wanted) items_.push_back(item);
            return;
        }
        *found = item;
        items_.erase(std::remove_if(found + 1, items_.end(), is_key), items_.end());
    }

    void Remove(std::string_view key) {
        std::erase_if(items_, [&](const std::string& each) {
            return StartsWithIgnoreCase(each, std::string(key) + "=");
        });
    }

    void DropHead() { head_.clear(); }

    std::string Text() const {
        std::string text = head_;
        for (const std::string& item : items_) text += "," + item;
        return text;
    }

private:
    std::string head_;  // what stands before the first item
    std::vector<std::string> items_;
};

// A typed text as an item holds it.
std::string Encoded(std::string_view typed) {
    std::string text;
    for (std::size_t i = 0; i < typed.size(); ++i) {
        const char c = typed[i];
        const bool pair = c == '\r' && i + 1 < typed.size() && typed[i + 1] == '\n';
        if (c == '\r' || c == '\n') {
            text += "\r\n";
            i += pair ? 1 : 0;
        } else {
            text += c == '\t' ? ' ' : c;
        }
    }
    return EncodeItemValue(text);
}

}  // namespace

Record ReadRecordFields(std::string_view line) {
    Record record = ParseRecord(line);
    // A line may carry its keys bare, in front of the items.
    if (IsKeys(record.act) && record.indt.empty()) record.indt = record.bare;
    for (std::string* item : {&record.id, &record.type, &record.size_bar, &record.indt}) {
        *item = DecodeItemValue(*item);
    }
    record.userwait = DecodeComma(record.userwait);
    record.value.clear();
    record.bare.clear();
    return record;
}

std::string RewriteRecord(std::string_view line, const Record& fields) {
    if (ReadRecordFields(line) == fields) return std::string(line);
    const auto column = line.find_first_of("\t,");
    Items items(column == std::string_view::npos ? "" : line.substr(column + 1));
    if (column != std::string_view::npos && line[column] == ',') {
        items = Items(line.substr(column));
    }
    if (IsKeys(fields.act)) items.DropHead();
    const bool is_url = fields.act == "url";
    items.Set("id", Encoded(fields.id), true);
    if (is_url || !fields.size_bar.empty()) {
        items.Set("size_bar", Encoded(fields.size_bar), true);
    } else {
        items.Remove("size_bar");
    }
    items.Set("type", Encoded(fields.type), !is_url || !fields.type.empty());
    items.Set("indt", Encoded(fields.indt), true);
    items.Remove("userwait");
    if (TakesUserWait(fields.act)) items.Set("userwait", EncodeComma(fields.userwait), true);
    return fields.act + "\t" + items.Text();
}

bool TakesUserWait(std::string_view act) { return act != "//" && !IsKeys(act); }

std::span<const ActionName> Actions() { return kActions; }

std::string ActionItem(std::string_view act) {
    for (const ActionName& action : kActions) {
        if (action.keyword != act) continue;
        std::string item(act);
        item.resize(std::max(kKeywordWidth, item.size()), ' ');
        return item + "'" + std::string(action.description);
    }
    return std::string(act);
}

std::string ActionOfItem(std::string_view item) {
    item = Trim(item);
    const std::string_view keyword = item.substr(0, item.find_first_of(" ,\t"));
    // Another action keeps its blanks: a comment may stand behind its "//".
    const bool described = Trim(item.substr(keyword.size())).starts_with('\'');
    return std::string(described ? keyword : item.substr(0, item.find_first_of(",\t")));
}

std::vector<std::string> OfferedTypes() {
    std::vector<std::string> names;
    for (const ElementType& type : ElementTypes()) {
        if (type.offered) names.emplace_back(type.name);
    }
    return names;
}

}  // namespace tamrin
