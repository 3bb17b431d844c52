#include "samples/sample_site.h"

#include <gtest/gtest.h>

#include <string>

namespace tamrin {
namespace {

TEST(ParseForm, DecodesFieldsAsBrowsersWriteThem) {
    const struct {
        const char* body;
        FormFields fields;
    } rows[] = {
        {"", {}},
        {"a=1&b=2", {{"a", "1"}, {"b", "2"}}},
        {"name=%E5%B1%B1%e7%94%b0+%2B", {{"name", "山田 +"}}},
        {"text=one%0D%0Atwo%2Cthree", {{"text", "one\r\ntwo,three"}}},
        {"a=1&a=2", {{"a", "2"}}},
        {"a=b=c&d&=e&&", {{"a", "b=c"}, {"d", ""}, {"", "e"}}},
        {"a=100%&b=%4&c=%zz&%61=x", {{"a", "x"}, {"b", "%4"}, {"c", "%zz"}}},
    };
    for (const auto& row : rows) EXPECT_EQ(row.fields, ParseForm(row.body)) << row.body;
}

TEST(EscapeHtml, LeavesNothingThatIsMarkUp) {
    EXPECT_EQ("&lt;b title=&quot;x&quot;&gt;&amp;amp; &#39;山田&#39;",
              EscapeHtml("<b title=\"x\">&amp; '山田'"));
}

class Visitor {
public:
    explicit Visitor(SampleSite& site) : site_(site) {}

    WebReply Get(const std::string& path) { return Ask("GET", path, ""); }
    WebReply Post(const std::string& path, const std::string& body) {
        return Ask("POST", path, body);
    }

private:
    WebReply Ask(const std::string& method, const std::string& path, const std::string& body) {
        const WebReply reply =
            site_.Answer({method, path, "", "application/x-www-form-urlencoded", body, cookie_});
        if (!reply.set_cookie.empty())
            cookie_ = reply.set_cookie.substr(0, reply.set_cookie.find(';'));
        return reply;
    }

    SampleSite& site_;
    std::string cookie_;
};

bool Shows(const WebReply& reply, const std::string& id, const std::string& value) {
    return reply.body.find("id=\"" + id + "\">" + value + "</td>") != std::string::npos;
}

TEST(SampleSite, ShowsEachVisitorWhatHeSent) {
    SampleSite site(TAMRIN_SITE_FOLDER);
    Visitor first(site);
    Visitor second(site);
    first.Get("/");
    second.Get("/");
    EXPECT_EQ("/order", first.Post("/", "user=%3Cb%3E&password=%E3%81%82z").location);
    EXPECT_EQ("/order", second.Post("/", "user=other&password=").location);
    EXPECT_EQ("/delivery", first.Post("/order", "gift=yes&request=a%0D%0Ab").location);
    first.Post("/order", "request=c%0D%0Ad");  // sent again with the box no longer checked

    const WebReply done = first.Get("/done");
    EXPECT_TRUE(Shows(done, "user", "&lt;b&gt;")) << done.body;
    EXPECT_TRUE(Shows(done, "password", "●●")) << done.body;
    EXPECT_TRUE(Shows(done, "request", "c\r\nd")) << done.body;
    EXPECT_TRUE(Shows(done, "gift", "")) << done.body;
    EXPECT_TRUE(Shows(second.Get("/done"), "user", "other"));
    EXPECT_EQ(std::string::npos, done.body.find("{{"));
}

TEST(SampleSite, ServesOnlyItsOwnFiles) {
    SampleSite site(TAMRIN_SITE_FOLDER);
    Visitor visitor(site);
    for (const char* path : {"/", "/order", "/delivery", "/address", "/notes", "/confirm", "/done",
                             "/style.css", "/cart.svg"}) {
        const WebReply reply = visitor.Get(path);
        EXPECT_EQ(200, reply.status) << path;
        EXPECT_FALSE(reply.body.empty()) << path;
    }
    for (const char* path : {"/../sample_site.h", "/login.html", "//", ""}) {
        EXPECT_EQ(404, visitor.Get(path).status) << path;
    }
}

}  // namespace
}  // namespace tamrin
