#include <gtest/gtest.h>

#include "explorer/page_rig.h"
#include "platform/explorer/explorer_document.h"
#include "platform/explorer/page_pool.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

// Writes down what a page tells, with the active element by its id and value.
class Witness : public DocumentEvents {
public:
    explicit Witness(Document document)
        : page(std::move(document)), connection(page.Connect(*this)) {}

    void onclick() override { Note("click"); }
    void onfocusin() override { Note("focus"); }
    void onbeforedeactivate() override { Note("leave"); }
    void onkeypress(int key) override { Note("key" + std::to_string(key)); }
    void onsubmit() override { Note("submit"); }

    virtual void Note(const std::string& event) {
        const Element active = page.activeElement();
        lines.push_back(event + " " + active.id());
        if (!active.value().empty()) lines.back() += "=" + active.value();
    }

    Document page;
    std::unique_ptr<Connection> connection;
    Strings lines;
};

using PageEventsTest = PageRig;

TEST_F(PageEventsTest, TellOfTheUserInsideDeliverOnly) {
    for (const int mode : {11, 7}) {
        Witness witness(Open("<input id=a><input id=b value=w>", mode));
        world.Run(
            "user.click(el('a')); user.type(el('a'), '1'); user.click(el('b'));"
            "user.enter(el('b'))");
        EXPECT_EQ(witness.lines, Strings());
        pool->events().Deliver();
        EXPECT_EQ(witness.lines, (Strings{"focus a", "click a", "key49 a", "leave a=1", "focus b=w",
                                          "click b=w", "key13 b=w"}));
    }
}

TEST_F(PageEventsTest, BringTheMomentWithoutACall) {
    class Reader : public Witness {
    public:
        Reader(Document document, const ComCalls& calls)
            : Witness(std::move(document)), calls_(calls) {}
        void Note(const std::string& event) override {
            const auto before = calls_.count();
            const Element a = page.activeElement();
            lines.push_back(event + " " + a.id() + a.value() + a.getAttribute("type").value_or("") +
                            a.getAttribute("onclick").value_or("Null") + a.parentElement().id() +
                            a.form().name() + a.tagName() + a.checked() + page.url());
            if (event == "key13") lines.push_back(a.DefaultButton().id());
            EXPECT_EQ(calls_.count(), before);
        }

    private:
        const ComCalls& calls_;
    };
    Reader reader(
        Open("<form id=f name=g><p id=p><input id=a onclick='f()' value=v></p><button id=d>"
             "</button></form>"),
        calls);
    world.Run("user.focus(el('a')); user.enter(el('a')); el('a').value = 'later';");
    pool->events().Deliver();
    EXPECT_EQ(reader.lines, (Strings{"focus avtextf()pgINPUTFalsehttp://site/dir/page",
                                     "key13 avtextf()pgINPUTFalsehttp://site/dir/page", "d"}));
    EXPECT_EQ(reader.page.activeElement().value(), "later");
}

TEST_F(PageEventsTest, TellOfTheFormOfTheFocusedField) {
    Witness witness(Open("<form id=f><input id=a></form><form id=g><input id=b></form>"));
    world.Run(
        "user.focus(el('a')); user.submit(el('f')); user.submit(el('g'));"
        "user.focus(el('b')); user.submit(el('f')); user.submit(el('g'));");
    pool->events().Deliver();
    EXPECT_EQ(witness.lines, (Strings{"focus a", "submit a", "leave a", "focus b", "submit b"}));
}

TEST_F(PageEventsTest, WaitForTheHandlerBeforeAndEndWithTheSubscription) {
    class Waiting : public Witness {
    public:
        Waiting(Document document, EventQueue& events)
            : Witness(std::move(document)), events_(events) {}
        void Note(const std::string& event) override {
            events_.Deliver();
            Witness::Note(event);
            if (event == "click") connection.reset();
        }

    private:
        EventQueue& events_;
    };
    Waiting waiting(Open("<input id=a><input id=b>"), pool->events());
    world.Run("user.click(el('a')); user.click(el('b'))");
    pool->events().Deliver();
    EXPECT_EQ(waiting.lines, (Strings{"focus a", "click a"}));
    world.Run("user.click(el('a'))");
    pool->events().Deliver();
    EXPECT_EQ(waiting.lines.size(), 2U);
}

TEST_F(PageEventsTest, FireFocusInAHandlerToThoseWhoListenOnly) {
    class Firing : public Witness {
    public:
        using Witness::Witness;
        void onclick() override { EXPECT_TRUE(page.activeElement().fireEvent("onfocusin")); }
    };
    Firing firing(Open("<input id=a onfocusin=say('in')>"));
    world.Run("user.click(el('a'))");
    pool->events().Deliver();
    EXPECT_EQ(firing.lines, (Strings{"focus a", "focus a"}));
    EXPECT_EQ(world.Ask("page.__said.join()"), "in");
}

TEST_F(PageEventsTest, LeaveNoReferenceToAPageThatIsGone) {
    Witness witness(Open("<form><input id=a></form>"));
    world.Run("user.focus(el('a'))");
    pool->KeepOnly(nullptr);
    EXPECT_EQ(witness.page.url() + witness.page.Named("a").by_id.id(), "");
    EXPECT_FALSE(witness.page.Connect(witness));
    pool->events().Deliver();
    EXPECT_EQ(witness.lines, Strings{"focus a"});
    world.Run("user.click(el('a'))");
    pool->events().Deliver();
    EXPECT_EQ(witness.lines.size(), 1U);
    EXPECT_EQ(world.objects.alive.size(), 0U);
}

TEST_F(PageEventsTest, LeaveNothingOfAThousandSubscriptions) {
    const Document page = Open("<form><input id=a></form>");
    world.Run("user.focus(el('a'))");
    for (int i = 0; i < 1000; ++i) {
        const Witness witness(page);
        if (i == 0) continue;
        ASSERT_LE(world.objects.alive.size(), 5U);
    }
}

}  // namespace
}  // namespace tamrin::test
