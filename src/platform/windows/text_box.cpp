#include "platform/windows/text_box.h"

namespace tamrin {

LRESULT WindowTextBox::Handle(UINT message, WPARAM wide, LPARAM wider) {
    const LRESULT result = Default(message, wide, wider);
    if (message == WM_LBUTTONUP) Raise(onClick);
    if (message == WM_LBUTTONDBLCLK) Raise(onDblClick);
    return result;
}

}  // namespace tamrin
