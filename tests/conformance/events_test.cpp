// What pages report of their user.

#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using DocumentEvent = Suite;

TEST_F(DocumentEvent, TellsOfWhatTheUserDoes) {
    const std::string left = "focus a, click a, key49 a, leave a=1, focus b=送";
    const std::string fields = "<input id=k><input id=n>";
    Check({
        {"<form id=g><input id=a><textarea id=b></textarea><input id=c type=checkbox><input id=d"
         " type=radio><select id=e><option>x<option>y</select></form><input id=f type=password>",
         "@a あ1 {TAB} x @c @d {TAB} {DOWN} {TAB} s {TAB}", "",
         "focus a in g, click a in g, key49 a=あ in g, leave a=あ1 in g, focus b in g,"
         " key120 b in g, leave b=x in g, focus c=False in g, click c=True in g,"
         " leave c=True in g, focus d=False in g, click d=True in g, leave d=True in g,"
         " focus e=0 in g, leave e=1 in g, focus f, key115 f, leave f=s"},
        // The page is gone when its events are delivered.
        {"<input id=a><form id=f action=/echo><input type=submit id=b value=送></form>", "@a 1 @b",
         "",
         left + " in f, click b=送 in f, submit b=送 in f, navigate b=送, DocumentComplete top"},
        // Frames report in the order of the user, whichever process they are in.
        {"<input id=a><iframe id=i src=$1></iframe><iframe id=j src=$2></iframe>",
         "@a 1 @i/k 1 @j/n 2 @i/k", "",
         "focus a, click a, key49 a, leave a=1, focus i, focus k, click k, key49 k, leave k=1,"
         " focus j, focus n, click n, key50 n, leave n=2, focus i, focus k=1, click k=1",
         fields},
        // The tab is closed.
        {"<input id=a value=v><button id=b value=w>x</button>", "@a @b %{F4}", "",
         "focus a=v, click a=v, leave a=v, focus b=w, click b=w, OnQuit"},
    });
}

TEST_F(DocumentEvent, BringsTheButtonThatEnterPresses) {
    const auto row = [](const std::string& form, const std::string& pressed, const char* said) {
        const std::string script =
            "<script>onclick = e => say(e.target.id); onsubmit = e => e.preventDefault();"
            "a.onchange = e => say('changed'); a.onfocus = e => say('in')</script>";
        return Row{form + script, "@a 1 {ENTER}", said,
                   "focus a in f, click a in f, key49 a in f, key13 a=1 in f" + pressed};
    };
    Check({
        row("<form id=f><input id=a><button type=button></button><button type=reset></button>"
            "<button id=b value=v></button><input type=submit></form>",
            " presses b=v, focus a=1 in f, submit a=1 in f", "in a changed b"),
        row("<input type=image id=b form=f><form id=f><input id=a><input type=submit></form>",
            " presses b, focus a=1 in f, submit a=1 in f", "in a changed b"),
        row("<form id=f><input id=a><input type=submit id=b disabled><button></button></form>",
            " presses b, focus a=1 in f", "in a changed"),
        row("<form id=f><input name=form><input name=elements><input id=a name=id><input"
            " type=image id=b></form>",
            " presses b, focus a=1 in f, submit a=1 in f", "in a changed b"),
        row("<form id=f><input id=a><input type=checkbox checked></form><button></button>",
            ", focus a=1 in f, submit a=1 in f", "in a changed"),
    });
}

}  // namespace
}  // namespace tamrin::conformance
