#include "platform/explorer/member_numbers.h"

#include <mshtmdid.h>

#include <algorithm>
#include <span>

namespace tamrin {
namespace {

struct Member {
    std::string_view name;
    unsigned int number;  // as the header writes it
};

constexpr Member kForm[] = {
    {"id", DISPID_IHTMLELEMENT_ID},
    {"name", DISPID_IHTMLFORMELEMENT_NAME},
    {"tagName", DISPID_IHTMLELEMENT_TAGNAME},
    {"parentElement", DISPID_IHTMLELEMENT_PARENTELEMENT},
    {"innerText", DISPID_IHTMLELEMENT_INNERTEXT},
    {"outerHTML", DISPID_IHTMLELEMENT_OUTERHTML},
    {"sourceIndex", DISPID_IHTMLELEMENT_SOURCEINDEX},
    {"elements", DISPID_IHTMLFORMELEMENT_ELEMENTS},
    {"getAttribute", DISPID_IHTMLELEMENT_GETATTRIBUTE},
    {"getAttributeNode", DISPID_IHTMLELEMENT4_GETATTRIBUTENODE},
    {"getElementsByTagName", DISPID_IHTMLELEMENT2_GETELEMENTSBYTAGNAME},
    {"getBoundingClientRect", DISPID_IHTMLELEMENT2_GETBOUNDINGCLIENTRECT},
    {"click", DISPID_IHTMLELEMENT_CLICK},
    {"fireEvent", DISPID_IHTMLELEMENT3_FIREEVENT},
    {"scrollIntoView", DISPID_IHTMLELEMENT_SCROLLINTOVIEW},
};

constexpr Member kDocument[] = {
    {"URL", DISPID_IHTMLDOCUMENT2_URL},
    {"activeElement", DISPID_IHTMLDOCUMENT2_ACTIVEELEMENT},
    {"documentElement", DISPID_IHTMLDOCUMENT3_DOCUMENTELEMENT},
    {"elementFromPoint", DISPID_IHTMLDOCUMENT2_ELEMENTFROMPOINT},
    {"forms", DISPID_IHTMLDOCUMENT2_FORMS},
    {"getElementById", DISPID_IHTMLDOCUMENT3_GETELEMENTBYID},
    {"getElementsByName", DISPID_IHTMLDOCUMENT3_GETELEMENTSBYNAME},
    {"getElementsByTagName", DISPID_IHTMLDOCUMENT3_GETELEMENTSBYTAGNAME},
    {"hasFocus", DISPID_IHTMLDOCUMENT4_HASFOCUS},
    {"links", DISPID_IHTMLDOCUMENT2_LINKS},
    {"location", DISPID_IHTMLDOCUMENT2_LOCATION},
    {"parentWindow", DISPID_IHTMLDOCUMENT2_PARENTWINDOW},
    {"readyState", DISPID_IHTMLDOCUMENT2_READYSTATE},
};

}  // namespace

std::optional<DISPID> HideableMember(std::string_view kind, std::string_view member) {
    std::span<const Member> members;
    if (kind == "FORM") members = kForm;
    if (kind == "document") members = kDocument;
    const auto known =
        std::find_if(members.begin(), members.end(),
                     [member](const Member& candidate) { return candidate.name == member; });
    if (known == members.end()) return std::nullopt;
    return static_cast<DISPID>(known->number);
}

}  // namespace tamrin
