#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <string_view>

namespace tamrin {

// The number of a member that a page can hide: a control named "id" hides the member "id" of its
// form, and a picture or form named "links" hides the document's "links". A call by number, which
// mshtmdid.h defines, always reaches the member itself. `kind` is "document" or "FORM"; nothing for
// other kinds, and for members that are called by name.
std::optional<DISPID> HideableMember(std::string_view kind, std::string_view member);

}  // namespace tamrin
