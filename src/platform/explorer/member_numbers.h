#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <string_view>

namespace tamrin {

// The number of a member that a page can hide by giving its name to something in it: a form's
// controls hide its members, a page's forms and pictures those of the document. Under its number,
// which mshtmdid.h has, the member itself is always reached. `kind` is "document" or "FORM";
// nothing for others, and for members that are asked for by name.
std::optional<DISPID> HideableMember(std::string_view kind, std::string_view member);

}  // namespace tamrin
