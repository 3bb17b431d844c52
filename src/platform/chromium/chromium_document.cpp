#include "platform/chromium/chromium_document.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "platform/chromium/chromium_element.h"

namespace tamrin {
namespace {

using nlohmann::json;

std::string CallOf(std::string_view function, std::string_view argument) {
    return "tamrin." + std::string(function) + "(" +
           json(argument).dump(-1, ' ', false, json::error_handler_t::replace) + ")";
}

// The rows of a moment: the active element, its parent, its form and the form's default button.
constexpr std::size_t kMomentRows = 4;

constexpr const char* kHovered = "tamrin.hovered()";

}  // namespace

ChromiumDocument::ChromiumDocument(std::shared_ptr<Tab> tab, std::string agent,
                                   std::string position, std::shared_ptr<ChromiumElement> holder)
    : tab_(std::move(tab)),
      agent_(std::move(agent)),
      position_(std::move(position)),
      holder_(std::move(holder)) {}

bool ChromiumDocument::Exists() const {
    return tab_->Alive() && tab_->frames().WithAgent(agent_) != nullptr;
}

AgentAnswer ChromiumDocument::Run(std::string expression, bool gesture) const {
    return tab_->Run(agent_, std::move(expression), gesture);
}

std::string ChromiumDocument::url() {
    if (const PageMoment* moment = Moment()) return moment->Url();
    if (tab_->current() && tab_->current()->top_agent == agent_) return tab_->current()->top_url;
    const FrameInfo* frame = tab_->Alive() ? tab_->frames().WithAgent(agent_) : nullptr;
    if (!frame) return "";
    return frame->url.empty() ? std::string(Run("tamrin.url()").fields.Text(0)) : frame->url;
}

bool ChromiumDocument::hasFocus() { return !Run("tamrin.hasFocus()").fields.Text(0).empty(); }

Element ChromiumDocument::One(std::string expression) {
    const std::vector<Element> found = Collection(std::move(expression), ElementList::Kind::kPlain);
    return found.empty() ? Element() : found.front();
}

std::vector<Element> ChromiumDocument::Collection(std::string expression, ElementList::Kind kind) {
    FieldBlock fields = Run(std::move(expression)).fields;
    const auto count = static_cast<std::size_t>(fields.Int(0));
    if (count == 0) return {};
    return std::make_shared<ElementList>(shared_from_this(), std::move(fields), kind, 1, count)
        ->Elements();
}

Element ChromiumDocument::activeElement() {
    if (Moment()) return InMoment(0);
    tab_->BeginLookup(agent_);
    return One("tamrin.active()");
}

std::vector<Element> ChromiumDocument::getElementsByTagName(std::string_view tag) {
    tab_->BeginLookup(agent_);
    return Collection(CallOf("all", tag), ElementList::Kind::kPlain);
}

std::vector<Element> ChromiumDocument::links() {
    tab_->BeginLookup(agent_);
    return Collection("tamrin.links()", ElementList::Kind::kLinks);
}

NamedElements ChromiumDocument::Named(std::string_view name) {
    tab_->BeginLookup(agent_);
    FieldBlock fields = Run(CallOf("named", name)).fields;
    const auto names = static_cast<std::size_t>(fields.Int(0));
    const auto ids = static_cast<std::size_t>(fields.Int(1));
    const auto in_forms = static_cast<std::size_t>(fields.Int(2));
    const std::size_t count = names + ids + in_forms;
    if (count == 0) return {};
    const auto list =
        std::make_shared<ElementList>(shared_from_this(), std::move(fields),
                                      ElementList::Kind::kNamed, ElementList::kNamedHeader, count);
    if (list->size() != count) return {};
    return {list->Elements(0, names), ids > 0 ? Element(list->At(names)) : Element(),
            list->Elements(names + ids, count)};
}

std::vector<Frame> ChromiumDocument::frames() {
    tab_->BeginLookup(agent_);
    const FrameInfo* own = tab_->frames().WithAgent(agent_);
    if (!own) return {};
    // The page tells its frames; each page that may be in one of them tells where it stands.
    std::vector<std::pair<std::string, std::string>> questions{{agent_, "tamrin.frames()"}};
    for (const FrameInfo* child : tab_->frames().MaybeChildren(own->id)) {
        questions.emplace_back(child->agent, "tamrin.position()");
    }
    std::vector<AgentAnswer> answers = tab_->RunAll(questions);
    std::vector<std::pair<std::string, std::string>> pages;  // position, agent
    for (std::size_t i = 1; i < answers.size(); ++i) {
        pages.emplace_back(answers[i].fields.Text(0), questions[i].first);
    }
    FieldBlock& fields = answers.front().fields;
    const auto count = static_cast<std::size_t>(fields.Int(0));
    const auto list = std::make_shared<ElementList>(shared_from_this(), std::move(fields),
                                                    ElementList::Kind::kFrames, 1, count);
    std::vector<Frame> frames;
    for (std::size_t row = 0; row < list->size(); ++row) {
        const auto text = [&](std::size_t key) {
            return std::string(list->fields().Text(list->Field(row, key)));
        };
        const std::string name = text(ElementList::kName);
        const std::string position = position_ + "." + text(ElementList::kFrameIndex);
        frames.push_back({name.empty() ? text(ElementList::kId) : name,
                          FrameDocument(pages, position, list->At(row)), Element(list->At(row))});
    }
    return frames;
}

Document ChromiumDocument::FrameDocument(
    const std::vector<std::pair<std::string, std::string>>& agents, const std::string& position,
    std::shared_ptr<ChromiumElement> holder) {
    for (const auto& [place, agent] : agents) {
        if (place != position) continue;
        return Document(
            std::make_shared<ChromiumDocument>(tab_, agent, position, std::move(holder)));
    }
    return Document();
}

std::vector<Element> ChromiumDocument::UnderPointer() {
    // What a page answers: its place among the frames, and one element with the keys of frames().
    constexpr std::size_t kRows = 2;
    std::vector<Element> path;
    Hovered at{shared_from_this(), Run(kHovered).fields};
    while (at.page) {
        const auto count = static_cast<std::size_t>(at.fields.Int(1));
        const auto list = std::make_shared<ElementList>(at.page, std::move(at.fields),
                                                        ElementList::Kind::kFrames, kRows, count);
        if (list->size() == 0) break;
        path.emplace_back(list->At(0));
        const auto index = list->fields().Text(list->Field(0, ElementList::kFrameIndex));
        if (index.empty()) break;
        at = at.page->HoveredIn(list->At(0), at.page->position_ + "." + std::string(index));
    }
    return path;
}

// Of the pages that may be in the frame it is the one that says so itself.
ChromiumDocument::Hovered ChromiumDocument::HoveredIn(std::shared_ptr<ChromiumElement> holder,
                                                      const std::string& position) const {
    const FrameInfo* own = tab_->frames().WithAgent(agent_);
    if (!own) return {};
    std::vector<std::pair<std::string, std::string>> questions;
    for (const FrameInfo* child : tab_->frames().MaybeChildren(own->id)) {
        questions.emplace_back(child->agent, kHovered);
    }
    std::vector<AgentAnswer> answers = tab_->RunAll(questions);
    for (std::size_t i = 0; i < answers.size(); ++i) {
        if (answers[i].fields.Text(0) != position) continue;
        return {std::make_shared<ChromiumDocument>(tab_, questions[i].first, position,
                                                   std::move(holder)),
                std::move(answers[i].fields)};
    }
    return {};
}

std::unique_ptr<Connection> ChromiumDocument::Connect(DocumentEvents& events) {
    return tab_->Connect(agent_, events);
}

std::optional<std::size_t> ChromiumDocument::MomentRow(int number) const {
    const PageMoment* moment = Moment();
    for (std::size_t row = 0; moment && row < kMomentRows; ++row) {
        const std::size_t field = PageMoment::kHeader + row * ElementList::kMomentKeys;
        if (!moment->fields.IsNull(field) && moment->fields.Int(field) == number) return row;
    }
    return std::nullopt;
}

Element ChromiumDocument::InMoment(std::size_t row) {
    const PageMoment* moment = Moment();
    const std::size_t first = PageMoment::kHeader + row * ElementList::kMomentKeys;
    if (!moment || moment->fields.IsNull(first)) return Element();
    const auto list = std::make_shared<ElementList>(shared_from_this(), moment->fields,
                                                    ElementList::Kind::kMoment, first, 1);
    return list->size() == 0 ? Element() : Element(list->At(0));
}

void ChromiumDocument::NoteWrite(int number) {
    tab_->NextMoment();
    written_[number] = tab_->moment();
}

bool ChromiumDocument::WrittenSince(int number, std::uint64_t moment) const {
    const auto write = written_.find(number);
    return write != written_.end() && write->second > moment;
}

void ChromiumDocument::KeepPlace(int number, FieldBlock place) {
    place_ = std::move(place);
    place_number_ = number;
    place_moment_ = tab_->moment();
}

const FieldBlock* ChromiumDocument::KeptPlace(int number) const {
    const bool holds = place_number_ == number && place_moment_ == tab_->moment() && Exists();
    return holds ? &place_ : nullptr;
}

std::optional<ScreenPoint> ChromiumDocument::ToScreen(const FieldBlock& fields,
                                                      std::size_t viewport, double x,
                                                      double y) const {
    if (fields.size() < viewport + ElementList::kViewport) return std::nullopt;
    const double scale = fields.Number(viewport + 7);
    x = fields.Number(viewport + 1) + x * scale;
    y = fields.Number(viewport + 2) + y * scale;
    if (!fields.Text(viewport + 3).empty()) {
        const Viewport top{fields.Number(viewport + 4), fields.Number(viewport + 5),
                           fields.Number(viewport + 6)};
        tab_->SetViewport(top);
        return ScreenPoint{static_cast<int>(std::lround((top.left + x) * top.scale)),
                           static_cast<int>(std::lround((top.top + y) * top.scale))};
    }
    // The page around is one of another site: ask it where the frame stands.
    const ChromiumDocument* page = this;
    for (int level = fields.Int(viewport); level > 0 && page->holder_; --level) {
        page = &page->holder_->document();
    }
    if (!page->holder_) return std::nullopt;
    const FieldBlock corner = page->holder_->ContentCorner();
    constexpr std::size_t kCorner = ElementList::kViewport;
    const double zoom = corner.Number(kCorner + 2);
    return page->holder_->document().ToScreen(corner, 0, corner.Number(kCorner) + x * zoom,
                                              corner.Number(kCorner + 1) + y * zoom);
}

}  // namespace tamrin
