#include <iterator>

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

constexpr PutRow kPutRows[] = {
    {"<input id=%>", "value", "山田 🚀 \"'\\", true, "山田 🚀 \"'\\", "input change"},
    {"<input id=% value=old>", "value", "", true, "", "input change"},
    {"<input id=% type=number>", "value", "abc", false, "", ""},
    {"<input id=% type=date>", "value", "2026-02-29", false, "", ""},
    {"<input id=% type=color value='#000000'>", "value", "red", false, "#000000", ""},
    {"<input id=% type=color>", "value", "#FF0000", true, "#ff0000", "input change"},
    {"<input id=% type=range value=50>", "value", "101", false, "50", ""},
    {"<input id=% readonly>", "value", "x", true, "x", "*"},
    {"<input id=% disabled>", "value", "x", true, "x", "*"},
    {"<textarea id=%></textarea>", "value", "一\r\n二\r\n", true, "一\r\n二\r\n", "input change"},
    {"<select id=%><option>a<option value=2>b</select>", "selectedIndex", "1", true, "1",
     "input change"},
    {"<select id=%><option>a<option>b</select>", "selectedIndex", "2", false, "0", ""},
    {"<select id=%><option>a<option>b</select>", "selectedIndex", "-1", false, "0", ""},
    {"<select id=%><option>a<option value=2>b</select>", "value", "2", true, "2", "input change"},
    {"<select id=%><option>a<option>b</select>", "value", "c", false, "a", ""},
    {"<input id=% type=checkbox>", "checked", "True", true, "True", "click input change"},
    {"<input id=% type=checkbox checked>", "checked", "False", true, "False", "click input change"},
    {"<input id=% type=checkbox checked>", "checked", "True", true, "True", "change"},
    {"<input id=% type=checkbox disabled>", "checked", "True", true, "True", "*"},
    {"<input id=% type=radio name=r><input type=radio name=r checked>", "checked", "True", true,
     "True", "click input change"},
    {"<input id=% type=radio name=s checked>", "checked", "False", true, "False", "*"},
    {"<input id=% type=file>", "value", "/no/such/file", false, "", ""},
    {"<button id=% value=v></button>", "value", "x", true, "x", "*"},
    {"<div id=%>文</div>", "value", "x", false, "", ""},
};

TEST_F(Put, IsNoticedByThePageAsAUsersInput) {
    std::string body =
        "<script>for (const type of ['click', 'input', 'change']) addEventListener(type,"
        " e => e.target.title += (e.target.title ? ' ' : '') + type, true);</script>";
    for (std::size_t i = 0; i < std::size(kPutRows); ++i)
        body += Numbered(kPutRows[i].html, i) + "\n";
    for (const bool in_one : {false, true}) {
        Open(body);
        for (std::size_t i = 0; i < std::size(kPutRows); ++i) {
            const PutRow& row = kPutRows[i];
            SCOPED_TRACE(std::string(row.html).append(in_one ? " by Change" : " by Put"));
            const Element element = Find(Numbered("%", i));
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
    Check(
        {{"<input id=f><select id=s><option>a<option>b</select><input type=checkbox id=c>"
          "<p id=p contenteditable oninput=say(textContent)></p><script>"
          "for (const e of document.querySelectorAll('#f,select')) {"
          " const own = Object.getOwnPropertyDescriptor(e.constructor.prototype, 'value');"
          " let known = e.value;"
          " Object.defineProperty(e, 'value', {get() { return own.get.call(e); },"
          "  set(v) { known = v; own.set.call(e, v); }});"
          " e.addEventListener(e.tagName === 'INPUT' ? 'input' : 'change', () => {"
          "  if (e.value === known) return; known = e.value; say(e.value); }); }"
          "let set = false; Object.defineProperty(c, 'checked', {set() { set = true; }});"
          "c.onclick = () => say(set ? 'set' : 'clicked');</script>",
          "put:f:value=一 fire:f:onchange put:f:value=二 fire:f:onchange put:s:selectedIndex=1"
          " fire:s:onchange put:c:checked=True put:p:value=文",
          "一 二 b clicked 文"}});
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
    ExpectSaid("一行.txt6");
}

TEST_F(Put, AnswersFalseForAnElementThatIsGone) {
    Open("<form><input id=a></form><input type=button id=b onclick='a.remove()'>");
    const Element gone = Find("a");
    EXPECT_TRUE(Find("b").click());
    ASSERT_TRUE(Wait([&] { return !Find("a"); }));
    EXPECT_EQ(StillAnswers(gone), "");
}

}  // namespace
}  // namespace tamrin::conformance
