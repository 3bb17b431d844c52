#include "platform/chromium/dialog_tracker.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace tamrin {

using nlohmann::json;

DialogTracker::DialogTracker(DevTools& devtools, PageAgents& agents, LoadTracker& loads)
    : devtools_(devtools), agents_(agents), loads_(loads) {}

const EventHandlers<DialogTracker>& DialogTracker::Handlers() {
    static const EventHandlers<DialogTracker> handlers = {
        {"Page.javascriptDialogOpening", &DialogTracker::OnOpening},
        {"Page.javascriptDialogClosed", &DialogTracker::OnClosed},
    };
    return handlers;
}

void DialogTracker::OnOpening(const std::string& session, const json& params) {
    const std::string type = TextOf(params, "type");
    dialog_ = {type, TextOf(params, "defaultPrompt"), session,
               type == "prompt" ? Focus::kText : Focus::kOk};
    agents_.Hold();
}

void DialogTracker::OnClosed(const std::string& /*session*/, const json& params) {
    const bool stays = dialog_ && dialog_->type == "beforeunload" && !params.value("result", true);
    if (stays) loads_.Refused();
    dialog_.reset();
    agents_.Release();
}

bool DialogTracker::TakeKey(const KeyStroke& key) {
    const auto pressed = dialog_ ? Press(*dialog_, key) : std::nullopt;
    if (!pressed) return false;
    json params{{"accept", *pressed == Focus::kOk}};
    if (dialog_->type == "prompt") params["promptText"] = dialog_->text;
    const bool runs_on = dialog_->type != "beforeunload";
    devtools_.Call(dialog_->session, "Page.handleJavaScriptDialog", params);
    return runs_on;
}

std::optional<DialogTracker::Focus> DialogTracker::Press(Dialog& dialog, const KeyStroke& key) {
    const Focus focused = dialog.focus == Focus::kCancel ? Focus::kCancel : Focus::kOk;
    if (key.ctrl || key.alt) return std::nullopt;
    if (key.name == "ESC") return dialog.type == "alert" ? Focus::kOk : Focus::kCancel;
    if (key.name == "ENTER") return focused;
    if (key.name == "TAB") MoveFocus(dialog, !key.shift);
    if (dialog.focus == Focus::kText) {
        if (!key.text.empty()) dialog.text = dialog.typed ? dialog.text + key.text : key.text;
        dialog.typed = dialog.typed || !key.text.empty();
        return std::nullopt;
    }
    if (key.text == " ") return focused;
    if (key.name == "LEFT" || key.name == "RIGHT") MoveFocus(dialog, key.name == "RIGHT");
    return std::nullopt;
}

void DialogTracker::MoveFocus(Dialog& dialog, bool forward) {
    if (dialog.type == "alert") return;
    if (dialog.type != "prompt") {
        dialog.focus = dialog.focus == Focus::kOk ? Focus::kCancel : Focus::kOk;
        return;
    }
    const int next = static_cast<int>(dialog.focus) + (forward ? 1 : 2);
    dialog.focus = static_cast<Focus>(next % 3);
}

}  // namespace tamrin
