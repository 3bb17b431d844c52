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
            "<input name=n type=text><input name=n type=text id=twin>"
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
        Pass(1100);
        form().Click("mnuTools");
    }

    HeadlessForm& tools() { return *windows.FindForm("frmTools"); }
    std::string State() { return tools().Find("lblState").Text(); }
    std::string Shown(int row) { return tools().Find("txtFact", row).Text(); }
    // Puts the pointer somewhere and lets the window see it.
    void Point(Lines pointer) {
        shop->pointer = std::move(pointer);
        Pass(300);
    }
    // What the button says of the element there: the record, then what it finds.
    Lines Made(Lines pointer) {
        Point(std::move(pointer));
        tools().Click("cmdRecord");
        return {tools().Find("txtRecord").Text(), tools().Find("lblFinding").Text()};
    }

    std::shared_ptr<ScriptedBrowser> shop = std::make_shared<ScriptedBrowser>(web);
    std::shared_ptr<ScriptedBrowser> other = std::make_shared<ScriptedBrowser>(web);
};

TEST_F(ToolsTest, ShowsTheElementUnderThePointer) {
    EXPECT_TRUE(tools().top_most());
    EXPECT_EQ(tools().GetPlace().left, form().GetPlace().left - tools().GetPlace().width);
    EXPECT_EQ(tools().GetPlace().top, 1024 - tools().GetPlace().height);
    EXPECT_EQ(State(), "ブラウザーのページの要素に、マウスのポインターを合わせてください。");
    Point({"q"});
    EXPECT_EQ(State(), "ポインターの下の要素を表示しています。");
    Lines shown;
    for (int row = 0; row < kFacts; ++row) shown.push_back(Shown(row));
    EXPECT_EQ(shown, (Lines{"INPUT", "q", "", "text", "本", "", "order", "",
                            "<INPUT id=\"q\" type=\"text\" value=\"本\"></INPUT>"}));
    Point({"p"});
    EXPECT_EQ(Shown(kValue), "●●●●●●●●");
    EXPECT_EQ(Shown(kHtml).find("abc"), std::string::npos);
    Point({"main", "deep", "bottom"});
    EXPECT_EQ(Shown(kId) + " " + Shown(kFrames), "bottom main > deep");
    Point({"q"});
    shop->page()->Find("q")->value = "雑誌";  // the user types into it
    Point({"q"});
    EXPECT_EQ(Shown(kValue), "雑誌");
    tools().Click("cmdCopy", kValue);
    EXPECT_EQ(windows.ClipboardText(), "雑誌");
    EXPECT_EQ(State(), "クリップボードにコピーしました。");
    Point({});
    Pass(2000);
    EXPECT_EQ(Shown(kId), "q") << "the last element stays";
    EXPECT_EQ(State(), "ポインターはページの外にあります。最後の要素を表示しています。");
    other->Show("inner");
    other->pointer = {"only"};
    Pass(300);
    EXPECT_EQ(Shown(kId), "only") << "in another browser window";
    other->pointer = {"long"};
    Pass(300);
    EXPECT_EQ(Shown(kHtml).size(), 20000 + std::string("\r\n……").size());
}

TEST_F(ToolsTest, StaysWhileFrozenAndDuringARun) {
    const std::pair<std::function<void(bool)>, const char*> rows[] = {
        {[&](bool on) { windows.HoldCtrl(on); }, "固定しています。"},
        {[&](bool on) { tools().Find("chkFreeze").SetChecked(on); }, "固定しています。"},
        {[&](bool on) { globals.activity = on ? "play" : ""; }, "再生中は、表示を更新しません。"},
    };
    for (const auto& [freeze, state] : rows) {
        Point({"q"});
        freeze(true);
        const int questions = shop->pointer_questions;
        Point({"text"});
        EXPECT_EQ(Shown(kId) + State(), std::string("q") + state);
        EXPECT_EQ(shop->pointer_questions, questions) << state;
        EXPECT_EQ(tools().Find("cmdRecord").Enabled(), globals.activity.empty());
        freeze(false);
        Pass(300);
        EXPECT_EQ(Shown(kId), "text") << state;
    }
}

TEST_F(ToolsTest, SaysHowARecordFindsItsElement) {
    const std::string found = "このレコードで、この要素が見つかります（";
    const std::string only = "）。同じ条件の要素は、ほかにありません。";
    const std::string first = "）。同じ条件の要素がほかに 1 個あり、最初のものが使われます。";
    const std::string in_frame = "）。フレーム outer の中で見つかりました。";
    const struct {
        Lines pointer;
        std::string record;
        std::string finding;
    } rows[] = {
        {{"q"}, "input\t,id=q,type=text,indt=本", found + "段階 3：id が同じ" + only},
        {{"p"},
         "input\t,id=p,type=password,indt=",
         "パスワードは入れていません。\r\n" + found + "段階 2：name と type が同じ" + only},
        {{"r"},
         "input\t,id=r,type=radio,indt=False,value=a",
         found + "name と value が同じラジオボタン" + only},
        {{"inside"},
         "click\t,id=,type=href,indt=次へ",
         "ポインターの下の B を囲む A のレコードです。\r\n" + found + "リンクの文字が同じ" + first},
        {{"n"}, "input\t,id=n,type=text,indt=", found + "段階 2：name と type が同じ" + first},
        {{"main", "only"},
         "click\t,id=only,type=submit,indt=送信",
         found + "段階 3：id が同じ" + in_frame + only.substr(6)},
        {{"main", "q"},
         "input\t,id=q,type=text,indt=",
         "このレコードでは、別の要素 INPUT q が見つかります（段階 3：id が同じ）。"},
        {{"main", "deep", "bottom"},
         "input\t,id=bottom,type=text,indt=",
         "このレコードでは、要素が見つかりません。フレームの中のフレームは、探しません。"},
    };
    for (const auto& row : rows) EXPECT_EQ(Made(row.pointer), (Lines{row.record, row.finding}));
    EXPECT_EQ(web.calls, Lines()) << "nothing was scrolled or outlined";
}

TEST_F(ToolsTest, AddsTheRecordToTheScenario) {
    EXPECT_FALSE(tools().Find("cmdAdd").Enabled());
    Made({"q"});
    tools().Click("cmdAdd");
    Made({"main", "only"});
    tools().Click("cmdAdd");
    EXPECT_EQ(Records(),
              (Lines{"url\t,id=,size_bar=0.0.1024.768.11110,indt=shop",
                     "input\t,id=q,type=text,indt=本", "click\t,id=only,type=submit,indt=送信"}));
    EXPECT_EQ(State(), "シナリオに追加しました。");
}

TEST_F(ToolsTest, OutlivesItsBrowserAndClosesWithTheMainWindow) {
    Point({"q"});
    browsers.visible.clear();
    browsers.focused.reset();
    shop->Die();
    Pass(1500);
    EXPECT_EQ(State(), "記録できるブラウザーが開かれていません。");
    EXPECT_EQ(Made({}), (Lines{"", "この要素は、もうページにありません。"}));
    EXPECT_EQ(Shown(kId), "q");
    EXPECT_FALSE(tools().Find("cmdAdd").Enabled());
    tools().Click("cmdClose");
    EXPECT_TRUE(tools().closed());
    form().Click("mnuTools");
    EXPECT_FALSE(tools().closed());
    window.Close();
    EXPECT_TRUE(tools().closed());
}

TEST(HidePasswords, LeavesEverythingElseAsItIs) {
    const std::string dots = "●●●●●●●●";
    const std::pair<std::string, std::string> rows[] = {
        {"<p>a</p><input", "<p>a</p><input"},
        {"<input type=\"text\" value=\"a\">", "<input type=\"text\" value=\"a\">"},
        {"<input value=\"a>b\" type='password'/><p>x",
         "<input value=\"" + dots + "\" type='password'/><p>x"},
        {"<b><INPUT TYPE=Password VALUE=abc></b>",
         "<b><INPUT TYPE=Password VALUE=" + dots + "></b>"},
        {"<input type=password value=\"\" value>", "<input type=password value=\"\" value>"},
        {"<input type=password value=\"cut", "<input type=password value=\"" + dots},
    };
    for (const auto& [html, shown] : rows) EXPECT_EQ(HidePasswords(html), shown);
}

}  // namespace
}  // namespace tamrin::test
