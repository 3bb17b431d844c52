#include <gtest/gtest.h>

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

class DialogTest : public MainWindowTest {
protected:
    DialogTest() { window.Form_Load(""); }

    // Chooses a menu entry and lets `user` act in the dialog of that name that it opens.
    void Open(std::string_view menu, std::string_view name,
              const std::function<void(HeadlessForm&)>& user) {
        int opened = 0;
        windows.onModal = [&](HeadlessForm& dialog) {
            ++opened;
            EXPECT_EQ(dialog.name(), name);
            user(dialog);
        };
        form().Click(menu);
        windows.onModal = nullptr;
        EXPECT_EQ(opened, 1) << menu;
        EXPECT_EQ(windows.FindForm(name), nullptr);
    }
    static void Type(HeadlessForm& dialog, std::string_view name, std::string_view text) {
        dialog.Find(name).SetText(text);
    }
};

using frmSettingTest = DialogTest;

TEST_F(frmSettingTest, ShowsAndStoresTheSettings) {
    globals.settings.max_wait_time = 12;
    globals.settings.quit_after_play = true;
    Open("mnuSetting", "frmSetting", [&](HeadlessForm& dialog) {
        EXPECT_EQ(
            dialog.Combo("cmbMaxWaitTime").Items(),
            (Lines{"3", "5", "7", "10", "15", "20", "30", "40", "50", "60", "90", "120", "150"}));
        EXPECT_EQ(dialog.Find("cmbMaxWaitTime").Text(), "12");
        EXPECT_TRUE(dialog.Find("chkQuitAfterPlay").Checked());
        EXPECT_TRUE(dialog.Find("chkMouseClick").Checked());
        EXPECT_FALSE(dialog.Find("chkCipherData").Checked());
        Type(dialog, "txtSaveFolderPath", "..\\other");
        Type(dialog, "cmbMaxWaitTime", "30");
        Type(dialog, "txtBrowser", "C:\\b.exe");
        EXPECT_TRUE(dialog.Find("optBrowser", 0).Checked());
        dialog.Click("optBrowser", 2);
        for (const char* box : {"chkQuitAfterPlay", "chkMouseClick", "chkCipherData"}) {
            dialog.Click(box);
        }
        EXPECT_EQ(globals.settings.max_wait_time, 12) << "nothing is stored before Ok";
        dialog.Click("cmdClose", 0);
    });
    const Settings& settings = globals.settings;
    EXPECT_EQ(settings.save_folder_path, "..\\other");
    EXPECT_EQ(settings.max_wait_time, 30);
    EXPECT_FALSE(settings.quit_after_play);
    EXPECT_FALSE(settings.mouse_click);
    EXPECT_TRUE(settings.cipher);
    EXPECT_EQ(globals.options.browser_path, "C:\\b.exe");
    EXPECT_EQ(globals.options.browser_kind, BrowserKind::kChromium);
}

TEST_F(frmSettingTest, TwoBoxesAndTheDefaultsTakeEffectAtOnce) {
    globals.settings.play_count = 5;
    globals.settings.disp = 2;
    Open("mnuSetting", "frmSetting", [&](HeadlessForm& dialog) {
        dialog.Click("chkAutoPoint");
        dialog.Click("chkRecChangeData");
        dialog.Click("chkCipherData");
        EXPECT_FALSE(globals.settings.auto_point);
        EXPECT_TRUE(globals.settings.rec_change_only);
        dialog.Click("cmdClose", 1);
    });
    EXPECT_FALSE(globals.settings.auto_point);
    EXPECT_TRUE(globals.settings.rec_change_only);
    EXPECT_FALSE(globals.settings.cipher);
    EXPECT_EQ(globals.settings.play_count, 5);
    Open("mnuSetting", "frmSetting", [&](HeadlessForm& dialog) {
        Type(dialog, "cmbMaxWaitTime", "90");
        dialog.Click("cmdSetDefault");
        EXPECT_EQ(dialog.Find("cmbMaxWaitTime").Text(), "10");
        EXPECT_TRUE(dialog.Find("chkAutoPoint").Checked());
        dialog.Click("cmdClose", 1);
    });
    EXPECT_TRUE(globals.settings.auto_point);
    EXPECT_FALSE(globals.settings.rec_change_only);
    EXPECT_EQ(globals.settings.play_count, 1);
    EXPECT_TRUE(Find("lstDetail").Visible());
}

TEST_F(frmSettingTest, ShowsAMissingFolderInRed) {
    dialogs.paths = {"C:\\tamrin\\s", ""};
    files.contents["C:\\tamrin\\s\\a.csv"] = "";
    Open("mnuSetting", "frmSetting", [&](HeadlessForm& dialog) {
        auto& box = dynamic_cast<HeadlessControl&>(dialog.Find("txtSaveFolderPath"));
        EXPECT_EQ(box.text_color(), TextColor::kNormal) << "the program's own folder";
        box.SetText("nowhere");
        EXPECT_EQ(box.text_color(), TextColor::kRed);
        box.SetText("\"C:\\tamrin\"");
        EXPECT_EQ(box.text_color(), TextColor::kNormal);
        dialog.Click("cmdSaveFolder");
        EXPECT_EQ(box.Text(), ".\\s");
        EXPECT_EQ(box.text_color(), TextColor::kNormal);
        dialog.Click("cmdSaveFolder");
        EXPECT_EQ(box.Text(), ".\\s");
        dialog.Click("cmdClose", 0);
    });
    EXPECT_EQ(dialogs.shown,
              (Lines{"既定フォルダの指定|C:\\tamrin", "既定フォルダの指定|C:\\tamrin\\s"}));
    EXPECT_EQ(form().List("lstCsv").Line(0), "a.csv");
}

TEST_F(frmSettingTest, KeepsTheBrowserOfTheCommandLineForThisRunOnly) {
    globals.options.kept_browser_path = "C:\\kept.exe";
    globals.options.browser_path = "C:\\run.exe";
    Open("mnuSetting", "frmSetting", [&](HeadlessForm& dialog) { dialog.Click("cmdClose", 0); });
    EXPECT_EQ(globals.options.browser_path, "C:\\run.exe");
    dialogs.paths = {"C:\\new.exe"};
    Open("mnuSetting", "frmSetting", [&](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Find("txtBrowser").Text(), "C:\\kept.exe");
        dialog.Click("cmdBrowser");
        dialog.Click("cmdClose", 0);
    });
    EXPECT_EQ(globals.options.browser_path, "C:\\new.exe");
    EXPECT_EQ(globals.options.kept_browser_path, std::nullopt);
}

using frmEditTest = DialogTest;

TEST_F(frmEditTest, EditsTheCurrentRecordAsOneStep) {
    list().SetLines({"//",
                     "input\t,id=a,type=text,indt=1\x01"
                     "2,x=y"});
    list().SetListIndex(1);
    Open("mnuEdit", "frmEdit", [](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Find("cmbAct").Text(), "input            '入力");
        EXPECT_EQ(dialog.Combo("cmbAct").Items().size(), 11U);
        EXPECT_EQ(dialog.Combo("cmbType").Items().back(), "href");
        EXPECT_EQ(dialog.Find("txtInDt").Text(), "1,2");
        EXPECT_FALSE(dialog.Find("txtSizeBar").Enabled());
        Type(dialog, "cmbAct", "//               'コメント");
        EXPECT_FALSE(dialog.Find("txtUserWait").Enabled());
        Type(dialog, "cmbAct", "click_mouse      '実マウスクリック");
        Type(dialog, "txtUserWait", "2");
        Type(dialog, "txtInDt", "3,4");
        dialog.Click("cmdOk");
    });
    EXPECT_EQ(Records(), (Lines{"//",
                                "click_mouse\t,id=a,type=text,indt=3\x01"
                                "4,x=y,userwait=2"}));
    EXPECT_TRUE(globals.unsaved);
    EXPECT_EQ(list().ListIndex(), 1);
    form().Press("Ctrl+Z");
    EXPECT_EQ(Records()[1],
              "input\t,id=a,type=text,indt=1\x01"
              "2,x=y");
}

TEST_F(frmEditTest, CancelAndAnUnchangedRecordChangeNothing) {
    list().SetLines({"click\t,id=a"});
    form().Click("mnuEdit");
    list().SetListIndex(0);
    for (const char* button : {"cmdCancel", "cmdOk"}) {
        Open("mnuEditRecord", "frmEdit", [&](HeadlessForm& dialog) {
            if (button == std::string("cmdCancel")) Type(dialog, "txtId", "b");
            dialog.Click(button);
        });
        EXPECT_EQ(Records(), Lines{"click\t,id=a"});
        EXPECT_FALSE(globals.unsaved);
    }
}

TEST_F(frmEditTest, DoesNotOverwriteAnotherRecordThatCameMeanwhile) {
    list().SetLines({"a"});
    list().SetListIndex(0);
    dialogs.answers = {Answer::kOk};
    Open("mnuEdit", "frmEdit", [&](HeadlessForm& dialog) {
        list().SetLines({"b"});
        Type(dialog, "txtId", "x");
        dialog.Click("cmdOk");
    });
    EXPECT_EQ(Records(), Lines{"b"});
}

using frmSimpleEditTest = DialogTest;

TEST_F(frmSimpleEditTest, EditsALineOrTheWholeListAsText) {
    struct Row {
        Lines before;
        const char* menu;
        const char* shown;
        const char* typed;
        Lines after;
    };
    const Row rows[] = {
        {{"a", "b"}, "mnuEditLine", "b", "x", {"a", "x"}},
        {{"a", "b"}, "mnuEditLine", "b", "x\r\ny", {"a", "x", "y"}},
        {{"a", "b"}, "mnuEditLine", "b", "", {"a", ""}},
        {{"a", "b"}, "mnuEditAll", "a\r\nb", "a\r\nb\r\n", {"a", "b", ""}},
        {{"a", "b"}, "mnuEditAll", "a\r\nb", "", {}},
        {{}, "mnuEditAll", "", "", {}},
        {{}, "mnuEditAll", "", "x", {"x"}},
    };
    for (const Row& row : rows) {
        list().SetLines(row.before);
        list().SetListIndex(1);
        Open(row.menu, "frmSimpleEdit", [&](HeadlessForm& dialog) {
            EXPECT_EQ(dialog.Find("txtText").Text(), row.shown);
            Type(dialog, "txtText", row.typed);
            dialog.Click("cmdOk");
        });
        EXPECT_EQ(Records(), row.after) << row.typed;
        form().Press("Ctrl+Z");
        EXPECT_EQ(Records(), row.before) << row.typed;
    }
}

using frmInputTest = DialogTest;

TEST_F(frmInputTest, TakesThePlayCount) {
    dialogs.answers.assign(3, Answer::kOk);
    Open("mnuRepeat", "frmInput", [](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Find("txtInput").Text(), "1");
        for (const char* wrong : {"0", "", "100000"}) {
            Type(dialog, "txtInput", wrong);
            dialog.Click("cmdOk");
        }
        Type(dialog, "txtInput", "3");
        dialog.Click("cmdOk");
    });
    EXPECT_EQ(Find("mnuRepeat").Text(), "再生回数変更：現在値 3 回");
    EXPECT_EQ(globals.settings.play_count, 3);
    Open("mnuRepeat", "frmInput", [](HeadlessForm& dialog) { dialog.Click("cmdCancel"); });
    EXPECT_EQ(globals.settings.play_count, 3);
}

TEST_F(DialogTest, TheAboutBoxStartsTheSystemInformation) {
    dialogs.answers = {Answer::kOk};
    Open("mnuAbout", "frmAbout", [](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Find("lblTitle").Text(), "Tamrin 0.10");
        const std::string licenses = dialog.Find("txtLicense").Text();
        for (const char* part : {"MIT License\r\n", "Boost Software", "Niels Lohmann",
                                 "GCC RUNTIME LIBRARY EXCEPTION", "the mingw-w64 project"}) {
            EXPECT_NE(licenses.find(part), std::string::npos) << part;
        }
        dialog.Click("cmdSysInfo");
        dialog.Click("cmdOk");
    });
    EXPECT_EQ(windows.opened(), Lines{"msinfo32.exe"});
}

TEST_F(DialogTest, F1OpensTheManualBesideTheProgram) {
    dialogs.answers = {Answer::kOk, Answer::kOk};
    form().Press("F1");
    EXPECT_EQ(windows.opened(), Lines{});
    files.contents["C:\\tamrin\\manual.ja.html"] = "<h1>";
    form().Press("F1");  // headless there is nothing to open it with
    EXPECT_EQ(windows.opened(), Lines{"C:\\tamrin\\manual.ja.html"});
    EXPECT_EQ(dialogs.shown,
              (Lines{"使い方|C:\\tamrin\\manual.ja.html\r\nの使い方のファイルがありません。\r\n"
                     "プログラムと一緒に配られている manual.ja.html と images フォルダを、"
                     "プログラムと同じフォルダに置いて下さい。",
                     "使い方|C:\\tamrin\\manual.ja.html"
                     "\r\nの使い方のファイルをブラウザーで開けません。"}));
}

TEST_F(DialogTest, TheSplashStandsOverTheMainWindowForAMoment) {
    HeadlessForm& splash = *windows.FindForm("frmSplash");
    EXPECT_TRUE(splash.Visible());
    const Place place = splash.GetPlace();
    const Place main = form().GetPlace();
    EXPECT_EQ(place.left, main.left + (main.width - place.width) / 2);
    EXPECT_EQ(place.top, main.top + (main.height - place.height) / 2);
    for (int i = 0; i < 30; ++i) {
        clock.DoEvents();
        clock.Sleep(100);
    }
    EXPECT_TRUE(splash.closed());
}

TEST_F(DialogTest, DisplayOptionsTakeEffectAndAreKept) {
    form().Click("mnuDispTop");
    form().Click("mnuScrollBar");
    form().Click("mnuTaskTray");
    EXPECT_FALSE(form().top_most());
    EXPECT_TRUE(dynamic_cast<HeadlessListBox&>(list()).horizontal_scroll());
    const int top = list().GetPlace().top;
    const int bottom = top + list().GetPlace().height;
    form().Click("optDisp", 0);
    EXPECT_EQ(list().GetPlace().top, 34);
    form().Click("optDisp", 2);
    EXPECT_TRUE(Find("lstCsv").Visible());
    EXPECT_FALSE(Find("lstDetail").Visible());
    EXPECT_EQ(list().GetPlace().top, top);
    Place splitter = Find("splTop").GetPlace();
    splitter.top = 5000;
    Find("splTop").SetPlace(splitter);
    Find("splTop").onChange();
    EXPECT_EQ(list().GetPlace().height, 30) << "the list stays in sight";
    EXPECT_EQ(list().GetPlace().top + list().GetPlace().height, bottom);
    window.Close();
    const std::string conf = files.contents["C:\\tamrin\\Conf.txt"];
    for (const char* line : {"disp top = 0", "scroll bar = 1", "tasktray = 1", "disp = 2"}) {
        EXPECT_NE(conf.find(line), std::string::npos) << line;
    }
}

TEST_F(DialogTest, KeysPlayAndStop) {
    list().SetLines({"url\t,size_bar=1.2.3.4.1,indt=page", "wait\t,indt=60000"});
    window.SetMode("all", true);
    for (const char* key : {"Esc", "Shift+F5"}) {
        clock.At(clock.Elapsed() + 3000, [&, key] { form().Press(key); });
        form().Press("F5");
        EXPECT_EQ(window.last_run(), RunEnd::kStopped) << key;
    }
}

}  // namespace
}  // namespace tamrin::test
