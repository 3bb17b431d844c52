#include "browser/find_link.h"

#include <gtest/gtest.h>

#include "browser/element_keys.h"
#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

class FindLinkByHrefTest : public testing::Test {
protected:
    LinkMatch Find(const std::string& html, std::string_view target) {
        web.pages["p"] = html;
        return FindLinkByHref(MakeDocument(web, "p"), target);
    }
    VirtualClock clock;
    ScriptedWeb web{clock};
};

TEST_F(FindLinkByHrefTest, CountsAddressesAndTakesTheFirstText) {
    struct Row {
        const char* html;
        const char* target;
        int count;
        const char* id;
    };
    const Row rows[] = {
        {"<a id=1 href=\"http://h/A\">x</a><a id=2 href=\"http://h/b\">x</a>", "http://h/a", 1,
         "1"},
        {"<a id=1 href=\"http://h/a\">x</a><a id=2 href=\"http://h/a\">y</a>", "http://h/a", 2,
         "2"},
        {"<a id=1 href=a>次へ</a><a id=2 href=b>次へ</a>", "次へ", 1, "1"},
        {"<a id=1 href=a> <b>Next</b> </a>", "next", 1, "1"},
        {"<a id=1 href=a>two\n lines</a>", "two\r\nlines", 1, "1"},
        {"<a id=1 href=a>x</a>", "y", 0, ""},
        {"<a id=1 href=a>x</a>", "http://h/a", 0, ""},
    };
    for (const Row& row : rows) {
        const LinkMatch match = Find(row.html, row.target);
        EXPECT_EQ(match.count, row.count) << row.html << " for " << row.target;
        EXPECT_EQ(match.link.id(), row.id) << row.html << " for " << row.target;
        EXPECT_EQ(match.rect.has_value(), row.count == 1);
    }
}

TEST_F(FindLinkByHrefTest, LooksIntoFramesAndAddsTheFramesPlace) {
    web.pages["f"] = "<a id=in href=\"http://h/a\">x</a>";
    const LinkMatch match = Find("<a id=1 href=z>z</a><iframe id=fr src=f></iframe>", "http://h/a");
    EXPECT_EQ(match.link.id(), "in");
    EXPECT_EQ(match.rect, (Rect{20, 40, 40, 60}));
    EXPECT_EQ(web.calls, std::vector<std::string>{"scroll in"});
    EXPECT_EQ(Find("<iframe src=f></iframe><iframe src=f></iframe>", "http://h/a").count, 2);
    EXPECT_EQ(Find("<iframe src=f></iframe><iframe src=f></iframe>", "x").count, 1);
}

TEST_F(FindLinkByHrefTest, IgnoresAnUnreachableFrame) {
    EXPECT_EQ(Find("<iframe src=nowhere></iframe>", "http://h/a").count, 0);
}

TEST(IsFullUrl, KnowsThreeSchemes) {
    for (const char* text : {"https://a", "http://a", "ftp://a"}) EXPECT_TRUE(IsFullUrl(text));
    for (const char* text : {"", "HTTP://a", "file:///a", "a http://", "javascript:x()"}) {
        EXPECT_FALSE(IsFullUrl(text)) << text;
    }
}

}  // namespace
}  // namespace tamrin::test
