#include "samples/sample_site.h"

#include <gtest/gtest.h>

namespace tamrin {
namespace {

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
    EXPECT_EQ(Visit(site, first, "/style.css").status, 200);
    EXPECT_EQ(Visit(site, first, "/../sample_site.h").status, 404);
    EXPECT_EQ(
        Visit(site, first, "/", "user=%3Cb+c='%22%26%3e%zz&password=%E3%81%82z&=e&&").location,
        "/order");
    Visit(site, second, "/");
    Visit(site, second, "/", "user=other&password=");
    Visit(site, first, "/order", "gift=yes&request=a%0D%0Ab");
    Visit(site, first, "/order", "request=c%0D%0Ad");  // again, the box no longer checked
    const std::string done = Visit(site, first, "/done").body;
    for (const char* cell : {"user\">&lt;b c=&#39;&quot;&amp;&gt;%zz", "password\">●●",
                             "request\">c\r\nd", "gift\">"}) {
        EXPECT_NE(done.find(std::string(cell) + "</td>"), std::string::npos) << cell << done;
    }
    EXPECT_NE(Visit(site, second, "/done").body.find("user\">other</td>"), std::string::npos);
}

}  // namespace
}  // namespace tamrin
