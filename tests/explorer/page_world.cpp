#include "explorer/page_world.h"

#include <fstream>
#include <sstream>

#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/event_sink.h"

namespace tamrin::test {
namespace {

// The events' numbers, as the browser's type library gives them.
struct EventNumber {
    std::string_view name;
    DISPID number;
};
constexpr EventNumber kEvents[] = {
    {"onclick", -600},   {"onkeypress", -603}, {"onsubmit", 1007}, {"onbeforedeactivate", 1034},
    {"onfocusin", 1048},
};

std::string ReadScript(const char* name) {
    std::ifstream file(std::string(TAMRIN_SOURCE_DIR "/tests/explorer/") + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

DispatchObject Named(const ComPtr<IDispatch>& object) {
    static ComCalls calls;
    return {object, std::make_shared<ObjectType>(calls, "script")};
}

}  // namespace

// What the scripts reach of the tests: host.fire(object, name, event), host.fetch(url),
// host.navigate(document, url) and host.box(kind).
class PageWorld::Host : public DispatchDouble<IDispatch> {
public:
    explicit Host(PageWorld& world) : world_(world) {}

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id == IID_IUnknown || id == IID_IDispatch) return Give<IDispatch>(this, object);
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* number) override {
        const std::wstring_view name(names[0]);
        *number = name == L"fire"    ? kFire
                  : name == L"fetch" ? kFetch
                  : name == L"box"   ? kBox
                                     : kNavigate;
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* answer,
                        EXCEPINFO*, UINT*) override {
        const EventArguments arguments(*parameters);
        if (member == kFetch) {
            const auto page =
                world_.fetch ? world_.fetch(arguments.At(0).Text().value_or("")) : std::nullopt;
            Variant text = page ? Variant(std::string_view(*page)) : Variant();
            if (answer) VariantCopy(answer, const_cast<VARIANT*>(&text.get()));
            return S_OK;
        }
        if (member == kNavigate) {
            if (world_.navigate)
                world_.navigate(arguments.At(0).Object().get(),
                                arguments.At(1).Text().value_or(""));
            return S_OK;
        }
        if (member == kBox) {
            const bool yes = !world_.box || world_.box(arguments.At(0).Text().value_or(""));
            if (answer) {
                answer->vt = VT_BOOL;
                answer->boolVal = yes ? VARIANT_TRUE : VARIANT_FALSE;
            }
            return S_OK;
        }
        const auto object = arguments.At(0).Object();
        const auto name = arguments.At(1).Text();
        const auto event = arguments.At(2).Object();
        bool goes_on = true;
        for (const EventNumber& known : kEvents) {
            if (known.name == name)
                goes_on = world_.objects.Fire(object.get(), known.number, event.get());
        }
        if (answer) {
            answer->vt = VT_BOOL;
            answer->boolVal = goes_on ? VARIANT_TRUE : VARIANT_FALSE;
        }
        return S_OK;
    }

private:
    enum Member : DISPID { kFire = 1, kFetch, kNavigate, kBox };
    PageWorld& world_;
};

PageWorld::PageWorld() : host_(new Host(*this)) {
    engine_.Add(L"host", host_.get());
    engine_.Run(ReadScript("dom.js"));
    engine_.Run(ReadScript("page.js"));
    engine_.Run("var site = {}, page, answer; function el(id) { return page.getElementById(id); }");
}

PageWorld::~PageWorld() = default;

void PageWorld::Serve(std::string_view address, std::string_view html) {
    engine_.Run("site[" + Quoted(address) + "] = " + Quoted(html));
}

ComPtr<IDispatch> PageWorld::Open(std::string_view html, int mode, std::string_view url) {
    objects.null_is_object = mode < 9;
    engine_.Run("page = makePage(" + Quoted(url) + "," + Quoted(html) + "," + std::to_string(mode) +
                ", site)");
    return objects.Wrap(Named(engine_.Global()).Get("page").Object().get());
}

void PageWorld::Run(std::string_view script) { engine_.Run(script); }

std::string PageWorld::Ask(std::string_view expression) {
    engine_.Run("answer = String(" + std::string(expression) + ")");
    return Named(engine_.Global()).Text("answer");
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        if (c == '\n') {
            quoted += "\\n";
        } else if (c == '\r') {
            quoted += "\\r";
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

}  // namespace tamrin::test
