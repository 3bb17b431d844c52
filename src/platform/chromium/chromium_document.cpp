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
    return tab_->agents().Run(agent_, std::move(expression), gesture);
}

std::string ChromiumDocument::url() {
    if (const PageSnapshot* snapshot = Snapshot()) return snapshot->Url();
    const Notice* notice = tab_->watcher().current();
    if (notice && notice->top_agent == agent_) return notice->top_url;
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
    const auto count = static_cast<std::size_t>(fields.Int(field::kCount));
    if (count == 0) return {};
    return std::make_shared<ElementList>(shared_from_this(), std::move(fields), kind, field::kRows,
                                         count)
        ->Elements();
}

Element ChromiumDocument::activeElement() {
    if (Snapshot()) return InSnapshot(0);
    return One("tamrin.active()");
}

std::vector<Element> ChromiumDocument::getElementsByTagName(std::string_view tag) {
    return Collection(CallOf("all", tag), ElementList::Kind::kPlain);
}

std::vector<Element> ChromiumDocument::links() {
    return Collection("tamrin.links()", ElementList::Kind::kLinks);
}

NamedElements ChromiumDocument::Named(std::string_view name) {
    FieldBlock fields = Run(CallOf("named", name)).fields;
    const auto names = static_cast<std::size_t>(fields.Int(field::kByName));
    const auto ids = static_cast<std::size_t>(fields.Int(field::kById));
    const auto in_forms = static_cast<std::size_t>(fields.Int(field::kInForms));
    const std::size_t count = names + ids + in_forms;
    if (count == 0) return {};
    const auto list = std::make_shared<ElementList>(
        shared_from_this(), std::move(fields), ElementList::Kind::kNamed, field::kNamedRows, count);
    if (list->size() != count) return {};
    return {list->Elements(0, names), ids > 0 ? Element(list->At(names)) : Element(),
            list->Elements(names + ids, count)};
}

std::vector<Frame> ChromiumDocument::frames() {
    const FrameInfo* own = tab_->frames().WithAgent(agent_);
    if (!own) return {};
    // The page lists its frames; each page that may be in one of them answers its position.
    std::vector<PageAgents::Question> questions{{agent_, "tamrin.frames()"}};
    for (const FrameInfo* child : tab_->frames().MaybeChildren(own->id)) {
        questions.emplace_back(child->agent, "tamrin.position()");
    }
    std::vector<AgentAnswer> answers = tab_->agents().RunAll(questions);
    const auto document_at = [&](const std::string& position,
                                 std::shared_ptr<ChromiumElement> holder) {
        for (std::size_t i = 1; i < answers.size(); ++i) {
            if (answers[i].fields.Text(field::kPosition) != position) continue;
            return Document(std::make_shared<ChromiumDocument>(tab_, questions[i].first, position,
                                                               std::move(holder)));
        }
        return Document();  // the page cannot be reached
    };
    FieldBlock& fields = answers.front().fields;
    const auto count = static_cast<std::size_t>(fields.Int(field::kCount));
    const auto list = std::make_shared<ElementList>(
        shared_from_this(), std::move(fields), ElementList::Kind::kFrames, field::kRows, count);
    std::vector<Frame> frames;
    for (std::size_t row = 0; row < list->size(); ++row) {
        const auto text = [&](std::size_t key) {
            return std::string(list->fields().Text(list->Field(row, key)));
        };
        const std::string name = text(field::kName);
        const std::string position = position_ + "." + text(field::kFrameIndex);
        frames.push_back({name.empty() ? text(field::kId) : name,
                          document_at(position, list->At(row)), Element(list->At(row))});
    }
    return frames;
}

std::vector<Element> ChromiumDocument::UnderPointer() {
    std::vector<Element> path;
    Hovered at{shared_from_this(), Run(kHovered).fields};
    while (at.page) {
        const auto count = static_cast<std::size_t>(at.fields.Int(field::kHoveredCount));
        const auto list = std::make_shared<ElementList>(
            at.page, std::move(at.fields), ElementList::Kind::kFrames, field::kHoveredRows, count);
        if (list->size() == 0) break;
        path.emplace_back(list->At(0));
        const auto index = list->fields().Text(list->Field(0, field::kFrameIndex));
        if (index.empty()) break;
        at = at.page->HoveredIn(list->At(0), at.page->position_ + "." + std::string(index));
    }
    return path;
}

// Asks all pages that may be in the frame; the one that answers the frame's position is.
ChromiumDocument::Hovered ChromiumDocument::HoveredIn(std::shared_ptr<ChromiumElement> holder,
                                                      const std::string& position) const {
    const FrameInfo* own = tab_->frames().WithAgent(agent_);
    if (!own) return {};
    std::vector<PageAgents::Question> questions;
    for (const FrameInfo* child : tab_->frames().MaybeChildren(own->id)) {
        questions.emplace_back(child->agent, kHovered);
    }
    std::vector<AgentAnswer> answers = tab_->agents().RunAll(questions);
    for (std::size_t i = 0; i < answers.size(); ++i) {
        if (answers[i].fields.Text(field::kPosition) != position) continue;
        return {std::make_shared<ChromiumDocument>(tab_, questions[i].first, position,
                                                   std::move(holder)),
                std::move(answers[i].fields)};
    }
    return {};
}

std::unique_ptr<Connection> ChromiumDocument::Connect(DocumentEvents& events) {
    return tab_->watcher().Connect(agent_, events);
}

std::optional<std::size_t> ChromiumDocument::SnapshotElement(int number) const {
    const PageSnapshot* snapshot = Snapshot();
    for (std::size_t i = 0; snapshot && i < PageSnapshot::kElements; ++i) {
        const std::size_t at = PageSnapshot::Row(i) + field::kNumber;
        if (!snapshot->fields.IsNull(at) && snapshot->fields.Int(at) == number) return i;
    }
    return std::nullopt;
}

Element ChromiumDocument::InSnapshot(std::size_t element) {
    const PageSnapshot* snapshot = Snapshot();
    const std::size_t row = PageSnapshot::Row(element);
    if (!snapshot || snapshot->fields.IsNull(row + field::kNumber)) return Element();
    const auto list = std::make_shared<ElementList>(shared_from_this(), snapshot->fields,
                                                    ElementList::Kind::kEvent, row, 1);
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
    if (fields.size() < viewport + field::kViewportFields) return std::nullopt;
    const auto number = [&](field::Position position) {
        return fields.Number(viewport + position);
    };
    x = number(field::kOffsetX) + x * number(field::kZoom);
    y = number(field::kOffsetY) + y * number(field::kZoom);
    if (!fields.Text(viewport + field::kIsTop).empty()) {
        const Viewport top{number(field::kScreenX), number(field::kScreenY),
                           number(field::kPixelRatio)};
        tab_->SetViewport(top);
        return ScreenPoint{static_cast<int>(std::lround((top.left + x) * top.scale)),
                           static_cast<int>(std::lround((top.top + y) * top.scale))};
    }
    // The page around is one of another site: ask it where the frame stands.
    const ChromiumDocument* page = this;
    for (int level = fields.Int(viewport + field::kLevels); level > 0 && page->holder_; --level) {
        page = &page->holder_->document();
    }
    if (!page->holder_) return std::nullopt;
    const FieldBlock corner = page->holder_->ContentCorner();
    const double zoom = corner.Number(field::kFrameZoom);
    return page->holder_->document().ToScreen(corner, 0, corner.Number(field::kFrameX) + x * zoom,
                                              corner.Number(field::kFrameY) + y * zoom);
}

}  // namespace tamrin
