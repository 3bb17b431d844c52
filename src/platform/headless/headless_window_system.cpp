#include "platform/headless/headless_window_system.h"

#include <algorithm>

namespace tamrin {
namespace {

// Is in the window system's list as long as it exists.
class ListedForm : public HeadlessForm {
public:
    ListedForm(const FormSpec& spec, std::function<void(HeadlessForm&)> show_modal,
               std::vector<HeadlessForm*>& forms)
        : HeadlessForm(spec, std::move(show_modal)), forms_(forms) {
        forms_.push_back(this);
    }
    ~ListedForm() override { std::erase(forms_, this); }
    ListedForm(const ListedForm&) = delete;
    ListedForm& operator=(const ListedForm&) = delete;

private:
    std::vector<HeadlessForm*>& forms_;
};

}  // namespace

std::unique_ptr<Form> HeadlessWindowSystem::Create(const FormSpec& spec) {
    const auto show_modal = [this](HeadlessForm& form) {
        if (onModal) onModal(form);
    };
    return std::make_unique<ListedForm>(spec, show_modal, forms_);
}

HeadlessForm* HeadlessWindowSystem::FindForm(std::string_view name) {
    const auto form = std::find_if(forms_.rbegin(), forms_.rend(),
                                   [&](const HeadlessForm* each) { return each->name() == name; });
    return form == forms_.rend() ? nullptr : *form;
}

void HeadlessWindowSystem::RunTimers(std::uint32_t now) {
    // A timer may open or close forms.
    const auto forms = forms_;
    for (HeadlessForm* form : forms) {
        if (std::find(forms_.begin(), forms_.end(), form) != forms_.end()) form->RunTimers(now);
    }
}

}  // namespace tamrin
