// Pages as users meet them, worked on by mouse and keyboard: the records, and what playing them
// asks of the server.

#include "platform/posix/text_codec.h"
#include "recording/rig.h"

namespace tamrin::test {
namespace {

constexpr const char* kDone = "<p>受付";

TEST_F(Recording, KeepsEachKindOfField) {
    ServePage("/", R"(
<form action=/old method=post>
<p><input id=name name=name type=text> <input id=kana name=kana>
<p><input id=pass name=pass type=password> <input id=mail name=mail type=email>
<p><textarea id=memo name=memo></textarea>
<p><select id=city name=city><option>東京<option>大阪<option>福岡</select>
<select id=pay name=pay><option>銀行<option>カード</select>
<p><input type=radio id=r1 name=when value=am><input type=radio id=r2 name=when value=pm>
<input type=checkbox id=gift name=gift>
<p><input type=submit id=send value=送信>
</form>)");
    // Older pages name their fields, and give ids to none.
    ServePage("/old", R"(
<form action=/done><table><tr><td><input name=q><td><select name=n><option>1<option>2</select>
<td><input type=radio name=r value=x><input type=radio name=r value=y data-place=y>
<td><input type=submit value=検索 data-place=go></table></form>)");
    ServePage("/done", kDone);
    Record(
        "@name Tokyo,1-2 @kana compose:6771 compose:4eac {Tab} p#9 {Tab} a@b.jp"
        " @memo compose:4e00 compose:884c {Return} b choose:city=2 {Tab}{Down}{Tab}{space}{Right}"
        " @gift @send see:/old @q kensaku {Tab}{Down} @y @go see:/done");
    Expect({
        "input\t,id=name,type=text,indt=Tokyo\x01"
        "1-2",
        "input\t,id=kana,type=text,indt=東京",
        "input\t,id=pass,type=password,indt=p#9",
        "input\t,id=mail,type=email,indt=a@b.jp",
        "input\t,id=memo,type=textarea,indt=一行\002b",
        "input\t,id=city,type=select-one,indt=2",
        "input\t,id=pay,type=select-one,indt=1",
        "input\t,id=r1,type=radio,indt=True",
        "input\t,id=r2,type=radio,indt=True",
        "input\t,id=gift,type=checkbox,indt=True",
        "click\t,id=send,type=submit,indt=送信",
        "input\t,id=q,type=text,indt=kensaku",
        "input\t,id=n,type=select-one,indt=1",
        "input\t,id=r,type=radio,indt=True,value=y",
        "click\t,id=,type=submit,indt=検索",
    });
    EXPECT_NE(program_->output().find("パスワードが含まれています"), std::string::npos);
    ExpectPlayed(
        {"POST /old name=Tokyo%2C1-2&kana=%E6%9D%B1%E4%BA%AC&pass=p%239&mail=a%40b.jp"
         "&memo=%E4%B8%80%E8%A1%8C%0D%0Ab&city=%E7%A6%8F%E5%B2%A1&pay=%E3%82%AB%E3%83%BC%E3%83%89"
         "&when=pm&gift=on",
         "GET /done?q=kensaku&n=2&r=y"});
}

TEST_F(Recording, KeepsWhatLeadsToOtherPages) {
    const std::string picture =
        "<img width=40 height=30 data-place=picture src=data:image/gif;base64,"
        "R0lGODlhAQABAIAAAP///wAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==>";
    ServePage("/", "<a href=/second data-place=text>次の ページ</a>");
    ServePage("/second", "<a href=/third>" + picture + "</a>");
    ServePage("/third", "<a href=\"javascript:location='/fourth'\" data-place=script>開く</a>");
    ServePage("/fourth",
              "<form><input type=image id=go src=/go.svg width=40 height=30"
              " onclick=\"location='/enter'; return false\"></form>");
    Serve("/go.svg", {.content_type = "image/svg+xml",
                      .body = "<svg xmlns='http://www.w3.org/2000/svg'><circle r='20'/></svg>"});
    // Enter is the button that it presses.
    ServePage("/enter",
              "<form action=/only><input name=q><input type=submit name=go value=検索></form>");
    // A page that is away before its click is recorded, and a server that sends it on.
    ServePage("/only", "<input id=a><button id=b onclick=\"location='/moved'\">x</button>");
    Serve("/moved", {.status = 302, .location = "/last"});
    ServePage("/last",
              "<button type=button id=stay onclick=\"fetch('/stayed')\">y</button>"
              "<button id=c onclick=\"document.write('<p>書き換え')\">z</button>");
    Serve("/stayed", {});
    Record(
        "@text see:/second @picture see:/third @script see:/fourth @go see:/enter @q one {Return}"
        " see:/only @a v @b see:/last @stay @c");
    Expect({
        "click\t,id=,type=href,indt=次の ページ",
        "click\t,id=,type=href,indt=/third",
        "click\t,id=,type=href,indt=開く",
        "click\t,id=go,type=image,indt=/go.svg",
        "input\t,id=q,type=text,indt=one",
        "click\t,id=go,type=submit,indt=検索",
        "input\t,id=a,type=text,indt=v",
        "click\t,id=b,type=submit,indt=",
        "click\t,id=stay,type=button,indt=",
        "click\t,id=c,type=submit,indt=",
    });
    ExpectPlayed({"GET /second", "GET /third", "GET /fourth", "GET /go.svg", "GET /enter",
                  "GET /only?q=one&go=%E6%A4%9C%E7%B4%A2", "GET /moved", "GET /last",
                  "GET /stayed"});
}

TEST_F(Recording, FollowsFrames) {
    ServePage("/",
              "<input id=top><iframe name=inner src=/inner width=500 height=200></iframe>"
              "<input id=last>");
    Serve("/inner", {.body = "<form action=/done><input id=in1 name=i><input id=in2>"
                             "<input type=submit id=send value=OK></form>"});
    Serve("/done", {.body = "<p id=done>受付"});
    Record("@top a @in1 b {Tab} c @last d @send");
    Expect({
        "input\t,id=top,type=text,indt=a",
        "input\t,id=in1,type=text,indt=b",
        "input\t,id=in2,type=text,indt=c",
        "input\t,id=last,type=text,indt=d",
        "click\t,id=send,type=submit,indt=OK",
    });
    ExpectPlayed({"GET /inner", "GET /done?i=b"});
}

TEST_F(Recording, FollowsAnOldFrameset) {
    const auto serve = [&](const char* path, const std::string& html) {
        Serve(path, {.content_type = "text/html; charset=Shift_JIS",
                     .body = *PosixTextCodec().Encode(html)});
    };
    serve("/", "<html><head>" + Reports() +
                   "</head><frameset cols='200,*'><frame name=menu src=/menu>"
                   "<frame name=main></frameset></html>");
    serve("/menu", "<a href=/form target=main data-place=menu>申請書</a>");
    serve("/form",
          "<form action=/done onsubmit=\"return this.shimei.value != ''\"><table><tr><td>氏名"
          "<td><input name=shimei onchange=\"this.form.kana.value='カナ'\"><td><input name=kana>"
          "<tr><td><input type=submit value='送 信' data-place=send></table></form>");
    serve("/done", kDone);
    Record("@menu @shimei compose:9ad9 compose:2460 @send");
    Expect({
        "click\t,id=,type=href,indt=申請書",
        "input\t,id=shimei,type=text,indt=髙①",
        "click\t,id=,type=submit,indt=送 信",
    });
    ExpectPlayed({"GET /menu", "GET /form", "GET /done?shimei=%FB%FC%87%40&kana=%83J%83i"});
}

// Such a page replaces its fields by new ones at each input.
TEST_F(Recording, PlaysFieldsThatAreRebuilt) {
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
    Record("@name abc @mail d @send see:/done");
    Hand({"key", "ctrl+shift+w"});
    EXPECT_EQ(program_->Wait(), 0) << program_->output();
    ExpectPlayed({"GET /done?name=abc&mail=d"});
}

// A page may forbid scripts that it does not know, and give the names of the language to others.
TEST_F(Recording, WorksOnPagesThatForbidAndRedefine) {
    Serve("/",
          {.body = "<!doctype html><meta charset=utf-8><meta http-equiv=Content-Security-Policy"
                   " content=\"script-src 'nonce-n'\">" +
                   Reports("nonce=n") +
                   "<script nonce=n>const own = addEventListener;"
                   "Array.prototype.push = Array.prototype.map = String.prototype.toLowerCase ="
                   " () => 'no'; Map = Set = JSON = Promise = undefined;"
                   "EventTarget.prototype.addEventListener = () => {};"
                   "own.call(window, 'click', (e) => e.stopImmediatePropagation(), true);"
                   "</script><input id=a><input id=b type=button value=c>"});
    Record("@a x @b");
    Expect({"input\t,id=a,type=text,indt=x", "click\t,id=b,type=button,indt=c"});
}

// The second visit to the first field changes nothing, nor do those to the filled one.
TEST_F(Recording, KeepsOnlyChangesWhereAskedTo) {
    const std::string a = "input\t,id=a,type=text,indt=x";
    const std::string b = "input\t,id=b,type=text,indt=old";
    const std::string c = "input\t,id=c,type=text,indt=z";
    const std::string visits = "@a x {Tab}{Tab} z @a {Tab}{shift+Tab}{Tab}";
    ServePage("/", "<input id=a><input id=b value=old><input id=c><p data-place=page>x");
    const struct {
        std::string conf, acts;
        Lines records;
    } rows[] = {
        {"rec change only = 1\r\n", visits, {a, c}},
        {"rec change only = 0\r\n", visits, {a, b, c, a, b, a}},
        {"", "@a x @page @a @page", {a}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.conf);
        folder_.Write("Conf.txt", row.conf);
        Record(row.acts);
        Expect(row.records);
    }
}

// Fields, and a button behind every 49 of them.
TEST_F(Recording, KeepsEachOfFiveHundredActionsInItsPlace) {
    std::string fields, acts = "@e0 ";
    Lines records;
    for (int i = 0; i < 500; ++i) {
        const std::string id = "e" + std::to_string(i);
        if (i % 50 == 49) {
            fields += "<input type=button value=x id=" + id + " onclick=\"count.value++\">";
            acts += "{space}{Tab}";
            records.push_back("click\t,id=" + id + ",type=button,indt=x");
        } else {
            const std::string letter(1, static_cast<char>('a' + i % 26));
            fields += "<input size=2 id=" + id + ">";
            acts += "{" + letter + "}{Tab}";
            records.push_back("input\t,id=" + id + ",type=text,indt=" + letter);
        }
    }
    records.emplace_back("click\t,id=send,type=submit,indt=ok");
    ServePage("/", "<form action=/done><input type=hidden name=count id=count value=0>" + fields +
                       "<input type=submit id=send value=ok></form>");
    ServePage("/done", "");
    Record(acts + "{space} see:/done");
    Expect(records);
    ExpectPlayed({"GET /done?count=10"});
}

const Lines kTwoFields{"input\t,id=a,type=text,indt=x", "input\t,id=b,type=text,indt=y"};

TEST_F(Recording, KeepsWhatWasRecordedWhenTheBrowserDies) {
    ServePage("/", "<input id=a><input id=b>");
    Record("@a {x}{Tab}{y}{Tab}");
    AwaitRecords(2);
    KillBrowser();
    ExpectSaved(kTwoFields);
}

// The field in which the user still stands is recorded as well.
TEST_F(Recording, SavesWhatIsUnderWayAtCtrlC) {
    ServePage("/", "<input id=a><input id=b>");
    Record("@a {x}{Tab}{y}");
    program_->Signal(SIGINT);
    ExpectSaved(kTwoFields);
}

}  // namespace
}  // namespace tamrin::test
