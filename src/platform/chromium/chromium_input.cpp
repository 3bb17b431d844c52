#include "platform/chromium/chromium_input.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/chromium/key_table.h"

namespace tamrin {
namespace {

using nlohmann::json;

constexpr const char* kMouse = "Input.dispatchMouseEvent";
constexpr const char* kKey = "Input.dispatchKeyEvent";

// How many characters are sent in one go.
constexpr std::size_t kLongestRun = 64;

int Modifiers(const KeyStroke& stroke, bool shift) {
    return (stroke.alt ? 1 : 0) | (stroke.ctrl ? 2 : 0) | (shift ? 8 : 0);
}

// Whether it only types a character. Such keys are sent in one go; any other key may change what
// receives the next one.
bool IsPlain(const KeyStroke& stroke) {
    return stroke.name.empty() && !stroke.ctrl && !stroke.alt && stroke.text != " ";
}

bool Is(const KeyStroke& stroke, std::string_view key, bool ctrl, bool alt) {
    const bool same = stroke.name == key || (key.size() == 1 && stroke.text.size() == 1 &&
                                             (stroke.text.front() | 0x20) == key.front());
    return same && stroke.ctrl == ctrl && stroke.alt == alt;
}

bool Closes(const KeyStroke& stroke) {
    return Is(stroke, "F4", false, true) || Is(stroke, "F4", true, false) ||
           Is(stroke, "w", true, false);
}

bool Reloads(const KeyStroke& stroke) {
    return Is(stroke, "F5", false, false) || Is(stroke, "F5", true, false) ||
           Is(stroke, "r", true, false);
}

// How far the key goes through the tab's history: 1, -1, or 0 for other keys.
int HistorySteps(const KeyStroke& stroke) {
    return Is(stroke, "RIGHT", false, true) ? 1 : Is(stroke, "LEFT", false, true) ? -1 : 0;
}

}  // namespace

void ChromiumInput::SetCursorPos(ScreenPoint point) {
    cursor_ = point;
    moved_ = true;
    if (pressed_) SendMove();
}

void ChromiumInput::SendMove() {
    const auto tab = tab_();
    if (!tab || tab->dialogs().IsOpen()) return;
    tab->agents().Post(kMouse, MouseEvent(*tab, "mouseMoved"));
    moved_ = false;
    pressed_ = false;
}

void ChromiumInput::LeftButton(bool down) {
    if (down && moved_) SendMove();
    const auto tab = tab_();
    if (!tab || tab->dialogs().IsOpen()) return;
    pressed_ = true;
    json event = MouseEvent(*tab, down ? "mousePressed" : "mouseReleased");
    event["button"] = "left";
    event["buttons"] = down ? 1 : 0;
    event["clickCount"] = 1;
    tab->NextMoment();
    if (down) return tab->agents().Post(kMouse, event);
    tab->Enter({{kMouse, event}});
}

json ChromiumInput::MouseEvent(const Tab& tab, const char* type) const {
    const Viewport& viewport = tab.viewport();
    return {{"type", type},
            {"x", cursor_.x / viewport.scale - viewport.left},
            {"y", cursor_.y / viewport.scale - viewport.top}};
}

bool ChromiumInput::SendKeys(const std::vector<KeyStroke>& keys) {
    for (std::size_t i = 0; i < keys.size();) {
        const auto tab = tab_();
        if (!tab || !tab->Alive()) return false;
        if (tab->dialogs().IsOpen()) {
            tab->EnterInDialog(keys[i++]);
            continue;
        }
        if (Closes(keys[i]) || Reloads(keys[i]) || HistorySteps(keys[i]) != 0) {
            if (!SendBrowserKey(*tab, keys[i++])) return false;
            continue;
        }
        std::vector<DevToolsCall> calls;
        const std::size_t end = std::min(keys.size(), i + kLongestRun);
        const bool plain = IsPlain(keys[i]);
        do AddStroke(keys[i++], calls);
        while (plain && i < end && IsPlain(keys[i]));
        if (!tab->Enter(calls)) return false;
    }
    return true;
}

void ChromiumInput::AddStroke(const KeyStroke& stroke, std::vector<DevToolsCall>& calls) {
    const PageKey key = FindPageKey(stroke);
    if (key.code_number == 0) {
        // No key types it (for example Japanese); it is sent as an input method would.
        if (stroke.text.empty()) return;
        if (!calls.empty() && calls.back().first == "Input.insertText") {
            json& text = calls.back().second["text"];
            text = text.get<std::string>() + stroke.text;
        } else {
            calls.emplace_back("Input.insertText", json{{"text", stroke.text}});
        }
        return;
    }
    json event{{"key", key.key},
               {"code", key.code},
               {"windowsVirtualKeyCode", key.code_number},
               {"modifiers", Modifiers(stroke, key.shift)}};
    json down = event;
    const bool types = !key.text.empty() && !stroke.ctrl && !stroke.alt;
    down["type"] = types ? "keyDown" : "rawKeyDown";
    if (types) down["text"] = key.text;
    if (const std::string command = EditCommand(stroke); !command.empty()) {
        down["commands"] = json::array({command});
    }
    event["type"] = "keyUp";
    calls.emplace_back(kKey, std::move(down));
    calls.emplace_back(kKey, std::move(event));
}

bool ChromiumInput::SendBrowserKey(Tab& tab, const KeyStroke& stroke) {
    if (Closes(stroke)) {
        tab.Close();
        return true;
    }
    const auto in_all_frames = [&](const char* expression) {
        std::vector<PageAgents::Question> questions;
        for (const FrameInfo& frame : tab.frames().All()) {
            questions.emplace_back(frame.agent, expression);
        }
        return tab.agents().RunAll(questions);
    };
    in_all_frames("tamrin.watchKeys()");
    std::vector<DevToolsCall> calls;
    AddStroke(stroke, calls);
    if (!tab.Enter(calls)) return false;
    const auto answers = in_all_frames("tamrin.keyTaken()");
    const bool taken = std::any_of(answers.begin(), answers.end(), [](const AgentAnswer& answer) {
        return !answer.fields.Text(0).empty();
    });
    if (taken || tab.dialogs().IsOpen()) return true;
    if (Reloads(stroke)) {
        tab.loads().Reload();
    } else {
        tab.loads().GoThroughHistory(HistorySteps(stroke));
    }
    return true;
}

}  // namespace tamrin
