#include "explorer/script_engine.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/explorer/com_object.h"
#include "platform/explorer/variant.h"

namespace tamrin::test {

class ScriptEngine::Site : public ComObject<IActiveScriptSite> {
public:
    std::map<std::wstring, ComPtr<IDispatch>> objects;
    std::string error;

    STDMETHODIMP GetLCID(LCID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetItemInfo(LPCOLESTR name, DWORD, IUnknown** item, ITypeInfo**) override {
        const auto found = objects.find(name);
        if (found == objects.end()) return TYPE_E_ELEMENTNOTFOUND;
        *item = found->second.get();
        (*item)->AddRef();
        return S_OK;
    }
    STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
    STDMETHODIMP OnScriptError(IActiveScriptError* e) override {
        EXCEPINFO info{};
        e->GetExceptionInfo(&info);
        DWORD context = 0;
        ULONG line = 0;
        LONG column = 0;
        e->GetSourcePosition(&context, &line, &column);
        error = TextOf(info.bstrDescription, SysStringLen(info.bstrDescription)) + " in line " +
                std::to_string(line + 1);
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
        return S_OK;
    }
    STDMETHODIMP OnEnterScript() override { return S_OK; }
    STDMETHODIMP OnLeaveScript() override { return S_OK; }
};

ScriptEngine::ScriptEngine() : site_(new Site) {
    CLSID id{};
    CLSIDFromProgID(L"JScript", &id);
    CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                     reinterpret_cast<void**>(script_.Out()));
    parse_ = script_.As<IActiveScriptParse>();
    script_->SetScriptSite(site_.get());
    parse_->InitNew();
    script_->SetScriptState(SCRIPTSTATE_CONNECTED);
}

ScriptEngine::~ScriptEngine() {
    script_->Close();
    site_->objects.clear();
}

void ScriptEngine::Run(std::string_view script) {
    const Bstr text(script);
    EXCEPINFO info{};
    const HRESULT done = parse_->ParseScriptText(text.get(), nullptr, nullptr, nullptr, 0, 0,
                                                 SCRIPTTEXT_ISVISIBLE, nullptr, &info);
    EXPECT_TRUE(SUCCEEDED(done)) << site_->error;
}

ComPtr<IDispatch> ScriptEngine::Global() {
    ComPtr<IDispatch> global;
    script_->GetScriptDispatch(nullptr, global.Out());
    return global;
}

void ScriptEngine::Add(const wchar_t* name, IDispatch* object) {
    site_->objects[name] = ComPtr<IDispatch>(object);
    script_->AddNamedItem(name, SCRIPTITEM_ISVISIBLE);
}

const std::string& ScriptEngine::error() const { return site_->error; }

}  // namespace tamrin::test
