#include "explorer/page_object.h"

#include <algorithm>
#include <cwctype>

namespace tamrin::test {
namespace {

// How the script engine answers an error that its site has been told of.
constexpr auto kScriptError = static_cast<HRESULT>(0x80020101);

std::wstring Capitals(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(), ::towupper);
    return text;
}

// Reads a member of a script's object that is text; "" when it is none.
std::wstring TextMember(IDispatch* script, const wchar_t* name) {
    OLECHAR* names[] = {const_cast<wchar_t*>(name)};
    DISPID number = 0;
    if (FAILED(script->GetIDsOfNames(IID_NULL, names, 1, 0, &number))) return {};
    DISPPARAMS none{};
    VARIANT value{};
    script->Invoke(number, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
    const std::wstring text = value.vt == VT_BSTR ? std::wstring(value.bstrVal) : std::wstring();
    VariantClear(&value);
    return text;
}

}  // namespace

const IID PageObject::kId = {
    0x5B1D0C5E, 0x5C1E, 0x4D0A, {0x9A, 0x71, 0x3C, 0x44, 0x8E, 0x0D, 0x21, 0x77}};

ComPtr<IDispatch> PageObjects::Wrap(IDispatch* script) {
    if (!script) return nullptr;
    const auto identity = ComPtr<IDispatch>(script).As<IUnknown>();
    const auto found = alive.find(identity.get());
    if (found != alive.end()) return ComPtr<IDispatch>(found->second);
    return ComPtr<IDispatch>(new PageObject(*this, script));
}

void PageObjects::WrapValue(VARIANT& value, bool method) {
    if (value.vt == VT_NULL && method && null_is_object) {
        value.vt = VT_DISPATCH;
        value.pdispVal = nullptr;
    }
    if (value.vt != VT_DISPATCH || !value.pdispVal) return;
    const auto wrapped = Wrap(value.pdispVal);
    value.pdispVal->Release();
    value.pdispVal = wrapped.get();
    value.pdispVal->AddRef();
}

ComPtr<IDispatch> PageObjects::Unwrap(IDispatch* object) {
    PageObject* page_object = nullptr;
    if (!object ||
        FAILED(object->QueryInterface(PageObject::kId, reinterpret_cast<void**>(&page_object))))
        return ComPtr<IDispatch>(object);
    const auto script = page_object->script();
    page_object->Release();
    return ComPtr<IDispatch>(script.get());
}

DISPID PageObjects::NumberOf(std::wstring name) {
    name = Capitals(std::move(name));
    const auto number = static_cast<DISPID>(3000001 + numbers.size());
    const auto [at, added] = numbers.try_emplace(name, number);
    if (added) names.emplace(number, name);
    return at->second;
}

bool PageObjects::Fire(IDispatch* script, DISPID event, IDispatch* script_event) {
    const auto identity = ComPtr<IDispatch>(script).As<IUnknown>();
    const auto found = alive.find(identity.get());
    if (found == alive.end()) return true;
    const ComPtr<IDispatch> object(found->second);
    const auto argument = Wrap(script_event);
    VARIANT value{};
    value.vt = VT_DISPATCH;
    value.pdispVal = argument.get();
    return found->second->source().Fire(event, {value});
}

PageObject::PageObject(PageObjects& objects, IDispatch* script)
    : EventContainer(EventsOf(script)),
      objects_(objects),
      script_(ComPtr<IDispatch>(script).As<IDispatchEx>()),
      identity_(ComPtr<IDispatch>(script).As<IUnknown>()) {
    objects_.alive.emplace(identity_.get(), this);
}

PageObject::~PageObject() { objects_.alive.erase(identity_.get()); }

const IID& PageObject::EventsOf(IDispatch* script) {
    const std::wstring kind = TextMember(script, L"__kind");
    if (kind == L"document") return __uuidof(HTMLDocumentEvents2);
    return kind == L"form" ? __uuidof(HTMLFormElementEvents2) : IID_NULL;
}

std::wstring PageObject::Property(const wchar_t* name) const {
    return TextMember(script_.get(), name);
}

STDMETHODIMP PageObject::QueryInterface(REFIID id, void** object) {
    if (id == IID_IUnknown || id == IID_IDispatch) return Give<IDispatch>(this, object);
    if (id == IID_IHTMLDocument && Property(L"__kind") == L"document")
        return Give<IHTMLDocument>(this, object);
    if (id == kId) return Give<PageObject>(this, object);
    if (id == IID_IConnectionPointContainer && source().interface_id() != IID_NULL)
        return Give<IConnectionPointContainer>(this, object);
    if (id == IID_IServiceProvider && Property(L"__kind") == L"window")
        return Give<IServiceProvider>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

bool PageObject::Has(const std::wstring& name, DISPID* number) const {
    DISPID found = 0;
    BSTR text = SysAllocString(name.c_str());
    const HRESULT done = script_->GetDispID(text, fdexNameCaseInsensitive, &found);
    SysFreeString(text);
    if (number) *number = found;
    return SUCCEEDED(done);
}

STDMETHODIMP PageObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* number) {
    ++objects_.calls;
    const std::wstring name = Capitals(names[0]);
    *number = DISPID_UNKNOWN;
    const bool known = Has(name) || Has(L"get_" + name) || Has(L"put_" + name);
    if (!known || Fault(name) == DISP_E_UNKNOWNNAME) return DISP_E_UNKNOWNNAME;
    const DISPID own = OwnNumber(name);
    *number = own && !IsHidden(name) ? own : objects_.NumberOf(name);
    return S_OK;
}

// The numbers of the type library, by which a form and a document know their own members whatever
// the page calls its things.
struct Own {
    const wchar_t* name;
    DISPID number;
};
static constexpr Own kFormMembers[] = {
    {L"ID", -2147417110},           {L"NAME", -2147418112},
    {L"TAGNAME", -2147417108},      {L"PARENTELEMENT", -2147418104},
    {L"INNERTEXT", -2147417085},    {L"OUTERHTML", -2147417084},
    {L"SOURCEINDEX", -2147417088},  {L"ELEMENTS", 1005},
    {L"GETATTRIBUTE", -2147417610}, {L"GETELEMENTSBYTAGNAME", -2147417027},
    {L"CLICK", -2147417079},        {L"GETBOUNDINGCLIENTRECT", -2147417067},
};
static constexpr Own kDocumentMembers[] = {
    {L"URL", 1025},
    {L"ACTIVEELEMENT", 1005},
    {L"DOCUMENTELEMENT", 1075},
    {L"FORMS", 1010},
    {L"LINKS", 1009},
    {L"GETELEMENTBYID", 1088},
    {L"PARENTWINDOW", 1034},
    {L"GETELEMENTSBYNAME", 1086},
    {L"GETELEMENTSBYTAGNAME", 1087},
    {L"READYSTATE", 1018},
    {L"ELEMENTFROMPOINT", 1068},
};

std::span<const Own> PageObject::OwnMembers() const {
    const std::wstring kind = Property(L"__kind");
    if (kind == L"form") return kFormMembers;
    return kind == L"document" ? std::span<const Own>(kDocumentMembers) : std::span<const Own>();
}

DISPID PageObject::OwnNumber(const std::wstring& name) const {
    for (const Own& member : OwnMembers()) {
        if (member.name == name) return member.number;
    }
    return 0;
}

std::wstring PageObject::OwnName(DISPID number) const {
    for (const Own& member : OwnMembers()) {
        if (member.number == number) return member.name;
    }
    return {};
}

bool PageObject::IsHidden(const std::wstring& name) const {
    return Has(L"__own_" + name) || Has(L"get___own_" + name);
}

HRESULT PageObject::Fault(const std::wstring& name) const {
    if (Property(L"__denied").find(L"|" + name + L"|") != std::wstring::npos) return E_ACCESSDENIED;
    for (const std::wstring& key : {name, Property(L"__tag") + L"." + name}) {
        const auto fault = objects_.faults.find(key);
        if (fault != objects_.faults.end()) return fault->second;
    }
    return S_OK;
}

STDMETHODIMP PageObject::Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                VARIANT* answer, EXCEPINFO* exception, UINT*) {
    ++objects_.calls;
    const ComPtr<IDispatch> self(this);
    std::wstring name = OwnName(number);
    const bool own = !name.empty();
    if (!own) {
        const auto known = objects_.names.find(number);
        if (known == objects_.names.end()) return DISP_E_MEMBERNOTFOUND;
        name = known->second;
    }
    if (const HRESULT fault = Fault(name); fault != S_OK) {
        if (fault == S_FALSE && answer) answer->vt = VT_NULL;
        return fault;
    }
    if (own && IsHidden(name)) name.insert(0, L"__own_");
    const bool puts = (flags & DISPATCH_PROPERTYPUT) != 0;
    bool method = (flags & DISPATCH_METHOD) != 0;
    if (!method && Has((puts ? L"put_" : L"get_") + name)) {
        name.insert(0, puts ? L"put_" : L"get_");
        method = true;
    } else if (!Has(name)) {
        return DISP_E_MEMBERNOTFOUND;
    }
    VARIANT value{};
    const HRESULT done = Run(name, method ? DISPATCH_METHOD : flags, parameters, &value);
    const bool of_text = name == L"GETATTRIBUTE";
    if (SUCCEEDED(done)) objects_.WrapValue(value, method && !of_text);
    if (answer && SUCCEEDED(done)) {
        *answer = value;
    } else {
        VariantClear(&value);
    }
    if (done != kScriptError || !exception) return done;
    // What a page raises, the browser tells as an exception.
    *exception = EXCEPINFO{};
    exception->scode = E_FAIL;
    exception->bstrDescription = SysAllocString(L"スクリプトのエラー");
    return DISP_E_EXCEPTION;
}

HRESULT PageObject::Run(const std::wstring& name, WORD flags, DISPPARAMS* parameters,
                        VARIANT* answer) const {
    DISPID number = 0;
    Has(name, &number);
    std::vector<VARIANT> values(parameters->rgvarg, parameters->rgvarg + parameters->cArgs);
    std::vector<ComPtr<IDispatch>> kept;
    for (VARIANT& value : values) {
        if (value.vt != VT_DISPATCH) continue;
        kept.push_back(PageObjects::Unwrap(value.pdispVal));
        value.pdispVal = kept.back().get();
    }
    DISPPARAMS passed = *parameters;
    passed.rgvarg = values.data();
    if (flags == DISPATCH_METHOD) passed.cNamedArgs = 0;
    return script_->InvokeEx(number, LOCALE_USER_DEFAULT, flags, &passed, answer, nullptr, nullptr);
}

STDMETHODIMP PageObject::QueryService(REFGUID service, REFIID id, void** object) {
    *object = nullptr;
    if (service != IID_IWebBrowserApp || !objects_.browser_of) return E_NOINTERFACE;
    const auto browser = objects_.browser_of(script_.get());
    return browser ? browser->QueryInterface(id, object) : E_NOINTERFACE;
}

}  // namespace tamrin::test
