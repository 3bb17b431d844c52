#include <gtest/gtest.h>

#include <mshtml.h>

#include "explorer/page_world.h"
#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/event_sink.h"

namespace tamrin::test {
namespace {

class PageDouble : public testing::Test {
protected:
    DispatchObject Named(ComPtr<IDispatch> object) {
        return {std::move(object), std::make_shared<ObjectType>(calls, "it")};
    }
    void TearDown() override { EXPECT_EQ(world.objects.alive.size(), 0U); }

    ComCalls calls;
    PageWorld world;
};

TEST_F(PageDouble, AnswersAsTheObjectsOfAPage) {
    const DispatchObject page =
        Named(world.Open("<form id=f><input id=a name=id value=v><select id=s><option>一<option "
                         "value=2 selected>二</select></form><a id=l href=x>次</a>"));
    EXPECT_EQ(page.Text("url"), "http://site/dir/page");
    EXPECT_TRUE(page.Call("getElementById", Variant("none")).IsNull());
    const DispatchObject form = Named(page.Call("GETELEMENTBYID", Variant("f")).Object());
    EXPECT_TRUE(form.Get("id").IsObject());
    EXPECT_EQ(Named(page.Call("getElementById", Variant("s")).Object()).Text("value"), "2");
    EXPECT_EQ(Named(page.Call("getElementById", Variant("l")).Object()).Text("href"),
              "http://site/dir/x");
    EXPECT_EQ(Named(page.Get("forms").Object()).Text("length"), "1");
    EXPECT_TRUE(
        SameObject(page.Call("getElementById", Variant("f")).Object().get(), form.object().get()));
}

TEST_F(PageDouble, TellsEventsWithTheirNumbersAndStopsAtOnce) {
    const ComPtr<IDispatch> page = world.Open("<input id=a>");
    std::vector<std::string> told;
    const auto note = [&told](const char* what) {
        return [&told, what](const EventArguments& arguments) {
            told.push_back(what + std::string(arguments.At(0).Object() ? "+" : ""));
        };
    };
    auto connection = EventConnection::Make(calls, page.get(), __uuidof(HTMLDocumentEvents2),
                                            {{-600, note("click")}, {1048, note("focus")}});
    ASSERT_TRUE(connection);
    EXPECT_EQ(world.Ask("user.click(el('a'))"), "undefined");
    EXPECT_EQ(told, (std::vector<std::string>{"focus+", "click+"}));
    connection.reset();
    world.Run("user.click(el('a'))");
    EXPECT_EQ(told.size(), 2U);
    EXPECT_FALSE(EventConnection::Make(calls, page.get(), __uuidof(HTMLFormElementEvents2), {}));
}

TEST_F(PageDouble, FailsWhereItIsTold) {
    const DispatchObject page = Named(world.Open("<input id=a value=v>"));
    const DispatchObject a = Named(page.Call("getElementById", Variant("a")).Object());
    EXPECT_EQ(a.Text("value"), "v");
    world.objects.faults[L"INPUT.VALUE"] = E_ACCESSDENIED;
    EXPECT_TRUE(a.Get("value").Failed());
    EXPECT_EQ(a.Text("id"), "a");
}

}  // namespace
}  // namespace tamrin::test
