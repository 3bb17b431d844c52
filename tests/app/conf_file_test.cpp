#include "app/conf_file.h"

#include <gtest/gtest.h>

#include "app/main_window_rig.h"
#include "app/settings.h"

namespace tamrin::test {
namespace {

constexpr const char* kPath = "C:\\tamrin\\Conf.txt";

// The default settings on a screen of 1280 x 1024 pixels.
constexpr const char* kDefaults =
    "form left = 780\r\nform top = 724\r\nform right = 1280\r\nform bottom = 1024\r\n"
    "top height = 1035\r\nauto point = 1\r\nrec change only = 0\r\nasync = 0\r\ncipher = 0\r\n"
    "disp = 1\r\ndisp top = 1\r\nscroll bar = 0\r\nsave folder path = \r\nmouse click = 1\r\n"
    "tasktray = 0\r\nquit after play = 0\r\nplay count = 1\r\nmax wait time = 10\r\n";

TEST(WriteConf, WritesEverySettingInItsOrder) {
    Settings settings;
    SetDefaultConf(settings, {0, 0, 1280, 1024});
    EXPECT_EQ(WriteConf(settings), kDefaults);
}

TEST(ReadConf, ReadsBackEachSettingButEncipheringAndThePlayCount) {
    const char* const lines[] = {
        "form left = -1200",   "form top = 1",      "form right = 2",
        "form bottom = 2000",  "top height = 1500", "auto point = 0",
        "rec change only = 1", "async = 1",         "disp = 2",
        "disp top = 0",        "scroll bar = 1",    "save folder path = ..\\注文 書",
        "mouse click = 0",     "tasktray = 1",      "quit after play = 1",
        "max wait time = 120",
    };
    for (const std::string line : lines) {
        Settings settings;
        SetDefaultConf(settings, {0, 0, 1280, 1024});
        ReadConf(settings, line);
        std::string expected = kDefaults;
        const auto at = expected.find(line.substr(0, line.find('=')));
        expected.replace(at, expected.find('\r', at) - at, line);
        EXPECT_EQ(WriteConf(settings), expected);
    }
    Settings settings;
    ReadConf(settings, "cipher = 1\nplay count = 9\n");
    EXPECT_FALSE(settings.cipher);
    EXPECT_EQ(settings.play_count, 1);
    ReadConf(settings, "scipher = 1\n");
    EXPECT_TRUE(settings.cipher);
}

TEST(ReadConf, TakesWhatADamagedFileStillSays) {
    struct Row {
        const char* text;
        int max_wait_time;
        const char* save_folder_path;
    };
    const Row rows[] = {
        {"", 10, ""},
        {"max wait time", 10, ""},
        {"max wait time = 1 = 2", 10, ""},
        {"MAX Wait Time=30", 30, ""},
        {"  max wait time  =   30  \r\n", 30, ""},
        {"max wait time = 2.5\n", 2, ""},
        {"max wait time = 3.5\n", 4, ""},
        {"max wait time = -0.6\n", -1, ""},
        {"max wait time = x\n", 0, ""},
        {"max wait time = \n", 0, ""},
        {"max wait time = 99999999999999999999\n", 2147483647, ""},
        {"max wait time = nan\n", 0, ""},
        {"max  wait time = 30\n", 10, ""},
        {"=\n==\n = 5\nmax wait time = 5\nmax wait time = 7", 7, ""},
        {"save folder path =  a b \r\n", 10, "a b "},
        {"save folder path = a=b\r\nmax wait time = 5", 5, ""},
        {"\xFF\r\n\xE3\nmax wait time = 3\n", 3, ""},
    };
    for (const Row& row : rows) {
        Settings settings;
        ReadConf(settings, row.text);
        EXPECT_EQ(settings.max_wait_time, row.max_wait_time) << row.text;
        EXPECT_EQ(settings.save_folder_path, row.save_folder_path) << row.text;
    }
}

using ConfTest = MainWindowTest;

TEST_F(ConfTest, IsWrittenWhenTheWindowCloses) {
    window.Form_Load("");
    EXPECT_EQ(globals.activity, "");
    EXPECT_TRUE(window.Close());
    EXPECT_EQ(files.contents[kPath], kDefaults);
}

TEST_F(ConfTest, PlacesTheWindowAndItsPanes) {
    files.contents[kPath] =
        "form left = 10\nform top = 20\nform right = 710\nform bottom = 620\n"
        "top height = 1500\ndisp = 2\nscroll bar = 1\ntasktray = 1\ndisp top = 0\n"
        "save folder path = \x92\x8D\x95\xB6\n";
    window.Form_Load("");
    const Place place = form().GetPlace();
    EXPECT_EQ(place.left, 10);
    EXPECT_EQ(place.top, 20);
    EXPECT_EQ(place.width, 700);
    EXPECT_EQ(place.height, 600);
    EXPECT_EQ(list().GetPlace().top, 34 + 100 + 5);
    EXPECT_TRUE(Find("lstCsv").Visible());
    EXPECT_TRUE(Find("mnuScrollBar").Checked());
    EXPECT_TRUE(Find("mnuTaskTray").Checked());
    EXPECT_FALSE(form().top_most());
    EXPECT_EQ(globals.settings.save_folder_path, "注文");
    form().SetPlace({30, 40, 500, 600});
    window.Close();
    EXPECT_TRUE(files.contents[kPath].starts_with(
        "form left = 30\r\nform top = 40\r\nform right = 530\r\nform bottom = 640\r\n"
        "top height = 1500\r\n"));
}

TEST_F(ConfTest, AnImpossibleRectangleBecomesTheDefaultOne) {
    files.contents[kPath] = "form left = 900\nform right = 100\ndisp = 77\ntop height = -9\n";
    window.Form_Load("");
    EXPECT_EQ(form().GetPlace().left, 780);
    EXPECT_EQ(form().GetPlace().width, 500);
    EXPECT_TRUE(Find("lstDetail").Visible());
    EXPECT_GT(list().GetPlace().height, 0);
}

TEST_F(ConfTest, IsLeftAloneByARunThatCloses) {
    files.contents[kPath] = "disp = 2\n";
    window.Form_Load("-c");
    EXPECT_TRUE(window.Close());
    EXPECT_EQ(files.contents[kPath], "disp = 2\n");
    EXPECT_FALSE(files.contents.contains("C:\\tamrin\\Options.txt"));
}

TEST_F(ConfTest, SaysWhenItCannotBeWrittenAndClosesAllTheSame) {
    window.Form_Load("");
    files.full_disk = true;
    dialogs.answers = {Answer::kOk};
    EXPECT_TRUE(window.Close());
}

TEST_F(ConfTest, OptionsKeepTheBrowserAndTheRecentFiles) {
    const std::string options = "C:\\tamrin\\Options.txt";
    files.contents[options] =
        "junk\r\na=b=c\r\n Browser =  C:\\a=b.exe\ndebug address = 127.0.0.1:9222\r\n"
        "browser kind = Explorer\r\ntrace = C:\\calls.txt\r\n"
        "recent = C:\\%%U+1F600%%.csv\r\n";
    for (const char* name : {"1", "2", "3", "4", "5", "2"}) {
        files.contents[std::string("C:\\d\\") + name + ".csv"] = "x\r\n";
    }
    window.Form_Load("-browser C:\\other.exe");
    EXPECT_EQ(globals.options.browser_path, "C:\\other.exe");
    EXPECT_EQ(globals.options.debug_address, "127.0.0.1:9222");
    EXPECT_EQ(Find("mnuRecent1").Text(), "&1 C:\\😀.csv");
    for (const char* name : {"1", "2", "3", "4", "5", "2"}) {
        form().onDropFiles({std::string("C:\\d\\") + name + ".csv"});
    }
    EXPECT_EQ(Find("mnuRecent2").Text(), "&2 C:\\d\\5.csv");
    form().Click("mnuRecent3");
    EXPECT_EQ(globals.current_file, "C:\\d\\4.csv");
    window.Close();
    EXPECT_EQ(files.contents[options],
              "browser = C:\\a=b.exe\r\nbrowser kind = explorer\r\ntrace = C:\\calls.txt\r\n"
              "debug address = 127.0.0.1:9222\r\n"
              "recent = C:\\d\\4.csv\r\nrecent = C:\\d\\2.csv\r\n"
              "recent = C:\\d\\5.csv\r\nrecent = C:\\d\\3.csv\r\nrecent = C:\\d\\1.csv\r\n");
}

}  // namespace
}  // namespace tamrin::test
