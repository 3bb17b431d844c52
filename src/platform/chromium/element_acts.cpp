// What is done to an element.

#include <nlohmann/json.hpp>

#include "platform/chromium/chromium_document.h"
#include "platform/chromium/chromium_element.h"
#include "platform/chromium/element_list.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// What the page agent answers to a write to a file input.
constexpr std::string_view kIsFile = "file";

// The browser takes full paths only.
std::string FullPath(std::string_view path, const Files& files) {
    const bool is_full =
        path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
    if (path.empty() || is_full) return std::string(path);
    return files.CurrentFolder() + files.Separator() + std::string(path);
}

std::string EventType(std::string_view event) {
    if (event.starts_with("on")) event.remove_prefix(2);
    return LowerCase(event);
}

}  // namespace

std::string ChromiumElement::Act(std::string_view function, Arguments arguments) {
    document().NoteWrite(number());
    const AgentAnswer answer = document().Run(Expression(function, arguments), true);
    document().tab().NextMoment();
    if (answer) return std::string(answer.fields.Text(0));
    // It was done, and what it led to came before the answer: a dialog box, or another page.
    const bool done =
        answer.end == DevToolsReply::End::kCutShort || answer.end == DevToolsReply::End::kLeft;
    return done && document().tab().Alive() ? "1" : "";
}

bool ChromiumElement::Put(std::string_view property, std::string_view value) {
    const std::string taken = Act("put", {property, value});
    return taken == kIsFile ? PutFile(property, value) : !taken.empty();
}

bool ChromiumElement::Change(std::string_view property, std::string_view value) {
    const std::string taken = Act("change", {property, value});
    return taken == kIsFile ? PutFile(property, value) && fireEvent("onchange") : !taken.empty();
}

std::string ChromiumElement::ObjectId(std::string_view function) const {
    const std::string& agent = document().agent();
    if (!document().Exists()) return "";
    return document()
        .tab()
        .Call("Runtime.evaluate",
              {{"expression",
                "tamrin." + std::string(function) + "(" + std::to_string(number()) + ")"},
               {"uniqueContextId", agent}},
              agent)
        .Text("/result/objectId");
}

bool ChromiumElement::PutFile(std::string_view property, std::string_view path) {
    if (property != "value") return false;
    Tab& tab = document().tab();
    const std::string& agent = document().agent();
    const std::string full = FullPath(path, tab.files());
    if (!tab.files().IsFile(full) || !document().Exists()) return false;
    document().NoteWrite(number());
    const std::string id = ObjectId("fileInput");
    if (id.empty()) return false;
    const auto done =
        tab.Call("DOM.setFileInputFiles", {{"files", {full}}, {"objectId", id}}, agent);
    tab.Post("Runtime.releaseObject", {{"objectId", id}});
    tab.NextMoment();
    return done.end == DevToolsReply::End::kAnswered || tab.dialog();
}

bool ChromiumElement::FiredInMoment(std::string_view type) const {
    Tab& tab = document().tab();
    const Notice* notice = tab.current();
    if (!notice || !tab.Watched()) return false;
    const bool active = !document().Moment() || document().MomentRow(number()) == 0U;
    if (type == "focusin" && active) {
        tab.Tell({.kind = Notice::Kind::kFocusIn, .agent = document().agent()});
        return true;
    }
    constexpr int kEnter = 13;
    return type == "change" && active && notice->kind == Notice::Kind::kKeyPress &&
           notice->key == kEnter;
}

bool ChromiumElement::fireEvent(std::string_view event) {
    const std::string type = EventType(event);
    if (FiredInMoment(type)) return true;
    if (type == "click") document().tab().MarkFired(document().agent());
    return !Act("fire", {type}).empty();
}

bool ChromiumElement::click() {
    Tab& tab = document().tab();
    if (tab.dialog() && document().Exists()) {
        // The page is held up by what the click before has opened; this one follows it.
        document().NoteWrite(number());
        tab.RunLater(document().agent(), Expression("click"));
        return true;
    }
    return !Act("click", {}).empty();
}

void ChromiumElement::scrollIntoView() {
    AgentAnswer answer = Run("scroll");
    if (!answer) return;
    document().tab().NextMoment();
    document().KeepPlace(number(), std::move(answer.fields));
}

void ChromiumElement::Outline() {
    Tab& tab = document().tab();
    const std::string id = ObjectId("outlined");
    tab.NextMoment();  // it has been scrolled
    if (!id.empty()) tab.ShowOutline(document().agent(), id);
}

}  // namespace tamrin
