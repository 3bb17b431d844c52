#include "platform/explorer/explorer_document.h"

#include "platform/explorer/explorer_element.h"
#include "platform/explorer/explorer_frames.h"
#include "platform/explorer/page_connection.h"

namespace tamrin {

ExplorerDocument::ExplorerDocument(std::shared_ptr<PagePool> pool, ComPtr<IDispatch> document)
    : pool_(std::move(pool)), document_(Object(std::move(document), "document")) {}

std::string ExplorerDocument::url() { return moment_ ? moment_->url : document_.Text("URL"); }

bool ExplorerDocument::hasFocus() { return moment_ || document_.Call("hasFocus").Truth(); }

Element ExplorerDocument::activeElement() {
    if (!moment_) {
        pool_->fired_click().Settle();
        return ElementOf(document_.Get("activeElement"));
    }
    const auto& active = moment_->elements[PageMoment::kActive];
    return active ? active->element : Element();
}

std::vector<Element> ExplorerDocument::getElementsByTagName(std::string_view tag) {
    pool_->fired_click().Settle();
    return Elements(document_.Call("getElementsByTagName", Variant(tag)));
}

NamedElements ExplorerDocument::Named(std::string_view name) {
    NamedElements named;
    pool_->fired_click().Settle();
    if (name.empty()) return named;  // no element has that name, whatever the browser answers
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

std::vector<Element> ExplorerDocument::links() {
    pool_->fired_click().Settle();
    return Elements(document_.Get("links"));
}

std::vector<Frame> ExplorerDocument::frames() {
    pool_->fired_click().Settle();
    return FramesOf(*this);
}

std::unique_ptr<Connection> ExplorerDocument::Connect(DocumentEvents& events) {
    return PageConnection::Make(shared_from_this(), events);
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
    // Every element has it, with one number for all; a collection has none.
    const DispatchObject unknown = Object(object, "element");
    const Variant tag = unknown.Get("tagName");
    // A form's control of that name hides it.
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
    // The standards' name first: documents of old do not know it, newest ones not the other.
    for (const char* name : {"defaultView", "parentWindow"}) {
        if (auto window = ObjectOf(document_.Get(name), "window")) return window;
    }
    return {};
}

int ExplorerDocument::DocumentMode() {
    // Browsers that do not tell are older than all modes.
    if (!mode_) mode_ = static_cast<int>(document_.Get("documentMode").Number().value_or(0));
    return *mode_;
}

bool ExplorerDocument::IsStandard() { return DocumentMode() >= 9; }

bool ExplorerDocument::HasWrittenAttributes() { return DocumentMode() >= 8; }

bool ExplorerDocument::Holds(const DispatchObject& element) {
    if (!document_ || !element) return false;
    if (!root_) root_ = ObjectOf(document_.Get("documentElement"), "root");
    const Variant held = root_.Call("contains", Variant(element.object().get()));
    return held.Failed() || held.Truth();  // where it cannot be told, the call itself tells
}

}  // namespace tamrin
