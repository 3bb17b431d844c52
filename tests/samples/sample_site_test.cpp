#include "samples/sample_site.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace tamrin {
namespace {

TEST(ParseForm, DecodesFieldsAsBrowsersWriteThem) {
    const struct {
        const char* body;
        FormFields fields;
    } rows[] = {
        {"", {}},
        {"name=%E5%B1%B1%e7%94%b0+%2B", {{"name", "山田 +"}}},
        {"a=1&a=2&text=one%0D%0Atwo", {{"a", "2"}, {"text", "one\r\ntwo"}}},
        {"a=b=c&d&=e&&", {{"a", "b=c"}, {"d", ""}, {"", "e"}}},
        {"a=100%&b=%4&c=%zz&%61=x", {{"a", "x"}, {"b", "%4"}, {"c", "%zz"}}},
    };
    for (const auto& row : rows) EXPECT_EQ(row.fields, ParseForm(row.body)) << row.body;
}

// What a visitor gets who sends a form, or asks for a page, with his cookie.
WebReply Visit(SampleSite& site, std::string& cookie, const std::string& path,
               const std::string& body = "") {
    WebReply reply = site.Answer({body.empty() ? "GET" : "POST", path, "",
                                  "application/x-www-form-urlencoded", body, cookie});
    if (!reply.set_cookie.empty()) cookie = reply.set_cookie.substr(0, reply.set_cookie.find(';'));
    return reply;
}

TEST(SampleSite, ShowsEachVisitorWhatHeSent) {
    SampleSite site(TAMRIN_SITE_FOLDER);
    std::string first, second;
    for (const char* path : {"/", "/order", "/delivery", "/address", "/notes", "/confirm", "/done",
                             "/style.css", "/cart.svg"}) {
        EXPECT_EQ(Visit(site, first, path).status, 200) << path;
    }
    for (const char* path : {"/../sample_site.h", "/login.html", "//", ""}) {
        EXPECT_EQ(Visit(site, first, path).status, 404) << path;
    }
    Visit(site, second, "/");
    EXPECT_EQ(Visit(site, first, "/", "user=%3Cb+c='%22%26%3E&password=%E3%81%82z").location,
              "/order");
    Visit(site, second, "/", "user=other&password=");
    Visit(site, first, "/order", "gift=yes&request=a%0D%0Ab");
    Visit(site, first, "/order", "request=c%0D%0Ad");  // again, the box no longer checked
    const std::string done = Visit(site, first, "/done").body;
    for (const char* cell :
         {"user\">&lt;b c=&#39;&quot;&amp;&gt;", "password\">●●", "request\">c\r\nd", "gift\">"}) {
        EXPECT_NE(done.find(std::string(cell) + "</td>"), std::string::npos) << cell << done;
    }
    EXPECT_EQ(done.find("{{"), std::string::npos);
    EXPECT_NE(Visit(site, second, "/done").body.find("user\">other</td>"), std::string::npos);
}

TEST(WebServer, ThrowsWhenThePortIsTaken) {
    const auto answer = [](const WebRequest&) { return WebReply{}; };
    const WebServer server(answer);
    EXPECT_THROW(WebServer(answer, server.port()), std::runtime_error);
}

}  // namespace
}  // namespace tamrin
