#include "app/main_window_rig.h"
#include "app/settings_file.h"

namespace tamrin::test {
namespace {

class DialogTest : public MainWindowTest {
protected:
    DialogTest() {
        window.Form_Load("");
        default_settings = globals.settings;
    }

    void Act(const std::string& act) override {
        if (act == "defaults") {
            SetDefaultConf(globals.settings, windows.Screen());
            globals.options = Options();
        } else {
            MainWindowTest::Act(act);
        }
    }
    // The lines of the settings files that are not the default ones.
    std::string State() override {
        const Lines defaults = SplitLines(WriteConf(default_settings) + WriteOptions({}));
        Lines changed;
        for (const std::string& line :
             SplitLines(WriteConf(globals.settings) + WriteOptions(globals.options))) {
            if (std::ranges::find(defaults, line) == defaults.end()) changed.push_back(line);
        }
        EXPECT_EQ(Find("mnuRepeat").Text(),
                  "再生回数変更：現在値 " + std::to_string(globals.settings.play_count) + " 回");
        return Joined(changed);
    }

    Settings default_settings;
};

TEST_F(DialogTest, SettingsAreStoredByOkAndShownAgain) {
    const char* const ok = "; mnuSetting: cmdClose 0";
    const std::pair<const char*, const char*> rows[] = {
        {"txtSaveFolderPath=..\\other", "save folder path = ..\\other"},
        {"cmbMaxWaitTime=2.5", "max wait time = 2"},
        {"chkQuitAfterPlay", "quit after play = 1"},
        {"chkMouseClick", "mouse click = 0"},
        {"chkCipherData", "cipher = 1"},
        {"txtBrowser= \"C:\\b.exe\"", "browser = C:\\b.exe"},
        {"optBrowser 1", "browser kind = explorer"},
        {"optBrowser 2", "browser kind = chromium"},
        // These take effect at once.
        {"chkRecChangeData", "rec change only = 1"},
        {"chkAutoPoint", "auto point = 0"},
    };
    for (const auto& [change, stored] : rows) {
        const std::string open = std::string("defaults; mnuSetting: ") + change;
        const bool at_once =
            change == std::string("chkRecChangeData") || change == std::string("chkAutoPoint");
        Run({{open + ", cmdClose 1", "", "", at_once ? stored : ""},
             {open + ", cmdClose 0" + ok, "", "", stored}});
    }
    globals.settings.play_count = 5;
    globals.settings.disp = 2;
    Run({{"mnuSetting: cmbMaxWaitTime=90, cmdSetDefault, cmdClose 0", "", "", ""}});
    EXPECT_TRUE(Find("lstDetail").Visible());
}

TEST_F(DialogTest, FoldersAndBrowsersAreChosenInADialog) {
    files.contents["C:\\tamrin\\s\\a.csv"] = "";
    Run({{"mnuSetting: cmdSaveFolder, cmdClose 0", ">C:\\tamrin\\s",
          "既定フォルダの指定|C:\\tamrin", "save folder path = .\\s"},
         {"mnuSetting: cmdSaveFolder, cmdClose 0", ">", "既定フォルダの指定|C:\\tamrin\\s",
          "save folder path = .\\s"}});
    EXPECT_EQ(LinesOf(form().List("lstCsv")), Lines{"a.csv"});
    // The browser of the command line is for this run only.
    globals.options.kept_browser_path = "kept.exe";
    globals.options.browser_path = "run.exe";
    const std::string folder = "save folder path = .\\s/browser = ";
    Run({{"mnuSetting: cmdBrowser, cmdClose 0", ">", "|kept.exe", folder + "kept.exe"}});
    EXPECT_EQ(globals.options.browser_path, "run.exe");
    Run({{"mnuSetting: cmdBrowser, cmdClose 0", ">new.exe", "", folder + "new.exe"}});
    EXPECT_EQ(globals.options.browser_path, "new.exe");
    windows.onModal = [&](HeadlessForm& dialog) {
        auto& box = dynamic_cast<HeadlessControl&>(dialog.Find("txtSaveFolderPath"));
        for (const auto& [text, color] :
             {std::pair("nowhere", TextColor::kRed),
              std::pair("\"C:\\tamrin\"", TextColor::kNormal), std::pair("gone", TextColor::kRed),
              std::pair("", TextColor::kNormal)}) {
            box.SetText(text);
            EXPECT_EQ(box.text_color(), color) << text;
        }
    };
    form().Click("mnuSetting");
}

TEST_F(DialogTest, ThePlayCountIsANumberFrom1To99999) {
    Run({{"mnuRepeat: txtInput=3, cmdOk", "", "", "play count = 3"},
         {"mnuRepeat: cmdOk", "", "", "play count = 3"},
         {"mnuRepeat: txtInput=9, cmdCancel", "", "", "play count = 3"},
         {"mnuRepeat: txtInput=0, cmdOk, txtInput=, cmdOk, txtInput=100000, cmdOk, cmdCancel",
          "ooo", "再生回数|1 から 99999 までの数を入力して下さい。", "play count = 3"},
         {"mnuRepeat: txtInput=99999, cmdOk", "", "", "play count = 99999"},
         {"mnuRepeat: txtInput=1, cmdOk", "", "", ""}});
}

TEST_F(DialogTest, TheHelpMenuShowsLicencesSystemInformationAndManual) {
    std::string licenses;
    windows.onModal = [&](HeadlessForm& dialog) {
        licenses = dialog.Find("lblTitle").Text() + dialog.Find("txtLicense").Text();
    };
    form().Click("mnuAbout");
    for (const char* part : {"Tamrin 0.10", "MIT License\r\n", "Boost Software", "Niels Lohmann",
                             "GCC RUNTIME LIBRARY EXCEPTION", "the mingw-w64 project"}) {
        EXPECT_NE(licenses.find(part), std::string::npos) << part;
    }
    const std::string manual = "C:\\tamrin\\manual.ja.html";
    Run({{"mnuAbout: cmdSysInfo, cmdOk", "o", "システム情報は現在利用できません。", ""},
         {"F1", "o", "使い方|" + manual + "\r\nの使い方のファイルがありません。", ""}});
    files.contents[manual] = "<h1>";
    Run({{"F1", "o", manual + "\r\nの使い方のファイルをブラウザーで開けません。", ""}});
    EXPECT_EQ(windows.opened(), (Lines{"msinfo32.exe", manual}));
}

TEST_F(DialogTest, TheSplashStandsOverTheMainWindowForAMoment) {
    HeadlessForm& splash = *windows.FindForm("frmSplash");
    const Place place = splash.GetPlace();
    const Place main = form().GetPlace();
    EXPECT_EQ(2 * place.left + place.width, 2 * main.left + main.width);
    EXPECT_EQ(2 * place.top + place.height, 2 * main.top + main.height);
    EXPECT_TRUE(splash.Visible() && splash.top_most());
    Pass(3000);
    EXPECT_TRUE(splash.closed());
}

}  // namespace
}  // namespace tamrin::test
