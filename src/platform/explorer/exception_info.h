#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

#include "platform/explorer/variant.h"

namespace tamrin {

// What an object says of a failure of its own, with what it holds freed.
class ExceptionInfo {
public:
    ExceptionInfo() = default;
    ~ExceptionInfo() {
        SysFreeString(info_.bstrSource);
        SysFreeString(info_.bstrDescription);
        SysFreeString(info_.bstrHelpFile);
    }
    ExceptionInfo(const ExceptionInfo&) = delete;
    ExceptionInfo& operator=(const ExceptionInfo&) = delete;

    EXCEPINFO* Out() { return &info_; }

    // The failure that it stands for.
    HRESULT Result() {
        if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
        return FAILED(info_.scode) ? info_.scode : DISP_E_EXCEPTION;
    }
    std::string Text() const {
        return TextOf(info_.bstrDescription, SysStringLen(info_.bstrDescription));
    }

private:
    EXCEPINFO info_{};
};

}  // namespace tamrin
