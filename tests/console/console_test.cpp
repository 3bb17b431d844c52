// The console program as a user starts it, with a real browser.

#include <gtest/gtest.h>
#include <signal.h>

#include <fstream>
#include <iterator>
#include <mutex>
#include <string>

#include "samples/sample_site.h"
#include "samples/web_server.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace tamrin::test {
namespace {

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class ConsoleTest : public testing::Test {
protected:
    // A scenario in a file: the page and the records behind it.
    std::string Scenario(const std::string& records) {
        return Keep("シナリオ 1.csv", "url\t,id=,size_bar=0.0.800.600.11110,indt=" +
                                          server.Url("/form") + "\r\n" + records);
    }
    std::string Keep(const std::string& name, const std::string& text) {
        return folder.Write(name, text);
    }
    static Program Tamrin(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), TAMRIN_PROGRAM);
        return Program(arguments);
    }
    std::string LastPage() {
        const std::lock_guard lock(mutex);
        return last_page;
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

TEST_F(ConsoleTest, PlaysTheSampleOrderAndKeepsAPicture) {
    std::string scenario = ReadFile(TAMRIN_SOURCE_DIR "/samples/order.csv");
    const std::string address = "http://127.0.0.1:8631/";
    scenario.replace(scenario.find(address), address.size(), server.Url("/"));
    const std::string picture = folder.path() + "/最後.png";
    Program program = Tamrin({"-a", Keep("order.csv", scenario), "-picture", picture});
    EXPECT_EQ(program.Wait(), 0) << program.output();
    const std::pair<const char*, const char*> fields[] = {
        {"user", "A-1024"},
        {"quantity", "12"},
        {"postal", "100-0001"},
        {"receiver", "山田 太郎"},
        {"phone", "03-0000-0000"},
        {"staff", "佐藤"},
        {"request", "領収書を2通, 別の封筒でお願いします。\r\n不在のときは受付に預けてください。"},
    };
    for (const auto& [id, value] : fields) {
        const std::string cell = std::string("id=\"") + id + "\">" + value + "</td>";
        EXPECT_NE(LastPage().find(cell), std::string::npos) << cell;
    }
    for (const char* text : {"14時から16時", "銀行"}) {
        EXPECT_NE(LastPage().find(text), std::string::npos) << text;
    }
    EXPECT_TRUE(ReadFile(picture).starts_with("\x89PNG"));
}

TEST_F(ConsoleTest, TellsByItsExitCodeHowTheRunEnded) {
    struct Row {
        std::vector<std::string> arguments;
        int code;
        const char* said;
    };
    const std::string scenario = Scenario("input\t,id=zz,type=text,indt=v\r\nwait\t,indt=10\r\n");
    const Row rows[] = {
        {{}, 1, "使い方"},
        {{"-a"}, 1, "[パラメータエラー] aの第二パラメータ（ファイル名）がありません！"},
        {{"-a", Keep("no-url.csv", "wait\t,indt=10\r\n")}, 1, ""},
        {{"-stream", "url\t,size_bar=1.2,indt=http://127.0.0.1/"}, 1, "[フォーマットエラー]"},
        {{"-a", folder.path() + "/none.csv"}, 2, "のファイルが存在しません。"},
        {{"-a", scenario, "-browser", "/no/such/browser"}, 3, "[ブラウザを起動できません]"},
        {{Scenario("input\t,id=zz,type=text,indt=v\r\nwait\t,indt=10\r\n")},
         5,
         "該当フィールド無し"},
    };
    for (const Row& row : rows) {
        Program program = Tamrin(row.arguments);
        EXPECT_EQ(program.Wait(), row.code) << program.output();
        EXPECT_NE(program.output().find(row.said), std::string::npos) << program.output();
    }
}

TEST_F(ConsoleTest, SaysThatAPageCouldNotBeOpened) {
    Program program = Tamrin({"-stream", "url\t,size_bar=0.0.800.600.1,indt=http://127.0.0.1:1/"});
    EXPECT_EQ(program.Wait(), 6) << program.output();
}

TEST_F(ConsoleTest, MakesAPlayerThatPlaysWhereverItIs) {
    const TemporaryFolder other;
    const std::string player = other.At("注文 一件");
    const std::string scenario = Scenario("input\t,id=a,type=text,indt=日本\r\n");
    Program made = Tamrin({"-make_player", folder.At("player"), scenario});
    EXPECT_EQ(made.Wait(), 0) << made.output();
    EXPECT_EQ(made.output(), "実行形式で保存しました：" + folder.At("player") + "\n");
    std::filesystem::copy(folder.At("player"), player);
    Program played({player});
    EXPECT_EQ(played.Wait(), 0) << played.output();
    EXPECT_NE(played.output().find("\n    2  input             完了"), std::string::npos)
        << played.output();
    Program editor({player, "-no_auto_start"});
    EXPECT_EQ(editor.Wait(), 1) << editor.output();
    Program second({player, "-no_auto_start", "-make_player", other.At("second"), scenario});
    EXPECT_EQ(second.Wait(), 0) << second.output();
    EXPECT_EQ(FileBytes(other.At("second")).size(), FileBytes(player).size());
    EXPECT_EQ(other.Names(), (std::set<std::string>{"second", "注文 一件"}));
}

TEST_F(ConsoleTest, MakesNoPlayerInVain) {
    const std::string scenario = Scenario("");
    const struct {
        std::vector<std::string> arguments;
        int code;
        const char* said;
    } rows[] = {
        {{"-make_player", folder.At("p")}, 1, "使い方"},
        {{"-make_player", folder.At("p"), folder.At("none.csv")},
         2,
         "のファイルを読み込めません。"},
        {{"-make_player", folder.At("p"), Keep("no-url.csv", "wait\t,indt=1\r\n")}, 8, "url の行"},
        {{"-make_player", folder.At("none/p"), scenario}, 8, "のフォルダがありません。"},
        {{"-make_player", TAMRIN_PROGRAM, scenario}, 8, "は実行中か使用中のため"},
    };
    for (const auto& row : rows) {
        Program program = Tamrin(row.arguments);
        EXPECT_EQ(program.Wait(), row.code) << program.output();
        EXPECT_NE(program.output().find(row.said), std::string::npos) << program.output();
    }
    EXPECT_FALSE(std::filesystem::exists(folder.At("p")));
}

TEST_F(ConsoleTest, ADamagedPlayerPlaysNothing) {
    const std::string player = folder.At("p");
    EXPECT_EQ(Tamrin({"-make_player", player, Scenario("")}).Wait(), 0);
    const std::string whole = FileBytes(player);
    const std::size_t program = FileBytes(TAMRIN_PROGRAM).size();
    std::string changed = whole;
    changed[whole.size() - 100] ^= 1;
    const std::pair<std::string, const char*> rows[] = {
        {whole.substr(0, whole.size() - 1), "途中で切れている"},
        {whole.substr(0, program + 20), "途中で切れている"},
        {whole.substr(0, program), "途中で切れている"},
        {changed, "シナリオが壊れている"},
    };
    for (const auto& [bytes, said] : rows) {
        folder.Write("p", bytes);
        Program damaged({player});
        EXPECT_EQ(damaged.Wait(), 2) << damaged.output();
        EXPECT_NE(damaged.output().find(said), std::string::npos) << damaged.output();
        EXPECT_EQ(damaged.output().find("url"), std::string::npos) << damaged.output();
    }
}

TEST_F(ConsoleTest, ReportsEachRecordOnALine) {
    Program program =
        Tamrin({"-a", Scenario("//\t,indt=memo\r\ninput\t,id=a,type=text,indt=x\r\n")});
    EXPECT_EQ(program.Wait(), 0);
    const std::string& output = program.output();
    EXPECT_TRUE(
        output.starts_with("   行  動作              結果                 ミリ秒\n"
                           "    1  url               完了"))
        << output;
    EXPECT_NE(output.find("\n    2  //                コメント"), std::string::npos) << output;
    EXPECT_NE(output.find("\n    3  input             完了"), std::string::npos) << output;
}

TEST_F(ConsoleTest, CtrlCStopsARun) {
    Program program = Tamrin({"-a", Scenario("wait\t,indt=600000\r\n")});
    ASSERT_TRUE(program.Prints("url")) << program.output();
    const pid_t browser = program.Child();
    program.Signal(SIGINT);
    EXPECT_EQ(program.Wait(), 130) << program.output();
    EXPECT_NE(program.output().find("中止"), std::string::npos) << program.output();
    EXPECT_NE(kill(browser, 0), 0) << "the browser has ended with it";
}

TEST_F(ConsoleTest, SaysThatTheBrowserWasKilled) {
    Program program = Tamrin({"-a", Scenario("wait\t,indt=1000\r\ninput\t,id=a,indt=x\r\n")});
    ASSERT_TRUE(program.Prints("url")) << program.output();
    ASSERT_GT(program.Child(), 0);
    kill(program.Child(), SIGKILL);
    EXPECT_EQ(program.Wait(), 4) << program.output();
    EXPECT_NE(program.output().find("再生を中止しました。"), std::string::npos);
}

}  // namespace
}  // namespace tamrin::test
