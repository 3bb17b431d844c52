#pragma once

#include <string>

#include "platform/document.h"

namespace tamrin {

// What a field holds when it gets the focus: "True" or "False" of a radio button or check box, the
// index of the chosen option of a select, the text of a text, password, textarea, plain input or
// file field. Of everything else "", also of an e-mail field: leaving one always counts as a
// change.
std::string GetCurrentValue(const Element& element);

}  // namespace tamrin
