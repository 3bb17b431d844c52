#include "platform/explorer/call_aside.h"

#include <combaseapi.h>

#include <memory>
#include <thread>
#include <vector>

#include "platform/explorer/com_ptr.h"
#include "platform/explorer/exception_info.h"
#include "platform/explorer/variant.h"

namespace tamrin {
namespace {

// How often it is asked whether to wait on.
constexpr DWORD kStepMs = 50;

// An object on its way to another thread.
class Parcel {
public:
    // Nothing is packed where that fails, and for none.
    explicit Parcel(IDispatch* object) {
        if (object) CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object, stream_.Out());
    }
    bool packed() const { return static_cast<bool>(stream_); }
    // On the other thread, once.
    ComPtr<IDispatch> Unpack() {
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

// What both threads know of a call; whoever is done last lets go of it.
struct Errand {
    Errand(IDispatch& callee, DISPID number, const DISPPARAMS& parameters)
        : object(&callee), method(number), done(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        for (UINT i = 0; i < parameters.cArgs; ++i) {
            const VARIANT& argument = parameters.rgvarg[i];
            const bool is_object = argument.vt == VT_DISPATCH;
            objects.emplace_back(is_object ? argument.pdispVal : nullptr);
            values.push_back(is_object ? Variant() : Variant(argument));
        }
    }
    ~Errand() { CloseHandle(done); }
    Errand(const Errand&) = delete;
    Errand& operator=(const Errand&) = delete;

    // On the thread of its own.
    void Run() {
        // It must not end the program, and nobody else hears of it.
        const HRESULT entered = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        result = SUCCEEDED(entered) ? Call() : entered;
        values.clear();
        SetEvent(done);
        if (SUCCEEDED(entered)) CoUninitialize();
    }

    Parcel object;
    DISPID method;
    std::vector<Parcel> objects;  // empty where the argument is none
    std::vector<Variant> values;
    HANDLE done;
    HRESULT result = E_FAIL;

private:
    HRESULT Call() {
        const auto callee = object.Unpack();
        std::vector<VARIANT> arguments;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (objects[i].packed()) values[i] = Variant(objects[i].Unpack().get());
            arguments.push_back(values[i].get());
        }
        DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        if (!callee) return E_NOINTERFACE;
        Variant answer;
        ExceptionInfo exception;
        const HRESULT called =
            callee->Invoke(method, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                           answer.Out(), exception.Out(), nullptr);
        return called == DISP_E_EXCEPTION ? exception.Result() : called;
    }
};

}  // namespace

HRESULT CallAside(const ComCalls& calls, IDispatch& object, DISPID method,
                  const DISPPARAMS& parameters) {
    const auto errand = std::make_shared<Errand>(object, method, parameters);
    if (!errand->object.packed()) return E_NOINTERFACE;
    std::thread([errand] { errand->Run(); }).detach();
    const DWORD start = GetTickCount();
    for (;;) {
        DWORD index = 0;
        const HRESULT waited = CoWaitForMultipleHandles(0, kStepMs, 1, &errand->done, &index);
        if (waited == S_OK) return errand->result;
        if (waited != RPC_S_CALLPENDING) return waited;
        if (calls.MustEnd(GetTickCount() - start)) return RPC_E_CALL_CANCELED;
    }
}

}  // namespace tamrin
