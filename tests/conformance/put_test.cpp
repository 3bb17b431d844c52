#include "conformance/suite.h"
#include "support/temporary_folder.h"

namespace tamrin::conformance {
namespace {

using Put = Suite;

struct PutRow {
    std::string_view html;  // an element with the id %, the number of its row
    std::string_view property;
    std::string_view value;
    bool taken;
    std::string_view after;   // the property afterwards
    std::string_view events;  // what the page saw by Change
};

constexpr PutRow kRows[] = {
    {"<input id=%>", "value", "山田 🚀 \"'\\", true, "山田 🚀 \"'\\", "input change"},
    {"<input id=% value=old>", "value", "", true, "", "input change"},
    {"<input id=% value=same>", "value", "same", true, "same", "input change"},
    {"<input id=% oninput='value = value.toUpperCase()'>", "value", "ab", true, "AB",
     "input change"},
    {"<input id=% type=password>", "value", "p", true, "p", "input change"},
    {"<input id=% type=email>", "value", "a@b.jp", true, "a@b.jp", "input change"},
    {"<input id=% type=number>", "value", "-1.5", true, "-1.5", "input change"},
    {"<input id=% type=number>", "value", "abc", false, "", ""},
    {"<input id=% type=date>", "value", "2026-04-01", true, "2026-04-01", "input change"},
    {"<input id=% type=date>", "value", "4月1日", false, "", ""},
    {"<input id=% type=date>", "value", "2026-02-29", false, "", ""},
    {"<input id=% type=color value='#000000'>", "value", "red", false, "#000000", ""},
    {"<input id=% type=color>", "value", "#FF0000", true, "#ff0000", "input change"},
    {"<input id=% type=range value=50>", "value", "101", false, "50", ""},
    {"<input id=% maxlength=2>", "value", "abc", true, "abc", "input change"},
    {"<input id=% readonly>", "value", "x", true, "x", "*"},
    {"<input id=% disabled>", "value", "x", true, "x", "*"},
    {"<input id=% type=hidden>", "value", "x", true, "x", "*"},
    {"<textarea id=%></textarea>", "value", "一\r\n二\r\n", true, "一\r\n二\r\n", "input change"},
    {"<textarea id=%></textarea>", "value", "一\n二", true, "一\r\n二", "input change"},
    {"<select id=%><option>a<option value=2>b</select>", "selectedIndex", "1", true, "1",
     "input change"},
    {"<select id=%><option>a<option>b</select>", "selectedIndex", "2", false, "0", ""},
    {"<select id=%><option>a<option>b</select>", "selectedIndex", "b", false, "0", ""},
    {"<select id=%><option>a<option>b</select>", "selectedIndex", "-1", false, "0", ""},
    {"<select id=%><option>a<option>b</select>", "selectedIndex", "", false, "0", ""},
    {"<select id=%><option>a<option value=2>b</select>", "value", "2", true, "2", "input change"},
    {"<select id=%><option>a<option>b</select>", "value", "c", false, "a", ""},
    {"<input id=% type=checkbox>", "checked", "True", true, "True", "click input change"},
    {"<input id=% type=checkbox checked>", "checked", "False", true, "False", "click input change"},
    {"<input id=% type=checkbox checked>", "checked", "True", true, "True", "change"},
    {"<input id=% type=checkbox disabled>", "checked", "True", true, "True", "*"},
    {"<input id=% type=radio name=r><input type=radio name=r checked>", "checked", "True", true,
     "True", "click input change"},
    {"<input id=% type=radio name=s checked>", "checked", "False", true, "False", "*"},
    {"<input id=%>", "checked", "True", false, "*", ""},
    {"<input id=%>", "selectedIndex", "0", false, "", ""},
    {"<input id=%>", "innerText", "x", false, "", ""},
    {"<input id=% type=file>", "value", "/no/such/file", false, "", ""},
    {"<input id=% type=file>", "value", "", false, "", ""},
    {"<button id=% value=v></button>", "value", "x", true, "x", "*"},
    {"<div id=%>文</div>", "value", "x", false, "", ""},
    {"<div id=%>文</div>", "checked", "True", false, "", ""},
};

std::string RowId(int number) { return std::string("e").append(std::to_string(number)); }

TEST_F(Put, IsNoticedByThePageAsAUsersInput) {
    std::string body =
        "<script>for (const type of ['click', 'input', 'change']) addEventListener(type,"
        " e => e.target.title += (e.target.title ? ' ' : '') + type, true);</script>";
    int number = 0;
    for (const PutRow& row : kRows) {
        std::string html(row.html);
        body += html.replace(html.find('%'), 1, RowId(number++)) + "\n";
    }
    for (const bool in_one : {false, true}) {
        Open(body);
        number = 0;
        for (const PutRow& row : kRows) {
            SCOPED_TRACE(std::string(row.html).append(in_one ? " by Change" : " by Put"));
            const Element element = Find(RowId(number++));
            EXPECT_EQ(in_one
                          ? element.Change(row.property, row.value)
                          : element.Put(row.property, row.value) && element.fireEvent("onchange"),
                      row.taken);
            if (row.after != "*") {
                EXPECT_EQ(element.Get(row.property), row.after);
            }
            if (row.events != "*") {
                EXPECT_EQ(element.getAttribute("title").value_or(""), row.events);
            }
        }
    }
}

TEST_F(Put, ReachesFieldsWhoseFrameworkTracksThem) {
    // As the frameworks do: the field's own accessor notes what scripts set, and an input event
    // that brings nothing new is not a user's.
    Open(
        "<input id=f><select id=s><option>a<option>b</select><input type=checkbox id=c>"
        "<p id=p contenteditable oninput=say(textContent)></p><script>"
        "for (const e of document.querySelectorAll('#f,select')) {"
        " const own = Object.getOwnPropertyDescriptor(e.constructor.prototype, 'value');"
        " let known = e.value;"
        " Object.defineProperty(e, 'value', {get() { return own.get.call(e); },"
        "  set(v) { known = v; own.set.call(e, v); }});"
        " e.addEventListener(e.tagName === 'INPUT' ? 'input' : 'change', () => {"
        "  if (e.value === known) return; known = e.value; say(e.value); }); }"
        "let set = false; Object.defineProperty(c, 'checked', {set() { set = true; }});"
        "c.onclick = () => say(set ? 'set' : 'clicked');</script>");
    const Element field = Find("f");
    EXPECT_TRUE(field.Put("value", "一") && field.fireEvent("onchange"));
    EXPECT_TRUE(field.Put("value", "二") && field.fireEvent("onchange"));
    const Element select = Find("s");
    EXPECT_TRUE(select.Put("selectedIndex", "1") && select.fireEvent("onchange"));
    EXPECT_TRUE(Find("c").Put("checked", "True"));
    EXPECT_TRUE(Find("p").Put("value", "文"));
    EXPECT_EQ(Said("一 二 b clicked 文"), "一 二 b clicked 文");
}

TEST_F(Put, IsReadThroughHandlesFoundBefore) {
    Open(
        "<input type=radio name=r id=a checked><input type=radio name=r id=b><input id=c value=1>");
    const Element a = Find("a");
    const Element b = Find("b");
    const Element c = Find("c");
    const Element same = Find("c");
    EXPECT_TRUE(b.Put("checked", "True") && c.Put("value", "2"));
    EXPECT_EQ(a.checked() + b.checked() + c.value() + same.value(), "FalseTrue22");
}

TEST_F(Put, GivesAFileToAFileField) {
    Open("<input type=file id=f onchange='say(files[0].name + files[0].size)'>");
    const TemporaryFolder folder;
    EXPECT_TRUE(Find("f").Put("value", folder.Write("一行.txt", "一行")));
    EXPECT_EQ(Said("一行.txt6"), "一行.txt6");
}

TEST_F(Put, AnswersFalseForAnElementThatIsGone) {
    Open("<input id=a><input type=button id=b onclick='a.remove()'>");
    const Element gone = Find("a");
    EXPECT_TRUE(Find("b").click());
    ASSERT_TRUE(Wait([&] { return !Find("a"); }));
    EXPECT_FALSE(gone.Put("value", "x"));
    EXPECT_FALSE(gone.fireEvent("onchange"));
    EXPECT_FALSE(gone.click());
    EXPECT_FALSE(gone.getBoundingClientRect());
    EXPECT_FALSE(browser().ElementScreenPoint(gone));
    EXPECT_FALSE(gone.parentElement());
    EXPECT_EQ(gone.innerText(), "");
}

}  // namespace
}  // namespace tamrin::conformance
