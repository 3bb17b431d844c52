#include "platform/explorer/page_moment.h"

#include "platform/explorer/explorer_document.h"
#include "platform/explorer/explorer_element.h"

namespace tamrin {

ElementMoment* PageMoment::Find(IUnknown* identity) {
    for (auto& element : elements) {
        if (element && element->identity.get() == identity) return &*element;
    }
    return nullptr;
}

void PageMoment::Forget(IUnknown* identity) {
    if (ElementMoment* then = Find(identity)) {
        then->properties.clear();
        then->attributes.clear();
    }
}

std::shared_ptr<PageMoment> ExplorerDocument::TakeMoment(bool with_default_button) {
    auto taken = std::make_shared<PageMoment>();
    // What is read now is the page as it is, also while an earlier event is being told.
    PageMoment* const told = std::exchange(moment_, nullptr);
    taken->url = url();
    const auto note = [&taken](PageMoment::Role role, const Element& element) {
        if (!element) return;
        taken->elements[role] = ExplorerElement::Of(element)->TakeMoment();
        taken->elements[role]->element = element;
    };
    const Element active = activeElement();
    note(PageMoment::kActive, active);
    note(PageMoment::kParent, active.parentElement());
    note(PageMoment::kForm, active.form());
    if (with_default_button) note(PageMoment::kDefaultButton, active.DefaultButton());
    moment_ = told;
    return taken;
}

}  // namespace tamrin
