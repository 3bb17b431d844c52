#include "app/frm_tools.h"

#include "app/main_window_rig.h"
#include "app/tag_analysis.h"

namespace tamrin::test {
namespace {

class ToolsTest : public MainWindowTest {
protected:
    ToolsTest() {
        web.pages["shop"] =
            "<form name=order><input id=q type=text value=本><input name=p type=password value=abc>"
            "<input type=radio name=r value=a><input type=radio name=r value=b></form>"
            "<a href=next><b id=inside>次へ</b></a><a href=other>次へ</a><p id=text>x</p>"
            "<iframe id=outer name=main src=inner></iframe>";
        web.pages["inner"] =
            "<input id=q type=text><input id=only type=submit value=送信>"
            "<iframe id=deep src=deepest></iframe><p id=long title=" +
            std::string(30000, 'x') + "></p>";
        web.pages["deepest"] = "<input id=bottom type=text>";
        shop->Show("shop");
        browsers.visible = {other, shop};
        browsers.focused = shop;
        window.Form_Load("");
        clock.Pass(1100);
        form().Click("mnuTools");
    }

    HeadlessForm& tools() { return *windows.FindForm("frmTools"); }
    std::string Shown(int row) { return tools().Find("txtFact", row).Text(); }
    // Puts the pointer on an element, behind the frames around it; what the window then shows: the
    // element's id and the state.
    std::string Point(const std::string& path) {
        shop->pointer = path.empty() ? Lines() : Split(path, " ");
        clock.Pass(300);
        return Shown(kId) + "|" + tools().Find("lblState").Text();
    }
    const std::string kShown = "ポインターの下の要素を表示しています。";
    std::shared_ptr<ScriptedBrowser> shop = std::make_shared<ScriptedBrowser>(web);
    std::shared_ptr<ScriptedBrowser> other = std::make_shared<ScriptedBrowser>(web);
};

TEST_F(ToolsTest, ShowsTheElementUnderThePointer) {
    EXPECT_EQ(tools().GetPlace().left, 780 - 520);
    EXPECT_EQ(Point(""), "|ブラウザーのページの要素に、マウスのポインターを合わせてください。");
    EXPECT_EQ(Point("main deep bottom"), "bottom|" + kShown);
    EXPECT_EQ(Shown(kFrames), "main > deep");
    Point("p");
    EXPECT_EQ(Shown(kValue), "●●●●●●●●");
    Point("q");
    Lines shown;
    for (int row = 0; row < kFacts; ++row) shown.push_back(Shown(row));
    EXPECT_EQ(shown, (Lines{"INPUT", "q", "", "text", "本", "", "order", "",
                            "<INPUT id=\"q\" type=\"text\" value=\"本\"></INPUT>"}));
    shop->page()->Find("q")->value = "雑誌";  // the user types into it
    Point("q");
    tools().Click("cmdCopy", kValue);
    EXPECT_EQ(windows.ClipboardText(), Shown(kValue));
    EXPECT_EQ(Point("q"), "q|クリップボードにコピーしました。");
    clock.Pass(2000);
    EXPECT_EQ(Point(""), "q|ポインターはページの外にあります。最後の要素を表示しています。");
    other->Show("inner");  // in another browser window
    other->pointer = {"long"};
    EXPECT_EQ(Point(""), "long|" + kShown);
    EXPECT_EQ(Shown(kHtml).size(), 20000 + std::string("\r\n……").size());
}

TEST_F(ToolsTest, StaysWhileFrozenAndDuringARun) {
    Point("q");
    windows.HoldCtrl(true);
    EXPECT_EQ(Point("text"), "q|固定しています。");
    windows.HoldCtrl(false);
    tools().Find("chkFreeze").SetChecked(true);
    EXPECT_EQ(Point("text"), "q|固定しています。");
    globals.activity = "play";
    EXPECT_EQ(Point("text"), "q|再生中は、表示を更新しません。");
    EXPECT_FALSE(tools().Find("cmdRecord").Enabled());
}

TEST_F(ToolsTest, MakesARecordAndSaysHowItFindsItsElement) {
    const std::string found = "このレコードで、この要素が見つかります（";
    const std::string only = "）。同じ条件の要素は、ほかにありません。";
    const struct {
        std::string path, record, finding;
    } rows[] = {
        {"q", "input\t,id=q,type=text,indt=本", found + "段階 3：id が同じ" + only},
        {"p", "input\t,id=p,type=password,indt=",
         "パスワードは入れていません。\r\n" + found + "段階 2：name と type が同じ" + only},
        {"r", "input\t,id=r,type=radio,indt=False,value=a", "value が同じラジオボタン" + only},
        {"inside", "click\t,id=,type=href,indt=次へ",
         "の下の B を囲む A のレコードです。\r\n" + found +
             "リンクの文字が同じ）。同じ条件の要素がほかに 1 個"},
        {"main q", "input\t,id=q,type=text,indt=", "では、別の要素 INPUT q が見つかります（"},
        {"main deep bottom", "input\t,id=bottom,type=text,indt=",
         "このレコードでは、要素が見つかりません。フレームの中のフレームは、探しません。"},
        {"main only", "click\t,id=only,type=submit,indt=送信",
         found + "段階 3：id が同じ）。フレーム outer の中で見つかりました。"},
    };
    EXPECT_FALSE(tools().Find("cmdAdd").Enabled());
    for (const auto& [path, record, finding] : rows) {
        Point(path);
        tools().Click("cmdRecord");
        EXPECT_EQ(tools().Find("txtRecord").Text(), record);
        const std::string text = tools().Find("lblFinding").Text();
        EXPECT_NE(text.find(finding), std::string::npos) << text;
    }
    EXPECT_EQ(web.calls, Lines()) << "nothing was scrolled or outlined";
    tools().Click("cmdAdd");
    EXPECT_EQ(Records(), (Lines{"url\t,id=,size_bar=0.0.1024.768.11110,indt=shop",
                                "click\t,id=only,type=submit,indt=送信"}));
    EXPECT_EQ(Point(""), "only|シナリオに追加しました。");
}

TEST_F(ToolsTest, OutlivesItsBrowserAndClosesWithTheMainWindow) {
    Point("q");
    browsers.visible.clear();
    browsers.focused.reset();
    shop->Die();
    EXPECT_EQ(Point(""), "q|記録できるブラウザーが開かれていません。");
    tools().Click("cmdRecord");
    EXPECT_EQ(tools().Find("lblFinding").Text(), "この要素は、もうページにありません。");
    window.Close();
    EXPECT_TRUE(tools().closed());
}

TEST(HidePasswords, LeavesEverythingElseAsItIs) {
    const std::string dots = "●●●●●●●●";
    const std::pair<std::string, std::string> rows[] = {
        {"<p>a</p><input", "<p>a</p><input"},
        {"<input type=text value=\"a\">", "<input type=text value=\"a\">"},
        {"<input value=\"a>\" type='password'/>x",
         "<input value=\"" + dots + "\" type='password'/>x"},
        {"<b><INPUT TYPE=Password VALUE=a></b>", "<b><INPUT TYPE=Password VALUE=" + dots + "></b>"},
        {"<input type=password value=\"\" value>", "<input type=password value=\"\" value>"},
        {"<input type=password value=\"cut", "<input type=password value=\"" + dots},
    };
    for (const auto& [html, shown] : rows) EXPECT_EQ(HidePasswords(html), shown);
}

}  // namespace
}  // namespace tamrin::test
