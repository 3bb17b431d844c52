#include "platform/explorer/explorer_frames.h"

#include "platform/explorer/explorer_element.h"
#include "platform/explorer/served_browser.h"

namespace tamrin {
namespace {

// The document of a window by way of the browser that shows it, which refuses nobody.
ComPtr<IDispatch> DocumentOfBrowser(const DispatchObject& window) {
    ComCalls& calls = window.type()->calls();
    ComPtr<IDispatch> document;
    const auto browser = BrowserServedBy(calls, window.object().get());
    if (browser) calls.Note(browser->get_Document(document.Out()), "get", "frame", "Document");
    return document;
}

// The page of a window inside a page, which `holder` holds.
std::shared_ptr<ExplorerDocument> PageOf(const DispatchObject& window, ExplorerDocument& outer,
                                         const Element& holder) {
    if (!window) return nullptr;
    auto document = window.Get("document").Object();
    if (!document) document = DocumentOfBrowser(window);
    auto inside = outer.pool().Page(std::move(document));
    if (inside) inside->SetHolder(holder);
    return inside;
}

// The elements that hold frames, in the order of the page.
std::vector<Element> Holders(ExplorerDocument& page) {
    std::vector<Element> holders;
    for (const char* tag : {"IFRAME", "FRAME"}) {
        auto found = page.getElementsByTagName(tag);
        // A page has one kind or the other: frames stand in no body.
        if (holders.empty()) holders = std::move(found);
    }
    return holders;
}

}  // namespace

std::vector<Frame> FramesOf(ExplorerDocument& page) {
    std::vector<Frame> frames;
    const DispatchObject window = page.Window();
    const double length = window ? window.Get("length").Number().value_or(0) : 0;
    if (length < 1) return frames;
    const std::vector<Element> holders = Holders(page);
    for (int i = 0; i < length; ++i) {
        const DispatchObject inner = page.ObjectOf(window.Call("item", Variant(i)), "window");
        Frame frame;
        const auto index = static_cast<std::size_t>(i);
        if (index < holders.size()) frame.element = holders[index];
        if (auto inside = PageOf(inner, page, frame.element))
            frame.document = Document(std::move(inside));
        frame.name = frame.element.name();
        if (frame.name.empty()) frame.name = frame.element.id();
        frames.push_back(std::move(frame));
    }
    return frames;
}

std::shared_ptr<ExplorerDocument> PageInside(const Element& frame) {
    ExplorerElement& element = *ExplorerElement::Of(frame);
    ExplorerDocument& outer = element.page();
    const auto window = outer.ObjectOf(element.object().Get("contentWindow"), "window");
    return PageOf(window, outer, frame);
}

}  // namespace tamrin
