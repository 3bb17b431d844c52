// What leads to other pages.

#include "recording/recording_fixture.h"

namespace tamrin::test {
namespace {

constexpr const char* kPixel =
    "data:image/gif;base64,R0lGODlhAQABAIAAAP///wAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==";

std::string Image(const std::string& attributes) {
    return std::string("<img width=40 height=30 src=") + kPixel + " " + attributes + ">";
}

TEST_F(RecordingTest, RecordsLinksOfEachKind) {
    ServePage("/", "<a href=/second data-place=text>次の ページ</a>");
    ServePage("/second", "<a href=/third>" + Image("data-place=picture") + "</a>");
    ServePage("/third", "<a href=\"javascript:location='/fourth'\" data-place=script>開く</a>");
    ServePage("/fourth",
              "<form action=/done><input type=image data-place=image id=go src=/go.svg "
              "width=40 height=30 onclick=\"location='/done'; return false\"></form>");
    ServePage("/done", "<button type=button id=stay onclick=\"fetch('/stayed')\">ここ</button>");
    Serve("/stayed", {});
    Serve("/go.svg", {.content_type = "image/svg+xml",
                      .body = "<svg xmlns='http://www.w3.org/2000/svg'><circle r='20'/></svg>"});
    Record("/");
    ClickOn("text");
    See("/second");
    ClickOn("picture");
    See("/third");
    ClickOn("script");
    See("/fourth");
    ClickOn("image");
    See("/done");
    ClickOn("stay");
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "click\t,id=,type=href,indt=次の ページ",
                                  "click\t,id=,type=href,indt=/third",
                                  "click\t,id=,type=href,indt=開く",
                                  "click\t,id=go,type=image,indt=/go.svg",
                                  "click\t,id=stay,type=button,indt=",
                              }));
    PlayBack();
}

TEST_F(RecordingTest, RecordsEnterAsTheButtonThatItPresses) {
    ServePage("/",
              "<form action=/done><input name=q><input type=submit name=go value=検索></form>");
    ServePage("/done", "<form action=/end><input name=only></form>");
    ServePage("/end", "");
    Record("/");
    ClickOn("q");
    desk().Type("one");
    desk().Press({"Return"});
    See("/done");
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "input\t,id=q,type=text,indt=one",
                                  "click\t,id=go,type=submit,indt=検索",
                              }));
    PlayBack();
}

// The page is away before the program has been told of the click, and the server sends it on.
TEST_F(RecordingTest, RecordsTheClickThatLeavesAtOnce) {
    ServePage("/", "<input id=a><button id=b onclick=\"location='/old'\">x</button>");
    Serve("/old", {.status = 302, .location = "/new"});
    ServePage("/new", "<button id=c onclick=\"document.write('<p>書き換え')\">y</button>");
    Record("/");
    ClickOn("a");
    desk().Type("v");
    ClickOn("b");
    See("/new");
    ClickOn("c");
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "input\t,id=a,type=text,indt=v",
                                  "click\t,id=b,type=submit,indt=",
                                  "click\t,id=c,type=submit,indt=",
                              }));
    PlayBack();
}

}  // namespace
}  // namespace tamrin::test
