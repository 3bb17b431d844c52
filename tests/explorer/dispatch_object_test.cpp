#include "platform/explorer/dispatch_object.h"

#include <gtest/gtest.h>

#include "explorer/script_engine.h"

namespace tamrin::test {
namespace {

class DispatchObjectTest : public testing::Test {
protected:
    // An object whose members the script engine makes.
    DispatchObject Made(std::string_view literal) {
        engine_.Run("var it = " + std::string(literal));
        const DispatchObject global(engine_.Global(),
                                    std::make_shared<ObjectType>(calls, "global"));
        return {global.Get("it").Object(), std::make_shared<ObjectType>(calls, "it")};
    }
    void SetUp() override {
        calls.Trace([this](const std::string& line) { lines.push_back(line); });
    }

    ComCalls calls;
    std::vector<std::string> lines;

private:
    ScriptEngine engine_;
};

TEST_F(DispatchObjectTest, TellsNullEmptyAndMissingApart) {
    const DispatchObject it = Made("{nothing: null, unset: undefined, text: '', object: {}}");
    EXPECT_TRUE(it.Get("nothing").IsNull());
    const Variant unset = it.Get("unset");
    EXPECT_FALSE(unset.Failed() || unset.IsNull() || unset.HasValue());
    EXPECT_EQ(it.Get("text").Text(), "");
    EXPECT_TRUE(it.Get("object").Object());
    for (const char* none : {"nothing", "unset", "object"})
        EXPECT_EQ(it.Get(none).Text(), std::nullopt) << none;
    EXPECT_EQ(lines, std::vector<std::string>());
    EXPECT_TRUE(it.Get("missing").Failed());
    EXPECT_EQ(lines, std::vector<std::string>{"get it.missing: 0x80020006"});
}

TEST_F(DispatchObjectTest, AnswersValuesAsText) {
    const struct {
        std::string_view literal;
        std::string_view text;
    } rows[] = {{"'日本🚀'", "日本🚀"}, {"true", "True"}, {"false", "False"},
                {"-7", "-7"},           {"1.5", "1.5"},   {"3e9", "3000000000"}};
    for (const auto& row : rows)
        EXPECT_EQ(Made("{v: " + std::string(row.literal) + "}").Text("v"), row.text);
    EXPECT_EQ(Made("{v: '1.5'}").Get("v").Number(), 1.5);
    EXPECT_EQ(Made("{v: 'x'}").Get("v").Number(), std::nullopt);
}

TEST_F(DispatchObjectTest, CallsWithArgumentsInOrder) {
    const DispatchObject it = Made(
        "{join: function(a, b, c) { return a + '|' + b + '|' + c; },"
        " fail: function() { throw new Error('駄目'); }, kept: 1}");
    EXPECT_EQ(it.Call("join", Variant("a"), Variant(2), Variant(true)).Text(), "a|2|true");
    EXPECT_TRUE(it.Put("kept", Variant("新")));
    EXPECT_EQ(it.Text("kept"), "新");
    EXPECT_TRUE(it.Call("fail").Failed());
    EXPECT_FALSE(it.Put("missing", Variant(1)));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0].starts_with("call it.fail: 0x80020101")) << lines[0];
    EXPECT_EQ(lines[1], "put it.missing: 0x80020006");
}

TEST_F(DispatchObjectTest, IsEmptyWhereThereIsNoObject) {
    const DispatchObject none;
    EXPECT_TRUE(!none && none.Get("x").Failed() && none.Call("x").Failed());
    EXPECT_FALSE(none.Put("x", Variant(1)));
    EXPECT_EQ(none.Text("x"), "");
}

}  // namespace
}  // namespace tamrin::test
