#pragma once

#include <vector>

#include "platform/input.h"

namespace tamrin::test {

// The mouse and the keyboard where there are no windows for them to reach.
class NoInput : public Input {
public:
    ScreenPoint GetCursorPos() override { return {}; }
    void SetCursorPos(ScreenPoint) override {}
    void LeftButton(bool) override {}
    bool SendKeys(const std::vector<KeyStroke>&) override { return false; }
};

}  // namespace tamrin::test
