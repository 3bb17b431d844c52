#include "app/settings_file.h"

#include "app/main_window_rig.h"
#include "scenario/character_escape.h"

namespace tamrin::test {
namespace {

constexpr const char* kConf = "C:\\tamrin\\Conf.txt";
constexpr const char* kOptions = "C:\\tamrin\\Options.txt";

// The default settings on a screen of 1280 x 1024 pixels.
const std::string kDefaults =
    "form left = 780\r\nform top = 724\r\nform right = 1280\r\nform bottom = 1024\r\n"
    "top height = 1035\r\nauto point = 1\r\nrec change only = 0\r\nasync = 0\r\ncipher = 0\r\n"
    "disp = 1\r\ndisp top = 1\r\nscroll bar = 0\r\nsave folder path = \r\nmouse click = 1\r\n"
    "tasktray = 0\r\nquit after play = 0\r\nplay count = 1\r\nmax wait time = 10\r\n";
// Other values of all of them.
const std::string kOthers =
    "form left = -100\r\nform top = 1\r\nform right = 600\r\nform bottom = 700\r\n"
    "top height = 1500\r\nauto point = 0\r\nrec change only = 1\r\nasync = 1\r\ncipher = 1\r\n"
    "disp = 2\r\ndisp top = 0\r\nscroll bar = 1\r\nsave folder path = ..\\注文 \r\nmouse click = 0\r\n"
    "tasktray = 1\r\nquit after play = 1\r\nplay count = 9\r\nmax wait time = 120\r\n";

class SettingsFileTest : public MainWindowTest {
protected:
    // What a file holds when a window that began with this text has closed.
    std::string WrittenBack(const char* path, const std::string& text) {
        files.contents.erase(kConf);
        files.contents[path].clear();
        AppendEncoded(files.contents[path], text, codec);
        Globals fresh;
        frmIeAuto other(fresh, platform);
        other.Form_Load("");
        other.Close();
        return UnescapeCharacters(codec.Decode(files.contents[path]));
    }
    // A text with another line of the same key.
    static std::string With(std::string text, const std::string& line) {
        const auto at = text.find(line.substr(0, line.find('=')));
        return text.replace(at, text.find('\r', at) - at, line);
    }
};

TEST_F(SettingsFileTest, ConfIsReadAndWrittenBack) {
    // Enciphering and the play count are not read back.
    EXPECT_EQ(WrittenBack(kConf, kOthers), With(With(kOthers, "cipher = 0"), "play count = 1"));
    const std::pair<const char*, const char*> rows[] = {
        {"", "cipher = 0"},
        {"scipher = 1", "cipher = 1"},
        {"max wait time", "max wait time = 10"},
        {"max wait time = 1 = 2", "max wait time = 10"},
        {"max  wait time = 30", "max wait time = 10"},
        {"MAX Wait Time=30", "max wait time = 30"},
        {" 　max wait time  =   30  \r\n", "max wait time = 30"},
        {"max wait time = 2.5\n", "max wait time = 2"},
        {"max wait time = 3.5\n", "max wait time = 4"},
        {"max wait time = -0.6\n", "max wait time = -1"},
        {"max wait time = x\n", "max wait time = 0"},
        {"max wait time = 99999999999999999999", "max wait time = 2147483647"},
        {"x=\n==\n\nmax wait time = 5\nmax wait time = 7", "max wait time = 7"},
        {"save folder path =  C:\\😀", "save folder path = C:\\😀"},
        // Impossible places.
        {"form left = 900\nform right = 900", "form left = 780"},
        {"form top = 800\nform bottom = 700", "form bottom = 1024"},
        {"top height = -9", "top height = 450"},
        {"disp = 77", "disp = 1"},
        {"disp = -1", "disp = 1"},
    };
    for (const auto& [text, line] : rows)
        EXPECT_EQ(WrittenBack(kConf, text), With(kDefaults, line));
}

TEST_F(SettingsFileTest, OptionsAreReadAndWrittenBack) {
    const std::pair<const char*, const char*> rows[] = {
        {"junk\r\nfoo = bar\r\nbrowser kind = x\r\n", "browser = \r\n"},
        {" Browser =  \"C:\\a=b.exe\"\n", "browser = C:\\a=b.exe\r\n"},
        {"browser kind = Explorer", "browser = \r\nbrowser kind = explorer\r\n"},
        {"browser kind = chromium", "browser = \r\nbrowser kind = chromium\r\n"},
        {"trace = C:\\calls.txt", "browser = \r\ntrace = C:\\calls.txt\r\n"},
        {"debug address = h:1", "browser = \r\ndebug address = h:1\r\n"},
        {"recent = 1\nrecent =\nrecent = 2", "browser = \r\nrecent = 1\r\nrecent = 2\r\n"},
        {"recent = 1\nrecent = 2\nrecent = 3\nrecent = 4\nrecent = 5\nrecent = 6",
         "browser = \r\nrecent = 1\r\nrecent = 2\r\nrecent = 3\r\nrecent = 4\r\nrecent = 5\r\n"},
    };
    for (const auto& [text, written] : rows) EXPECT_EQ(WrittenBack(kOptions, text), written);
}

TEST_F(SettingsFileTest, TheWindowShowsWhatConfSays) {
    AppendEncoded(files.contents[kConf], kOthers, codec);
    window.Form_Load("");
    const Place place = form().GetPlace();
    EXPECT_EQ((std::vector{place.left, place.top, place.width, place.height}),
              (std::vector{-100, 1, 700, 699}));
    EXPECT_EQ(list().GetPlace().top, 34 + 100 + 5);
    EXPECT_TRUE(Find("lstCsv").Visible() && Find("mnuScrollBar").Checked());
    EXPECT_TRUE(Find("mnuTaskTray").Checked());
    EXPECT_FALSE(Find("mnuDispTop").Checked() || form().top_most());
    EXPECT_EQ(globals.activity, "");
}

TEST_F(SettingsFileTest, AreLeftAloneByARunThatCloses) {
    files.contents[kConf] = "disp = 2\n";
    window.Form_Load("-c");
    EXPECT_TRUE(window.Close());
    EXPECT_EQ(files.contents[kConf], "disp = 2\n");
    EXPECT_FALSE(files.contents.contains(kOptions));
}

TEST_F(SettingsFileTest, AChangeThatCannotBeWrittenIsTold) {
    for (const bool changed : {false, true}) {
        files.contents[kConf] = kDefaults;
        files.contents[kOptions] = "browser = \r\n";
        files.full_disk = true;
        dialogs.answers.assign(changed ? 1 : 0, Answer::kOk);
        Globals fresh;
        frmIeAuto other(fresh, platform);
        other.Form_Load("");
        if (changed) fresh.options.trace_path = "x";
        EXPECT_TRUE(other.Close());
    }
    EXPECT_EQ(dialogs.shown,
              Lines{"保存エラー|設定を保存できません。プログラムのフォルダに書き込めません。"});
}

TEST_F(SettingsFileTest, OptionsKeepTheBrowserAndTheRecentFiles) {
    files.contents[kOptions] = "browser = C:\\a.exe\r\nrecent = C:\\%%U+1F600%% & co.csv\r\n";
    window.Form_Load("-browser C:\\other.exe");
    EXPECT_EQ(Find("mnuRecent1").Text(), "&1 C:\\😀 && co.csv");
    for (const char* name : {"1", "2", "3", "4", "5", "2"}) {
        const std::string path = std::string("C:\\d\\") + name + ".csv";
        files.contents[path] = "x\r\n";
        form().onDropFiles({path});
    }
    EXPECT_EQ(Find("mnuRecent2").Text(), "&2 C:\\d\\5.csv");
    form().Click("mnuRecent3");
    EXPECT_EQ(globals.current_file, "C:\\d\\4.csv");
    files.contents.erase("C:\\d\\5.csv");
    dialogs.answers = {Answer::kOk};
    form().Click("mnuRecent3");
    EXPECT_FALSE(Find("mnuRecent5").Visible()) << "a file that is gone is forgotten";
    EXPECT_TRUE(Find("mnuFileSpc3").Visible());
    window.Close();
    EXPECT_EQ(files.contents[kOptions],
              "browser = C:\\a.exe\r\nrecent = C:\\d\\4.csv\r\nrecent = C:\\d\\2.csv\r\n"
              "recent = C:\\d\\3.csv\r\nrecent = C:\\d\\1.csv\r\n");
}

}  // namespace
}  // namespace tamrin::test
