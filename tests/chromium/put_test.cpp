#include <filesystem>

#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

class Put : public ChromiumTest {};

TEST_F(Put, TellsWhatAFieldTakes) {
    Open(
        "<input id=text><input id=number type=number value=7><input id=date type=date>"
        "<input id=color type=color value='#000000'><input id=range type=range value=50>"
        "<input id=off disabled><input id=fixed readonly><textarea id=area></textarea>"
        "<select id=s><option value=a>A<option value=b>B</select><div id=div></div>"
        "<div id=edit contenteditable></div><input id=box type=checkbox>"
        "<input id=r1 type=radio name=r checked><input id=r2 type=radio name=r>"
        "<input id=hidden type=hidden><button id=button value=v></button>");
    const struct {
        const char* id;
        const char* property;
        const char* value;
        bool taken;
        const char* read;
        const char* after;
    } rows[] = {
        {"text", "value", "日本\"語\\\n\xf0\x9f\x98\x80", true, "value",
         "日本\"語\\\xf0\x9f\x98\x80"},
        {"text", "value", "", true, "value", ""},
        {"number", "value", "x", false, "value", "7"},
        {"number", "value", "12.5", true, "value", "12.5"},
        {"date", "value", "2024-02-29", true, "value", "2024-02-29"},
        {"date", "value", "2024-02-30", false, "value", "2024-02-29"},
        {"color", "value", "red", false, "value", "#000000"},
        {"color", "value", "#FF0000", true, "value", "#ff0000"},
        {"range", "value", "101", false, "value", "50"},
        {"off", "value", "x", true, "value", "x"},
        {"fixed", "value", "x", true, "value", "x"},
        {"area", "value", "a\nb", true, "value", "a\r\nb"},
        {"s", "value", "b", true, "selectedIndex", "1"},
        {"s", "value", "c", false, "selectedIndex", "1"},
        {"s", "selectedIndex", "0", true, "value", "a"},
        {"s", "selectedIndex", "2", false, "value", "a"},
        {"s", "selectedIndex", "-1", false, "value", "a"},
        {"s", "selectedIndex", "", false, "value", "a"},
        {"text", "selectedIndex", "0", false, "value", ""},
        {"div", "value", "x", false, "innerText", ""},
        {"edit", "value", "x", true, "innerText", "x"},
        {"box", "checked", "True", true, "checked", "True"},
        {"box", "checked", "False", true, "checked", "False"},
        {"text", "checked", "True", false, "checked", "False"},
        {"r2", "checked", "True", true, "checked", "True"},
        {"r1", "checked", "False", true, "checked", "False"},
        {"r2", "checked", "False", true, "checked", "False"},
        {"hidden", "value", "x", true, "value", "x"},
        {"button", "value", "x", true, "value", "x"},
        {"text", "innerText", "x", false, "value", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.id) + " " + row.property + " " + row.value);
        const Element element = Find(row.id);
        EXPECT_EQ(element.Put(row.property, row.value), row.taken);
        EXPECT_EQ(element.Get(row.read), row.after);
    }
}

// The events of each act are those of a person's: one input, one change.
TEST_F(Put, TellsThePageAsAUserWould) {
    Open(
        "<div id=all><input id=t><input id=c type=checkbox><input id=r type=radio>"
        "<select id=s><option>a<option>b</select><input id=f type=file></div><script>"
        "for (const type of ['click', 'input', 'change'])"
        "  document.getElementById('all').addEventListener(type,"
        "    (e) => log(e.target.id + ':' + type));</script>");
    const std::string file = std::filesystem::path(__FILE__).string();
    const struct {
        const char* id;
        const char* property;
        std::string value;
        const char* expected;
    } rows[] = {
        {"t", "value", "x", "t:input t:change"},
        {"c", "checked", "True", "c:click c:input c:change"},
        {"c", "checked", "True", "c:change"},
        {"r", "checked", "True", "r:click r:input r:change"},
        {"s", "selectedIndex", "1", "s:input s:change"},
        {"f", "value", file, "f:input f:change"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.id) + " " + row.value);
        EXPECT_TRUE(browser_.Navigate(
            "javascript:words = []; document.getElementById('log').textContent = ''"));
        const Element element = Find(row.id);
        EXPECT_TRUE(element.Put(row.property, row.value));
        EXPECT_TRUE(element.fireEvent("onchange"));
        EXPECT_EQ(Log(), row.expected);
    }
}

TEST_F(Put, OfAFileNeedsAnExistingOne) {
    Open("<input id=f type=file>");
    const Element field = Find("f");
    EXPECT_FALSE(field.Put("value", "/no/such/file"));
    EXPECT_FALSE(field.Put("value", ""));
    EXPECT_EQ(field.value(), "");
    EXPECT_TRUE(field.Put("value", std::filesystem::path(__FILE__).string()));
    EXPECT_EQ(field.value(), "C:\\fakepath\\put_test.cpp");
}

// Page frameworks watch the setters of their fields, to tell a user's input from their own.
TEST_F(Put, IsSeenByAFrameworkThatWatchesItsFields) {
    Open(
        "<input id=t><input id=c type=checkbox><script>"
        "function watch(e, name) {"
        "  const own = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, name);"
        "  let known = e[name];"
        "  Object.defineProperty(e, name, {get() { return own.get.call(this) },"
        "    set(value) { known = value; own.set.call(this, value) }});"
        "  e.addEventListener(name == 'value' ? 'input' : 'click', () => {"
        "    if (own.get.call(e) !== known) log(e.id + '=' + (known = own.get.call(e))); });"
        "}"
        "watch(t, 'value'); watch(c, 'checked');</script>");
    EXPECT_TRUE(Find("t").Put("value", "new"));
    EXPECT_TRUE(Find("c").Put("checked", "True"));
    EXPECT_EQ(Log(), "t=new c=true");
}

}  // namespace
}  // namespace tamrin::test
