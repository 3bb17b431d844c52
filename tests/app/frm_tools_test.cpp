#include "app/frm_tools.h"

#include <gtest/gtest.h>

#include "app/main_window_rig.h"

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
            "<iframe id=deep src=deepest></iframe>";
        web.pages["deepest"] = "<input id=bottom type=text>";
        shop->Show("shop");
        browsers.visible = {other, shop};
        browsers.focused = shop;
        window.Form_Load("");
        Pass(1100);
        form().Click("mnuTools");
    }

    void Pass(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 10) {
            clock.DoEvents();
            clock.Sleep(10);
        }
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
    EXPECT_EQ(State(), "ブラウザーのページの要素に、マウスのポインターを合わせてください。");
    Point({"q"});
    EXPECT_EQ(State(), "ポインターの下の要素を表示しています。");
    Lines shown;
    for (int row = 0; row < kFacts; ++row) shown.push_back(Shown(row));
    EXPECT_EQ(shown, (Lines{"INPUT", "q", "", "text", "本", "", "order", "",
                            "<INPUT id=\"q\" type=\"text\" value=\"本\"></INPUT>"}));
    Point({"main", "deep", "bottom"});
    EXPECT_EQ(Shown(kId) + " " + Shown(kFrames), "bottom main > deep");
    // The user types into it, and copies.
    shop->page()->Find("q")->value = "雑誌";
    Point({"q"});
    EXPECT_EQ(Shown(kValue), "雑誌");
    tools().Click("cmdCopy", kValue);
    EXPECT_EQ(windows.ClipboardText(), "雑誌");
    // The pointer goes to this window: the last element stays.
    Point({});
    EXPECT_EQ(Shown(kId), "q");
    Pass(2000);
    EXPECT_EQ(State(), "ポインターはページの外にあります。最後の要素を表示しています。");
    // And to another browser window.
    other->Show("inner");
    other->pointer = {"only"};
    Pass(300);
    EXPECT_EQ(Shown(kId), "only");
}

TEST_F(ToolsTest, StaysWhileFrozenAndDuringARun) {
    struct Row {
        std::function<void(bool)> freeze;
        const char* state;
    };
    const Row rows[] = {
        {[this](bool on) { windows.HoldCtrl(on); }, "固定しています。"},
        {[this](bool on) { tools().Find("chkFreeze").SetChecked(on); }, "固定しています。"},
        {[this](bool on) { globals.activity = on ? "play" : ""; },
         "再生中は、表示を更新しません。"},
    };
    for (const Row& row : rows) {
        Point({"q"});
        row.freeze(true);
        const int questions = shop->pointer_questions;
        Point({"text"});
        EXPECT_EQ(Shown(kId), "q") << row.state;
        EXPECT_EQ(State(), row.state);
        EXPECT_EQ(shop->pointer_questions, questions) << row.state;
        EXPECT_EQ(tools().Find("cmdRecord").Enabled(), !globals.ActivityContains("play"));
        row.freeze(false);
        Pass(300);
        EXPECT_EQ(Shown(kId), "text") << row.state;
    }
}

TEST_F(ToolsTest, SaysHowARecordFindsItsElement) {
    constexpr const char* kOnly = "同じ条件の要素は、ほかにありません。";
    constexpr const char* kFound = "このレコードで、この要素が見つかります";
    struct Row {
        Lines pointer;
        std::string record;
        std::string finding;
    };
    const Row rows[] = {
        {{"q"},
         "input\t,id=q,type=text,indt=本",
         std::string(kFound) + "（段階 3：id が同じ）。" + kOnly},
        {{"p"},
         "input\t,id=p,type=password,indt=",
         std::string("パスワードは入れていません。\r\n") + kFound +
             "（段階 2：name と type が同じ）。" + kOnly},
        {{"r"},
         "input\t,id=r,type=radio,indt=False,value=a",
         std::string(kFound) + "（name と value が同じラジオボタン）。" + kOnly},
        {{"inside"},
         "click\t,id=,type=href,indt=次へ",
         std::string("ポインターの下の B を囲む A のレコードです。\r\n") + kFound +
             "（リンクの文字が同じ）。同じ条件の要素がほかに 1 個あり、最初のものが使われます。"},
        {{"n"},
         "input\t,id=n,type=text,indt=",
         std::string(kFound) +
             "（段階 2：name と type が同じ）。同じ条件の要素がほかに 1 個あり、最初のものが使われます。"},
        {{"main", "only"},
         "click\t,id=only,type=submit,indt=送信",
         std::string(kFound) + "（段階 3：id が同じ）。フレーム outer の中で見つかりました。" +
             kOnly},
        {{"main", "q"},
         "input\t,id=q,type=text,indt=",
         "このレコードでは、別の要素 INPUT q が見つかります（段階 3：id が同じ）。"},
        {{"main", "deep", "bottom"},
         "input\t,id=bottom,type=text,indt=",
         "このレコードでは、要素が見つかりません。フレームの中のフレームは、探しません。"},
    };
    for (const Row& row : rows) EXPECT_EQ(Made(row.pointer), (Lines{row.record, row.finding}));
    EXPECT_EQ(web.calls, Lines());  // nothing was scrolled or outlined
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
    EXPECT_EQ(Shown(kId), "q");
    tools().Click("cmdRecord");
    EXPECT_EQ(tools().Find("lblFinding").Text(), "この要素は、もうページにありません。");
    EXPECT_FALSE(tools().Find("cmdAdd").Enabled());
    tools().Click("cmdClose");
    EXPECT_TRUE(tools().closed());
    form().Click("mnuTools");
    EXPECT_FALSE(tools().closed());
    window.Close();
    EXPECT_TRUE(tools().closed());
}

TEST(HidePasswords, LeavesEverythingElseAsItIs) {
    const struct {
        const char* html;
        const char* shown;
    } rows[] = {
        {"<p>a</p>", "<p>a</p>"},
        {"<input type=\"text\" value=\"a\">", "<input type=\"text\" value=\"a\">"},
        {"<input value=\"a>b\" type=\"password\"><p>x",
         "<input value=\"●●●●●●●●\" type=\"password\"><p>x"},
        {"<b><INPUT TYPE=Password VALUE=abc></b><input type='password' value='1'/>",
         "<b><INPUT TYPE=Password VALUE=●●●●●●●●></b><input type='password' value='●●●●●●●●'/>"},
        {"<input type=password value=\"\" value>", "<input type=password value=\"\" value>"},
        {"<input type=password value=\"cut", "<input type=password value=\"●●●●●●●●"},
    };
    for (const auto& row : rows) EXPECT_EQ(HidePasswords(row.html), row.shown);
    EXPECT_EQ(HidePasswords("<input"), "<input");
}

}  // namespace
}  // namespace tamrin::test
