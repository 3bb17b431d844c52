// Pages as users meet them: frames and tables, fields that are rebuilt, policies and own built-ins.

#include "platform/posix/text_codec.h"
#include "recording/recording_fixture.h"

namespace tamrin::test {
namespace {

std::string ShiftJis(const std::string& text) { return *PosixTextCodec().Encode(text); }

TEST_F(RecordingTest, RecordsInFrames) {
    ServePage("/",
              "<input id=top><iframe name=inner src=/inner width=500 height=200></iframe>"
              "<input id=last>");
    Serve("/inner", {.body = "<form action=/done><input id=in1><input id=in2>"
                             "<input type=submit id=send value=OK></form>"});
    Serve("/done", {.body = "<p id=done>受付"});
    Record("/");
    ClickOn("top");
    desk().Type("a");
    ClickOn("in1");
    desk().Type("b");
    desk().Press({"Tab"});
    desk().Type("c");
    ClickOn("last");
    desk().Type("d");
    ClickOn("send");
    AwaitRequests(3);
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "input\t,id=top,type=text,indt=a",
                                  "input\t,id=in1,type=text,indt=b",
                                  "input\t,id=in2,type=text,indt=c",
                                  "input\t,id=last,type=text,indt=d",
                                  "click\t,id=send,type=submit,indt=OK",
                              }));
    PlayBack();
}

constexpr const char* kApplication = R"html(
<form action=/done onsubmit="return this.shimei.value != ''"><table><tr><td>氏名
<td><input name=shimei onchange="this.form.kana.value='カナ'"><td><input name=kana>
<tr><td><input type=submit value="送 信" data-place=send></table></form>)html";

TEST_F(RecordingTest, RecordsAnOldFrameset) {
    const std::string type = "text/html; charset=Shift_JIS";
    Serve("/", {.content_type = type,
                .body = "<html><head>" + Watched() +
                        "</head><frameset cols='200,*'><frame name=menu src=/menu>"
                        "<frame name=main src=/main></frameset></html>"});
    Serve("/menu", {.content_type = type,
                    .body = ShiftJis("<a href=/form target=main data-place=menu>申請書</a>")});
    Serve("/main", {.content_type = type, .body = ShiftJis("<p>左から選んでください")});
    Serve("/form", {.content_type = type, .body = ShiftJis(kApplication)});
    Serve("/done", {.content_type = type, .body = ShiftJis("<p>受付")});
    Record("/");
    ClickOn("menu");
    ClickOn("shimei");
    desk().Compose({"9ad9", "2460"});
    ClickOn("send");
    AwaitRequests(5);
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "click\t,id=,type=href,indt=申請書",
                                  "input\t,id=shimei,type=text,indt=髙①",
                                  "click\t,id=,type=submit,indt=送 信",
                              }));
    PlayBack();
}

// Such a page replaces its fields by new ones at each input.
TEST_F(RecordingTest, RecordsFieldsThatAreRebuilt) {
    ServePage("/", R"(<div id=app></div><button id=send data-place=send>送る</button><script>
const state = {name: '', mail: ''};
const show = (focus) => {
  app.innerHTML = Object.keys(state).map((k) => `<input id=${k} value="${state[k]}">`).join('');
  for (const k of Object.keys(state)) document.getElementById(k).oninput = (e) => {
    state[k] = e.target.value;
    show(k);
  };
  if (!focus) return;
  const field = document.getElementById(focus);
  field.focus();
  field.setSelectionRange(99, 99);
};
show();
send.onclick = () => { location = '/done?' + new URLSearchParams(state); };
</script>)");
    ServePage("/done", "");
    Record("/");
    ClickOn("name");
    desk().Type("abc");
    ClickOn("mail");
    desk().Type("d");
    ClickOn("send");
    See("/done");
    const Lines lines = EndRecording();
    EXPECT_EQ(lines.back(), "click\t,id=send,type=submit,indt=");
    PlayBack();
}

// A page may forbid scripts that it does not know, and give the names of the language to others.
TEST_F(RecordingTest, RecordsOnPagesThatForbidAndRedefine) {
    const char* policy =
        "<meta http-equiv=Content-Security-Policy content=\"script-src 'nonce-n'\">";
    const char* redefine =
        "<script nonce=n>const own = addEventListener;"
        "Array.prototype.push = Array.prototype.map = String.prototype.toLowerCase = () => 'no';"
        "Map = Set = JSON = Promise = undefined; EventTarget.prototype.addEventListener = () => {};"
        "own.call(window, 'click', (e) => e.stopImmediatePropagation(), true);</script>";
    Serve("/",
          {.body = std::string("<!doctype html><meta charset=utf-8>") + policy +
                   Watched("nonce=n") + redefine + "<input id=a><input id=b type=button value=c>"});
    Record("/");
    ClickOn("a");
    desk().Type("x");
    ClickOn("b");
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "input\t,id=a,type=text,indt=x",
                                  "click\t,id=b,type=button,indt=c",
                              }));
}

}  // namespace
}  // namespace tamrin::test
