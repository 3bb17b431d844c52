// The console program as a user starts it, with a real browser.

#include <gtest/gtest.h>
#include <signal.h>

#include <mutex>
#include <regex>
#include <string>

#include "samples/sample_site.h"
#include "samples/web_server.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace tamrin::test {
namespace {

using Words = std::vector<std::string>;

class Console : public testing::Test {
protected:
    // The browser for recording that the developer may have open is not this user's.
    Console() { setenv("HOME", folder.path().c_str(), 1); }
    // A scenario in a file: the page and the records behind it.
    std::string Scenario(const std::string& records) {
        return folder.Write("シナリオ 1.csv", "url\t,id=,size_bar=0.0.800.600.11110,indt=" +
                                                  server.Url("/form") + "\r\n" + records);
    }
    static Program Tamrin(Words arguments) {
        arguments.insert(arguments.begin(), TAMRIN_PROGRAM);
        return Program(arguments);
    }
    // Waits for its end, and expects its exit code and all these texts in what it has printed.
    static void ExpectEnd(Program&& program, int code, const Words& said) {
        EXPECT_EQ(program.Wait(), code) << program.output();
        for (const std::string& text : said) {
            EXPECT_NE(program.output().find(text), std::string::npos) << text << program.output();
        }
    }
    static void ExpectRun(const Words& arguments, int code, const Words& said) {
        ExpectEnd(Tamrin(arguments), code, said);
    }

    TemporaryFolder folder;
    SampleSite site{TAMRIN_SITE_FOLDER};
    std::mutex mutex;
    std::string last_page;
    WebServer server{[this](const WebRequest& request) -> WebReply {
        if (request.path == "/form") return {.body = "<input id=a><button id=b>x</button>"};
        WebReply reply = site.Answer(request);
        const std::lock_guard lock(mutex);
        if (request.path == "/done") last_page = reply.body;
        return reply;
    }};
};

TEST_F(Console, PlaysTheSampleOrderAndKeepsAPicture) {
    std::string scenario = FileBytes(TAMRIN_SOURCE_DIR "/samples/order.csv");
    const std::string address = "http://127.0.0.1:8631/";
    scenario.replace(scenario.find(address), address.size(), server.Url("/"));
    const std::string picture = folder.At("最後.png");
    ExpectRun({"-a", folder.Write("order.csv", scenario), "-picture", picture, "-close"}, 0, {});
    const std::lock_guard lock(mutex);
    for (const char* shown : {"quantity\">12<", "receiver\">山田 太郎<", "14時から16時", "銀行",
                              "別の封筒でお願いします。\r\n不在のときは受付に"}) {
        EXPECT_NE(last_page.find(shown), std::string::npos) << shown;
    }
    EXPECT_TRUE(FileBytes(picture).starts_with("\x89PNG"));
}

TEST_F(Console, TellsByItsExitCodeHowItEnded) {
    const std::string p = folder.At("p");
    const std::string dead = folder.Write(
        "dead.csv",
        "url\t,size_bar=0.0.800.600.1,indt=http://127.0.0.1:1/\r\nnavigate\t,indt=127.0.0.1:2\r\n"
        "wait\t,indt=3000\r\n");
    const std::string scenario =
        Scenario("//\t,indt=memo\r\ninput\t,id=a,type=text,indt=x\r\ninput\t,id=zz,indt=v\r\n");
    const std::string readme = FileBytes(TAMRIN_SOURCE_DIR "/README.md");
    const std::regex named("`--?[a-z_]+");
    Words switches;
    for (std::sregex_iterator at(readme.begin(), readme.end(), named), end; at != end; ++at) {
        switches.push_back(at->str().replace(0, 1, "  ") + " ");
    }
    const std::tuple<Words, int, Words> rows[] = {
        {{"--help"}, 0, switches},
        {{"--version"}, 0, {"Tamrin 0."}},
        {{"-foo"}, 1, {"-foo という指定は使えません。", "使い方"}},
        {{"-stream", "//"}, 1, {"最初に開くページ（url の行）がない"}},
        {{"-stream", "url\t,size_bar=1.2,indt=http://127.0.0.1/"}, 1, {"[フォーマットエラー]"}},
        {{folder.At("none.csv"), "-close"}, 2, {"none.csv\nのファイルが存在しません。"}},
        {{"-a", scenario, "-browser", "/no/such/browser"}, 3, {"[ブラウザーを起動できません]"}},
        {{scenario},
         5,
         {"ミリ秒\n    1  url               完了", "\n    3  input             完了",
          "該当フィールド無し"}},
        {{"-a", dead},
         6,
         {"ページを開けません：http://127.0.0.1:1/ ", "url               ページを",
          "navigate          ページを"}},
        {{"-stream", "url\t,size_bar=0.0.9.9.1,indt=about:blank", "-picture", folder.At("none/p")},
         8,
         {"最後のページの画像を保存できません"}},
        {{"-make_player", folder.At("none/p"), scenario}, 8, {"のフォルダがありません。"}},
        {{"-make_player", TAMRIN_PROGRAM, scenario}, 8, {"は実行中か使用中のため"}},
        {{"-record", p, "/", "-browser", "/no/such/browser"}, 3, {"[ブラウザーを起動できません]"}},
    };
    for (const auto& [arguments, code, said] : rows) ExpectRun(arguments, code, said);
    EXPECT_FALSE(std::filesystem::exists(p));
}

TEST_F(Console, MakesAPlayerThatPlaysWhereverItIs) {
    const TemporaryFolder other;
    const std::string player = other.At("注文 一件");
    const std::string scenario = Scenario("input\t,id=a,type=text,indt=日本\r\n");
    ExpectRun({"-make_player", folder.At("player"), scenario}, 0,
              {"実行形式で保存しました：" + folder.At("player") + "\n"});
    std::filesystem::copy(folder.At("player"), player);
    ExpectEnd(Program({player}), 0, {"\n    2  input             完了"});
    ExpectEnd(Program({player, "-no_auto_start"}), 1, {"使い方"});
    ExpectEnd(Program({player, "-no_auto_start", "-make_player", other.At("second"), scenario}), 0,
              {});
    EXPECT_EQ(FileBytes(other.At("second")).size(), FileBytes(player).size());
    EXPECT_EQ(other.Names(), (std::set<std::string>{"second", "注文 一件"}));
    const std::string whole = FileBytes(player);
    ExpectEnd(Program({other.Write("注文 一件", whole.substr(0, whole.size() - 1))}), 2,
              {"途中で切れている"});
}

TEST_F(Console, SaysWhenARunIsCutShort) {
    for (const auto& [signal, code, said] :
         {std::tuple(SIGINT, 130, "中止"), std::tuple(SIGKILL, 4, "再生を中止しました。")}) {
        Program program = Tamrin({"-a", Scenario("wait\t,indt=3000\r\ninput\t,id=a,indt=x\r\n")});
        ASSERT_TRUE(program.Prints("url")) << program.output();
        const pid_t browser = program.Child();
        ASSERT_GT(browser, 0);
        signal == SIGINT ? program.Signal(signal) : void(kill(browser, signal));
        ExpectEnd(std::move(program), code, {said});
        EXPECT_NE(kill(browser, 0), 0) << "the browser has ended with it";
    }
}

}  // namespace
}  // namespace tamrin::test
