#pragma once

#include <windows.h>

#include <activscp.h>
#include <dispex.h>

#include <string>
#include <string_view>

#include "platform/explorer/com_ptr.h"

namespace tamrin::test {

// The platform's own script engine, which makes objects whose members are reached as those of a
// page are. Wants an apartment on this thread.
class ScriptEngine {
public:
    ScriptEngine();
    ~ScriptEngine();
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;

    // Runs statements; an error fails the test with its text.
    void Run(std::string_view script);

    // The object that holds what the scripts declare.
    ComPtr<IDispatch> Global();

    // Has scripts know an object by a name, which they use like a variable of their own.
    void Add(const wchar_t* name, IDispatch* object);

    // The last error raised by a script.
    const std::string& error() const;

private:
    class Site;
    ComPtr<Site> site_;
    ComPtr<IActiveScript> script_;
    ComPtr<IActiveScriptParse> parse_;
};

}  // namespace tamrin::test
