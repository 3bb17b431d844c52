#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "explorer/page_object.h"
#include "explorer/script_engine.h"

namespace tamrin::test {

// Pages that answer as the browser's objects, and their user.
class PageWorld {
public:
    PageWorld();
    ~PageWorld();
    PageWorld(const PageWorld&) = delete;
    PageWorld& operator=(const PageWorld&) = delete;

    PageObjects objects;
    // Answers the page of an address that nobody served, nothing for none.
    std::function<std::optional<std::string>(const std::string& url)> fetch;
    // Told when a page's script object is to be left for an address.
    std::function<void(IDispatch* script_document, const std::string& url)> navigate;

    // Shows a box of a page, "alert" or "confirm", and answers how it is answered; none for yes.
    std::function<bool(const std::string& kind)> box;

    // A page that a frame shows, by its address.
    void Serve(std::string_view address, std::string_view html);
    // Makes a page: its document, as a program is given it. `mode` is the document mode: 11 the
    // newest, 5 to 7 those of old.
    ComPtr<IDispatch> Open(std::string_view html, int mode = 11,
                           std::string_view url = "http://site/dir/page");

    // Runs a script that knows the last page as `page`, its elements by el("id"), and `user`.
    void Run(std::string_view script);
    // What an expression of such a script answers, as text.
    std::string Ask(std::string_view expression);

private:
    class Host;
    ComPtr<Host> host_;
    ScriptEngine engine_;
};

// Text as a literal of a script.
std::string Quoted(std::string_view text);

}  // namespace tamrin::test
