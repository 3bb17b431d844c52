#include <mshtmdid.h>

#include <algorithm>

#include "explorer/page_double.h"
#include "platform/text.h"

namespace tamrin::test {
namespace {

// The numbers that the members of forms and documents always have.
const std::map<unsigned int, std::string> kFormMembers = {
    {DISPID_IHTMLELEMENT_ID, "ID"},
    {DISPID_IHTMLFORMELEMENT_NAME, "NAME"},
    {DISPID_IHTMLELEMENT_TAGNAME, "TAGNAME"},
    {DISPID_IHTMLELEMENT_PARENTELEMENT, "PARENTELEMENT"},
    {DISPID_IHTMLELEMENT_SOURCEINDEX, "SOURCEINDEX"},
    {DISPID_IHTMLFORMELEMENT_ELEMENTS, "ELEMENTS"},
    {DISPID_IHTMLELEMENT_GETATTRIBUTE, "GETATTRIBUTE"},
    {DISPID_IHTMLELEMENT4_GETATTRIBUTENODE, "GETATTRIBUTENODE"},
    {DISPID_IHTMLELEMENT2_GETELEMENTSBYTAGNAME, "GETELEMENTSBYTAGNAME"}};
const std::map<unsigned int, std::string> kDocumentMembers = {
    {DISPID_IHTMLDOCUMENT2_URL, "URL"},
    {DISPID_IHTMLDOCUMENT2_ACTIVEELEMENT, "ACTIVEELEMENT"},
    {DISPID_IHTMLDOCUMENT3_DOCUMENTELEMENT, "DOCUMENTELEMENT"},
    {DISPID_IHTMLDOCUMENT2_ELEMENTFROMPOINT, "ELEMENTFROMPOINT"},
    {DISPID_IHTMLDOCUMENT2_FORMS, "FORMS"},
    {DISPID_IHTMLDOCUMENT3_GETELEMENTBYID, "GETELEMENTBYID"},
    {DISPID_IHTMLDOCUMENT3_GETELEMENTSBYNAME, "GETELEMENTSBYNAME"},
    {DISPID_IHTMLDOCUMENT3_GETELEMENTSBYTAGNAME, "GETELEMENTSBYTAGNAME"},
    {DISPID_IHTMLDOCUMENT4_HASFOCUS, "HASFOCUS"},
    {DISPID_IHTMLDOCUMENT2_LINKS, "LINKS"},
    {DISPID_IHTMLDOCUMENT2_LOCATION, "LOCATION"},
    {DISPID_IHTMLDOCUMENT2_PARENTWINDOW, "PARENTWINDOW"},
    {DISPID_IHTMLDOCUMENT2_READYSTATE, "READYSTATE"}};

}  // namespace

PageObject::PageObject(PageDouble& page, Node* node, Read read)
    : page_(page), node_(node), read_(std::move(read)) {
    if (node) page_.objects_[node] = this;
}

PageObject::~PageObject() {
    if (node_) page_.objects_.erase(node_);
}

STDMETHODIMP PageObject::QueryInterface(REFIID id, void** object) {
    *object = nullptr;
    if (id == IID_IHTMLDocument && node_ == page_.root_.get()) {
        *object = static_cast<IHTMLDocument*>(this);
    } else if (id == IID_IUnknown || id == IID_IDispatch) {
        *object = static_cast<IDispatch*>(this);
    } else if (id == IID_IConnectionPointContainer) {
        *object = static_cast<IConnectionPointContainer*>(this);
    } else if (id == IID_IServiceProvider) {
        *object = static_cast<IServiceProvider*>(this);
    }
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP PageObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* number) {
    *number = DISPID_UNKNOWN;
    if (page_.world.faults.Next() != S_OK) return DISP_E_UNKNOWNNAME;
    auto& known = page_.world.names;
    const std::string name =
        UpperCase(TextOf(names[0], std::char_traits<OLECHAR>::length(names[0])));
    const auto at = std::ranges::find(known, name) - known.begin();
    if (at == std::ssize(known)) known.push_back(name);
    *number = page_.world.first_number + static_cast<DISPID>(at);
    return S_OK;
}

STDMETHODIMP PageObject::Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                VARIANT* answer, EXCEPINFO* exception, UINT*) {
    const ComPtr<PageObject> self(this);
    const HRESULT fault = page_.world.faults.Next();
    if (fault == S_FALSE && answer) answer->vt = VT_NULL;
    if (fault == DISP_E_EXCEPTION) {
        exception->scode = E_FAIL;
        exception->bstrDescription = SysAllocString(L"駄目\r\n");
    }
    if (fault != S_OK) return fault;
    const auto& own = node_ == page_.root_.get() ? kDocumentMembers : kFormMembers;
    const auto member = own.find(static_cast<unsigned int>(number));
    const auto index = static_cast<std::size_t>(number - page_.world.first_number);
    if (member == own.end() && index >= page_.world.names.size()) return DISP_E_MEMBERNOTFOUND;
    const std::string name = member == own.end() ? page_.world.names[index] : member->second;
    const EventArguments arguments(*parameters);
    if (flags == DISPATCH_PROPERTYPUT) {
        const bool taken = node_ && page_.Write(*node_, name, arguments.At(0));
        return taken ? S_OK : DISP_E_MEMBERNOTFOUND;
    }
    Node* const hiding = node_ && member == own.end() ? page_.Hiding(*node_, name) : nullptr;
    const Variant value = hiding ? page_.Give(hiding) : read_(name, arguments);
    if (value.Failed()) return value.error();
    VARIANT shared = value.get();
    return answer ? VariantCopy(answer, &shared) : S_OK;
}

STDMETHODIMP PageObject::QueryService(REFGUID service, REFIID id, void** object) {
    *object = nullptr;
    if (const HRESULT fault = page_.world.faults.Next(); FAILED(fault)) return fault;
    if (service != IID_IWebBrowserApp || !page_.world.browser_of) return E_NOINTERFACE;
    return page_.world.browser_of(page_)->QueryInterface(id, object);
}

EventSource* PageObject::Source(REFIID id) {
    if (FAILED(page_.world.faults.Next())) return nullptr;
    const bool document = node_ == page_.root_.get() && id == __uuidof(HTMLDocumentEvents2);
    const bool form = node_ && node_->tag == "FORM" && id == __uuidof(HTMLFormElementEvents2);
    if (!document && !form) return nullptr;
    auto& source = page_.sources_[node_];
    if (!source) source = ComPtr<EventSource>(new EventSource(page_.world.faults, id));
    return source.get();
}

}  // namespace tamrin::test
