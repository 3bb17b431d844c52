#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/document.h"
#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/page_moment.h"
#include "platform/explorer/page_pool.h"

namespace tamrin {

class PageConnection;

// One page of a browser window, or of a frame in it.
class ExplorerDocument : public DocumentObject,
                         public std::enable_shared_from_this<ExplorerDocument> {
public:
    ExplorerDocument(std::shared_ptr<PagePool> pool, ComPtr<IDispatch> document);

    std::string url() override;
    bool hasFocus() override;
    Element activeElement() override;
    std::vector<Element> getElementsByTagName(std::string_view tag) override;
    NamedElements Named(std::string_view name) override;
    std::vector<Element> links() override;
    std::vector<Frame> frames() override;
    std::unique_ptr<Connection> Connect(DocumentEvents& events) override;

    // For the elements and the browser of this page.

    // The page's own object; null once the page is gone.
    const DispatchObject& object() const { return document_; }
    // The window shows another page, or is closed: gives everything back to the browser.
    void SetGone();
    PagePool& pool() const { return *pool_; }

    // An object of the page of some kind. All of one kind share the numbers of their members, but
    // for a form, whose controls may hide its members by their names.
    DispatchObject Object(ComPtr<IDispatch> object, std::string_view kind);
    DispatchObject ObjectOf(const Variant& value, std::string_view kind) {
        return Object(value.Object(), kind);
    }
    // The element of an answer, null for none. Of several elements the first.
    Element ElementOf(const Variant& value);
    // The items of a collection.
    std::vector<Element> Elements(const Variant& collection);
    // Its window, null when it has none.
    DispatchObject Window();
    // Whether the document answers as the standards say, also for events.
    bool IsStandard();
    // Whether attributes are answered as the page writes them; documents of old answer properties.
    bool HasWrittenAttributes();
    // Whether an element is still in the page.
    bool Holds(const DispatchObject& element);

    // The element that holds the page where it is a frame's, null for the top page.
    const Element& holder() const { return holder_; }
    void SetHolder(Element holder) { holder_ = std::move(holder); }
    // Whether this is a page; a browser also shows folders and other programs' documents.
    bool IsHtml() { return !document_.Get("documentElement").Failed(); }

    // What the event that is being told says of this page; null when none is.
    PageMoment* moment() const { return moment_; }
    // Notes the active element, what belongs to it, and on demand the button that Enter presses.
    std::shared_ptr<PageMoment> TakeMoment(bool with_default_button);
    void SetMoment(PageMoment* moment) { moment_ = moment; }

    std::vector<PageConnection*>& connections() { return connections_; }

private:
    // The control of a form that answers to a name, null for none.
    Element InForm(const Element& form, const Variant& name);
    int DocumentMode();

    std::shared_ptr<PagePool> pool_;
    std::map<std::string, std::shared_ptr<ObjectType>, std::less<>> types_;
    DispatchObject document_;
    std::optional<int> mode_;
    DispatchObject root_;
    Element holder_;
    PageMoment* moment_ = nullptr;
    std::vector<PageConnection*> connections_;
};

}  // namespace tamrin
