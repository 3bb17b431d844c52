#include "platform/explorer/explorer_document.h"

#include <utility>

#include "platform/explorer/browser_objects.h"
#include "platform/explorer/explorer_element.h"
#include "platform/explorer/page_events.h"

namespace tamrin {
namespace {

// The page of a frame's window. The window itself denies access to a page of another origin.
std::shared_ptr<ExplorerDocument> PageOf(const DispatchObject& window, ExplorerDocument& outer,
                                         const Element& holder) {
    if (!window) return nullptr;
    auto document = window.Get("document").Object();
    if (!document) document = BrowserServedBy(window).Get("Document").Object();
    auto inside = outer.pool().Page(std::move(document));
    if (inside) inside->SetHolder(holder);
    return inside;
}

// The elements that hold frames, in document order.
std::vector<Element> FrameElements(ExplorerDocument& page) {
    std::vector<Element> elements = page.getElementsByTagName("IFRAME");
    // A page has one kind or the other: a frameset replaces the body.
    return elements.empty() ? page.getElementsByTagName("FRAME") : elements;
}

}  // namespace

std::shared_ptr<ExplorerDocument> PageInside(const Element& frame) {
    const ExplorerElement& element = *ExplorerElement::Of(frame);
    ExplorerDocument& outer = element.page();
    const auto window = outer.ObjectOf(element.object().Get("contentWindow"), "window");
    return PageOf(window, outer, frame);
}

ExplorerDocument::ExplorerDocument(std::shared_ptr<PagePool> pool, ComPtr<IDispatch> document)
    : pool_(std::move(pool)), document_(Object(std::move(document), "document")) {}

std::string ExplorerDocument::url() { return snapshot_ ? snapshot_->url : document_.Text("URL"); }

bool ExplorerDocument::hasFocus() { return snapshot_ || document_.Call("hasFocus").Truth(); }

Element ExplorerDocument::activeElement() {
    if (!snapshot_) {
        return ElementOf(document_.Get("activeElement"));
    }
    const auto& active = snapshot_->elements[EventSnapshot::kActive];
    return active ? active->element : Element();
}

std::vector<Element> ExplorerDocument::getElementsByTagName(std::string_view tag) {
    return Elements(document_.Call("getElementsByTagName", Variant(tag)));
}

NamedElements ExplorerDocument::Named(std::string_view name) {
    NamedElements named;
    if (name.empty()) return named;  // some documents answer the elements without a name
    const Variant key(name);
    named.by_name = Elements(document_.Call("getElementsByName", key));
    named.by_id = ElementOf(document_.Call("getElementById", key));
    for (const Element& form : Elements(document_.Get("forms"))) {
        if (Element element = InForm(form, key)) named.in_forms.push_back(std::move(element));
    }
    return named;
}

Element ExplorerDocument::InForm(const Element& form, const Variant& name) {
    const DispatchObject& object = ExplorerElement::Of(form)->object();
    const DispatchObject elements = ObjectOf(object.Get("elements"), "collection");
    return ElementOf(elements.Call("item", name));
}

std::vector<Element> ExplorerDocument::links() { return Elements(document_.Get("links")); }

std::vector<Frame> ExplorerDocument::frames() {
    std::vector<Frame> frames;
    const DispatchObject window = Window();
    const double length = window ? window.Get("length").Number().value_or(0) : 0;
    if (length < 1) return frames;
    const std::vector<Element> elements = FrameElements(*this);
    for (std::size_t i = 0; static_cast<double>(i) < length; ++i) {
        const Variant index(static_cast<int>(i));
        Frame frame;
        if (i < elements.size()) frame.element = elements[i];
        const DispatchObject inner = ObjectOf(window.Call("item", index), "window");
        if (auto inside = PageOf(inner, *this, frame.element))
            frame.document = Document(std::move(inside));
        frame.name = frame.element.name();
        if (frame.name.empty()) frame.name = frame.element.id();
        frames.push_back(std::move(frame));
    }
    return frames;
}

std::unique_ptr<Connection> ExplorerDocument::Connect(DocumentEvents& events) {
    return PageConnection::Make(shared_from_this(), events);
}

std::shared_ptr<EventSnapshot> ExplorerDocument::TakeSnapshot(bool with_default_button) {
    auto taken = std::make_shared<EventSnapshot>();
    // Reads the page itself, also while the handler of an earlier event runs.
    EventSnapshot* const current = std::exchange(snapshot_, nullptr);
    taken->url = url();
    const auto add = [&taken](EventSnapshot::Role role, const Element& element) {
        if (element) taken->elements[role] = ExplorerElement::Of(element)->TakeSnapshot();
    };
    const Element active = activeElement();
    add(EventSnapshot::kActive, active);
    add(EventSnapshot::kParent, active.parentElement());
    add(EventSnapshot::kForm, active.form());
    if (with_default_button) add(EventSnapshot::kDefaultButton, active.DefaultButton());
    snapshot_ = current;
    return taken;
}

void ExplorerDocument::SetGone() {
    for (PageConnection* connection : connections_) connection->Close();
    document_ = DispatchObject();
    root_ = DispatchObject();
    holder_ = Element();
}

DispatchObject ExplorerDocument::Object(ComPtr<IDispatch> object, std::string_view kind) {
    if (!object) return {};
    if (kind == "FORM")
        return {std::move(object), std::make_shared<ObjectType>(pool_->calls(), "FORM")};
    const auto known = types_.find(kind);
    if (known != types_.end()) return {std::move(object), known->second};
    auto type = std::make_shared<ObjectType>(pool_->calls(), std::string(kind));
    types_.emplace(kind, type);
    return {std::move(object), std::move(type)};
}

Element ExplorerDocument::ElementOf(const Variant& value) {
    auto object = value.Object();
    if (!object) return {};
    // All elements have a tagName, under the same number; collections have none.
    const DispatchObject unknown = Object(object, "element");
    const Variant tag = unknown.Get("tagName");
    // A control named "tagName" hides the member of its form.
    if (tag.IsObject()) return ExplorerElement::Make(shared_from_this(), object, "FORM");
    if (const auto text = tag.Text())
        return ExplorerElement::Make(shared_from_this(), object, *text);
    const DispatchObject collection = Object(std::move(object), "collection");
    const Variant first = collection.Call("item", Variant(0));
    return first.Object() ? ElementOf(first) : Element();
}

std::vector<Element> ExplorerDocument::Elements(const Variant& collection) {
    const DispatchObject items = ObjectOf(collection, "collection");
    const double length = items ? items.Get("length").Number().value_or(0) : 0;
    std::vector<Element> elements;
    for (int i = 0; i < length; ++i) {
        if (Element element = ElementOf(items.Call("item", Variant(i))))
            elements.push_back(std::move(element));
    }
    return elements;
}

DispatchObject ExplorerDocument::Window() {
    if (!document_) return {};
    // Old documents do not know the first name, the newest ones not the second.
    for (const char* name : {"defaultView", "parentWindow"}) {
        if (auto window = ObjectOf(document_.Get(name), "window")) return window;
    }
    return {};
}

int ExplorerDocument::DocumentMode() {
    // 0 is no mode yet: the page is still loading, or did not answer.
    if (mode_ == 0) mode_ = static_cast<int>(document_.Get("documentMode").Number().value_or(0));
    return mode_;
}

bool ExplorerDocument::IsStandard() { return DocumentMode() >= 9; }

bool ExplorerDocument::HasWrittenAttributes() { return DocumentMode() >= 8; }

bool ExplorerDocument::Holds(const DispatchObject& element) {
    if (!document_ || !element) return false;
    const auto holds = [&] {
        const Variant held = root_.Call("contains", Variant(element.object().get()));
        return held.Failed() || held.Truth();  // when it is not known, the caller's own call fails
    };
    if (root_ && holds()) return true;
    // A script that writes the page anew (document.open) gives it another root, maybe another mode.
    mode_ = 0;
    root_ = ObjectOf(document_.Get("documentElement"), "root");
    return holds();
}

}  // namespace tamrin
