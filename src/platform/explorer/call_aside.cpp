#include "platform/explorer/call_aside.h"

#include <combaseapi.h>

#include <memory>
#include <thread>
#include <vector>

#include "platform/explorer/com_ptr.h"
#include "platform/explorer/variant.h"

namespace tamrin {
namespace {

// How often the limits are checked.
constexpr DWORD kStepMs = 50;

// An object on its way to another thread.
class MarshaledObject {
public:
    // Stays empty when marshaling fails, and for a null pointer.
    explicit MarshaledObject(IDispatch* object) {
        if (object) CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object, stream_.Out());
    }
    bool empty() const { return !stream_; }
    // The object as the calling thread may use it. Only once.
    ComPtr<IDispatch> Unmarshal() {
        ComPtr<IDispatch> object;
        if (stream_)
            CoUnmarshalInterface(stream_.get(), IID_IDispatch,
                                 reinterpret_cast<void**>(object.Out()));
        stream_ = nullptr;
        return object;
    }

private:
    ComPtr<IStream> stream_;
};

// A call, shared by both threads; it ends with the one that is done last.
struct PendingCall {
    PendingCall(IDispatch& callee, DISPID number, const DISPPARAMS& parameters)
        : object(&callee), method(number), done(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        for (UINT i = 0; i < parameters.cArgs; ++i) {
            const VARIANT& argument = parameters.rgvarg[i];
            const bool is_object = argument.vt == VT_DISPATCH;
            objects.emplace_back(is_object ? argument.pdispVal : nullptr);
            values.push_back(is_object ? Variant() : Variant(argument));
        }
    }
    ~PendingCall() { CloseHandle(done); }
    PendingCall(const PendingCall&) = delete;
    PendingCall& operator=(const PendingCall&) = delete;

    // Makes the call. Runs on the new thread.
    void Run() {
        const HRESULT entered = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        result = SUCCEEDED(entered) ? Call() : entered;
        values.clear();
        SetEvent(done);
        if (SUCCEEDED(entered)) CoUninitialize();
    }

    MarshaledObject object;
    DISPID method;
    std::vector<MarshaledObject> objects;  // empty for an argument that is not an object
    std::vector<Variant> values;
    HANDLE done;
    HRESULT result = E_FAIL;

private:
    HRESULT Call() {
        const auto callee = object.Unmarshal();
        std::vector<VARIANT> arguments;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (!objects[i].empty()) values[i] = Variant(objects[i].Unmarshal().get());
            arguments.push_back(values[i].get());
        }
        DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        if (!callee) return E_NOINTERFACE;
        Variant answer;
        ExceptionInfo exception;
        const HRESULT called =
            callee->Invoke(method, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                           answer.Out(), exception.Out(), nullptr);
        return called == DISP_E_EXCEPTION ? exception.Error() : called;
    }
};

}  // namespace

HRESULT CallAside(const ComCalls& calls, IDispatch& object, DISPID method,
                  const DISPPARAMS& parameters) {
    const auto call = std::make_shared<PendingCall>(object, method, parameters);
    if (call->object.empty()) return E_NOINTERFACE;
    std::thread([call] { call->Run(); }).detach();
    const DWORD start = GetTickCount();
    for (;;) {
        DWORD index = 0;
        const HRESULT waited = CoWaitForMultipleHandles(0, kStepMs, 1, &call->done, &index);
        if (waited == S_OK) return call->result;
        if (waited != RPC_S_CALLPENDING) return waited;
        if (calls.MustEnd(GetTickCount() - start)) return RPC_E_CALL_CANCELED;
    }
}

}  // namespace tamrin
