#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/document.h"
#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/page_pool.h"

namespace tamrin {

class PageConnection;
struct EventSnapshot;

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

    // For the rest of the back end.

    // The page's own object; null once the page is gone.
    const DispatchObject& object() const { return document_; }
    // Releases all objects of the page, because the window shows another one or is closed.
    void SetGone();
    PagePool& pool() const { return *pool_; }

    // An object of the page. All objects of one kind share the numbers of their members, except
    // forms, whose controls can hide members.
    DispatchObject Object(ComPtr<IDispatch> object, std::string_view kind);
    DispatchObject ObjectOf(const Variant& value, std::string_view kind) {
        return Object(value.Object(), kind);
    }
    // The element in an answer, or the first of a collection; null for neither.
    Element ElementOf(const Variant& value);
    // The elements of a collection.
    std::vector<Element> Elements(const Variant& collection);
    // The page's window; null when it has none.
    DispatchObject Window();
    // Whether the document's mode is 9 or later: its events follow the standards.
    bool IsStandard();
    // Whether the document's mode is 8 or later: attributes are answered as written in the page.
    // Older documents answer properties.
    bool HasWrittenAttributes();
    // Whether an element is still in the page.
    bool Holds(const DispatchObject& element);

    // The element that holds the page when it is a frame's; null for the top page.
    const Element& holder() const { return holder_; }
    void SetHolder(Element holder) { holder_ = std::move(holder); }
    // Whether this is a page; a browser also shows folders and other programs' documents.
    bool IsHtml() { return !document_.Get("documentElement").Failed(); }

    // The snapshot of the event whose handler is running; null when none is.
    EventSnapshot* snapshot() const { return snapshot_; }
    void SetSnapshot(EventSnapshot* snapshot) { snapshot_ = snapshot; }
    // Notes the active element, its parent and form, and on demand the form's default button.
    std::shared_ptr<EventSnapshot> TakeSnapshot(bool with_default_button);

    std::vector<PageConnection*>& connections() { return connections_; }

private:
    // The control of a form with that name or id; null for none.
    Element InForm(const Element& form, const Variant& name);
    int DocumentMode();

    std::shared_ptr<PagePool> pool_;
    std::map<std::string, std::shared_ptr<ObjectType>, std::less<>> types_;
    DispatchObject document_;
    int mode_ = 0;         // 0 when it is not known
    DispatchObject root_;  // the root element when an element was looked for last
    Element holder_;
    EventSnapshot* snapshot_ = nullptr;
    std::vector<PageConnection*> connections_;
};

// The page that a frame's element shows; null when it cannot be reached. Keeps the element itself:
// an event during its calls can release the caller's.
std::shared_ptr<ExplorerDocument> PageInside(const Element& frame);

}  // namespace tamrin
