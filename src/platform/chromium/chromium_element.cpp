#include "platform/chromium/chromium_element.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <span>

#include "platform/chromium/chromium_document.h"
#include "platform/chromium/tab.h"
#include "platform/text.h"

namespace tamrin {
namespace {

using nlohmann::json;

// The fields of a lookup by the names under which they are read. Only Named and events bring those
// from kChecked on.
struct KnownName {
    std::string_view name;
    std::size_t key;
};
constexpr KnownName kProperties[] = {
    {"id", field::kId},
    {"name", field::kName},
    {"tagName", field::kTagName},
    {"value", field::kValue},
    {"href", field::kHref},
    {"checked", field::kChecked},
    {"selectedIndex", field::kSelectedIndex},
    {"length", field::kLength},
};
constexpr KnownName kAttributes[] = {
    {"type", field::kType},
    {"alt", field::kAlt},
    {"onclick", field::kOnclick},
    {"href", field::kHref},
};

// Only events bring these.
constexpr KnownName kEventProperties[] = {
    {"src", field::kSource},
    {"innerText", field::kEventText},
};
constexpr KnownName kEventAttributes[] = {
    {"src", field::kSourceAttribute},
};

using Names = std::span<const KnownName>;

// The field of one of these names in the row of a snapshot's element; nothing when it has none.
std::optional<std::size_t> FieldIn(std::size_t element, std::initializer_list<Names> tables,
                                   std::string_view name) {
    for (const Names table : tables) {
        for (const KnownName& known : table) {
            if (known.name == name) return PageSnapshot::Row(element) + known.key;
        }
    }
    return std::nullopt;
}

std::string Quoted(std::string_view text) {
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

// The page agent's answer to a write to a file input.
constexpr std::string_view kIsFile = "file";

// What a page sees of a chosen file, instead of the folder.
constexpr std::string_view kHiddenPath = "C:\\fakepath\\";

// The browser takes full paths only.
std::string FullPath(std::string_view path, const Files& files) {
    const bool is_full =
        path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
    if (path.empty() || is_full) return std::string(path);
    return files.CurrentFolder() + files.Separator() + std::string(path);
}

std::string EventType(std::string_view event) {
    if (event.starts_with("on")) event.remove_prefix(2);
    return LowerCase(event);
}

std::size_t RowLength(ElementList::Kind kind) {
    switch (kind) {
        case ElementList::Kind::kNamed:
            return field::kNamedRow;
        case ElementList::Kind::kEvent:
            return field::kEventRow;
        case ElementList::Kind::kLinks:
            return field::kLinkRow;
        case ElementList::Kind::kFrames:
            return field::kFrameRow;
        default:
            return field::kKeys;
    }
}

}  // namespace

ChromiumDocument& ChromiumElement::document() const { return list_.document(); }

int ChromiumElement::number() const {
    return list_.fields().Int(list_.Field(row_, field::kNumber));
}

std::string ChromiumElement::Expression(std::string_view function, Arguments arguments) const {
    std::string expression = "tamrin.of(" + std::to_string(number());
    expression += ",'";
    expression += function;
    expression += '\'';
    for (const std::string_view argument : arguments) {
        expression += ',';
        expression += Quoted(argument);
    }
    expression += ')';
    return expression;
}

AgentAnswer ChromiumElement::Run(std::string_view function, Arguments arguments) const {
    return document().Run(Expression(function, arguments));
}

bool ChromiumElement::KeysHold() const {
    if (list_.kind() == ElementList::Kind::kEvent) return StateHolds();
    return document().Exists() && !document().WrittenSince(number(), list_.moment());
}

bool ChromiumElement::StateHolds() const {
    return document().Exists() && document().tab().moment() == list_.moment();
}

std::optional<std::size_t> ChromiumElement::KnownField(std::string_view property) const {
    if (property == "innerText" && list_.kind() == ElementList::Kind::kLinks && KeysHold()) {
        return list_.Field(row_, field::kInnerText);
    }
    for (const KnownName& known : kProperties) {
        if (known.name != property) continue;
        // While the user works in the page, the value of a field may change at any moment, too.
        const bool changes = known.key >= field::kKeys;
        if (changes && list_.kind() != ElementList::Kind::kNamed) break;
        const bool is_state =
            changes || (known.key == field::kValue && document().tab().watcher().Watched());
        if (is_state ? StateHolds() : KeysHold()) return list_.Field(row_, known.key);
    }
    return std::nullopt;
}

std::string ChromiumElement::Get(std::string_view property) {
    std::string text = Read(property);
    if (property != "value" || !text.starts_with(kHiddenPath)) return text;
    std::string path = ChosenFile();
    return path.empty() ? text : path;
}

std::string ChromiumElement::Read(std::string_view property) {
    if (const auto element = document().SnapshotElement(number())) {
        const FieldBlock& fields = document().Snapshot()->fields;
        const auto field = FieldIn(*element, {kProperties, kEventProperties}, property);
        const bool known = field && !(property == "innerText" && fields.IsNull(*field));
        if (known) return std::string(fields.Text(*field));
    }
    if (const auto field = KnownField(property)) return std::string(list_.fields().Text(*field));
    return std::string(Run("get", {property}).fields.Text(0));
}

std::optional<std::string> ChromiumElement::getAttribute(std::string_view name) {
    if (const auto element = document().SnapshotElement(number())) {
        const FieldBlock& fields = document().Snapshot()->fields;
        const auto field = FieldIn(*element, {kAttributes, kEventAttributes}, name);
        if (field) return fields.Optional(*field);
    }
    for (const KnownName& known : kAttributes) {
        if (known.name == name && KeysHold()) {
            return list_.fields().Optional(list_.Field(row_, known.key));
        }
    }
    return Run("attribute", {name}).fields.Optional(0);
}

Element ChromiumElement::Related(std::size_t snapshot_element, std::string_view function) {
    const bool active = document().SnapshotElement(number()) == 0U;
    return active ? document().InSnapshot(snapshot_element) : document().One(Expression(function));
}

Element ChromiumElement::parentElement() { return Related(1, "parent"); }
Element ChromiumElement::form() { return Related(2, "form"); }
Element ChromiumElement::DefaultButton() { return Related(3, "defaultButton"); }

std::vector<std::string> ChromiumElement::OptionTexts() {
    const FieldBlock fields = Run("options").fields;
    std::vector<std::string> texts;
    for (std::size_t i = 1; i < fields.size(); ++i) texts.emplace_back(fields.Text(i));
    return texts;
}

std::optional<Rect> ChromiumElement::getBoundingClientRect() {
    const auto read = [](const FieldBlock& fields, std::size_t at) -> std::optional<Rect> {
        if (fields.IsNull(at)) return std::nullopt;
        return Rect{fields.Number(at + field::kLeft), fields.Number(at + field::kTop),
                    fields.Number(at + field::kRight), fields.Number(at + field::kBottom)};
    };
    if (list_.kind() == ElementList::Kind::kNamed && StateHolds()) {
        return read(list_.fields(), list_.Field(row_, field::kRowPlace));
    }
    if (const FieldBlock* kept = document().KeptPlace(number())) return read(*kept, field::kPlace);
    return read(Run("place").fields, field::kPlace);
}

std::optional<ScreenPoint> ChromiumElement::ToScreen() {
    const auto convert = [this](const FieldBlock& fields, std::size_t viewport,
                                std::size_t place) -> std::optional<ScreenPoint> {
        if (fields.IsNull(place)) return std::nullopt;
        return document().ToScreen(fields, viewport, fields.Number(place + field::kCornerX),
                                   fields.Number(place + field::kCornerY));
    };
    if (list_.kind() == ElementList::Kind::kNamed && StateHolds()) {
        return convert(list_.fields(), field::kNamedViewport, list_.Field(row_, field::kRowPlace));
    }
    if (const FieldBlock* kept = document().KeptPlace(number())) {
        return convert(*kept, 0, field::kPlace);
    }
    return convert(Run("place").fields, 0, field::kPlace);
}

FieldBlock ChromiumElement::ContentCorner() const { return Run("content").fields; }

bool ChromiumElement::Same(const ElementObject& other) const {
    const auto* element = dynamic_cast<const ChromiumElement*>(&other);
    return element && element->number() == number() &&
           element->document().agent() == document().agent();
}

std::string ChromiumElement::Act(std::string_view function, Arguments arguments) {
    document().NoteWrite(number());
    const AgentAnswer answer = document().Run(Expression(function, arguments), true);
    document().tab().NextMoment();
    if (answer) return std::string(answer.fields.Text(0));
    // It was done, but a dialog box or another page came before the answer.
    const bool done =
        answer.end == DevToolsReply::End::kCutShort || answer.end == DevToolsReply::End::kLeft;
    return done && document().tab().Alive() ? "1" : "";
}

bool ChromiumElement::Put(std::string_view property, std::string_view value) {
    const std::string taken = Act("put", {property, value});
    return taken == kIsFile ? PutFile(property, value) : !taken.empty();
}

bool ChromiumElement::Change(std::string_view property, std::string_view value) {
    const std::string taken = Act("change", {property, value});
    return taken == kIsFile ? PutFile(property, value) && fireEvent("onchange") : !taken.empty();
}

std::string ChromiumElement::ObjectId(std::string_view function) const {
    if (!document().Exists()) return "";
    const std::string& agent = document().agent();
    const std::string expression =
        "tamrin." + std::string(function) + "(" + std::to_string(number()) + ")";
    return document()
        .tab()
        .agents()
        .Call("Runtime.evaluate", {{"expression", expression}, {"uniqueContextId", agent}}, agent)
        .Text("/result/objectId");
}

std::string ChromiumElement::ChosenFile() const {
    const std::string id = ObjectId("chosenFile");
    if (id.empty()) return "";
    PageAgents& agents = document().tab().agents();
    const std::string& agent = document().agent();
    const auto info = agents.Call("DOM.getFileInfo", {{"objectId", id}}, agent);
    agents.Post("Runtime.releaseObject", {{"objectId", id}}, agent);
    return info.Text("/path");
}

bool ChromiumElement::PutFile(std::string_view property, std::string_view path) {
    if (property != "value") return false;
    Tab& tab = document().tab();
    const std::string& agent = document().agent();
    const std::string full = FullPath(path, tab.files());
    if (!tab.files().IsFile(full) || !document().Exists()) return false;
    document().NoteWrite(number());
    const std::string id = ObjectId("fileInput");
    if (id.empty()) return false;
    const auto done =
        tab.agents().Call("DOM.setFileInputFiles", {{"files", {full}}, {"objectId", id}}, agent);
    tab.agents().Post("Runtime.releaseObject", {{"objectId", id}}, agent);
    tab.NextMoment();
    return done.end == DevToolsReply::End::kAnswered || tab.dialogs().IsOpen();
}

bool ChromiumElement::FireInHandler(std::string_view type) const {
    UserWatcher& watcher = document().tab().watcher();
    const Notice* notice = watcher.current();
    if (!notice || !watcher.Watched()) return false;
    const bool active = !document().Snapshot() || document().SnapshotElement(number()) == 0U;
    if (type == "focusin" && active) {
        watcher.Deliver({.kind = Notice::Kind::kFocusIn, .agent = document().agent()});
        return true;
    }
    constexpr int kEnter = 13;
    return type == "change" && active && notice->kind == Notice::Kind::kKeyPress &&
           notice->key == kEnter;
}

bool ChromiumElement::fireEvent(std::string_view event) {
    const std::string type = EventType(event);
    if (FireInHandler(type)) return true;
    return !Act("fire", {type}).empty();
}

bool ChromiumElement::click() {
    Tab& tab = document().tab();
    if (tab.dialogs().IsOpen() && document().Exists()) {
        // The box that the click before has opened stops the page; this click follows it.
        document().NoteWrite(number());
        tab.agents().RunLater(document().agent(), Expression("click"));
        return true;
    }
    return !Act("click", {}).empty();
}

void ChromiumElement::scrollIntoView() {
    AgentAnswer answer = Run("scroll");
    if (!answer) return;
    document().tab().NextMoment();
    document().KeepPlace(number(), std::move(answer.fields));
}

void ChromiumElement::Outline() {
    Tab& tab = document().tab();
    const std::string id = ObjectId("outlined");
    tab.NextMoment();  // it has been scrolled
    if (!id.empty()) tab.Outline(document().agent(), id);
}

ElementList::ElementList(std::shared_ptr<ChromiumDocument> document, FieldBlock fields, Kind kind,
                         std::size_t first, std::size_t count)
    : document_(std::move(document)),
      fields_(std::move(fields)),
      kind_(kind),
      first_(first),
      row_length_(RowLength(kind)),
      moment_(document_->tab().moment()) {
    const std::size_t whole_rows =
        fields_.size() > first_ ? (fields_.size() - first_) / row_length_ : std::size_t{0};
    rows_.reserve(std::min(count, whole_rows));
    for (std::size_t row = 0; row < rows_.capacity(); ++row) rows_.emplace_back(*this, row);
}

std::shared_ptr<ChromiumElement> ElementList::At(std::size_t row) {
    return {shared_from_this(), &rows_[row]};
}

std::vector<Element> ElementList::Elements(std::size_t from, std::size_t to) {
    std::vector<Element> elements;
    to = std::min(to, rows_.size());
    if (from >= to) return elements;
    elements.reserve(to - from);
    for (std::size_t row = from; row < to; ++row) elements.emplace_back(At(row));
    return elements;
}

}  // namespace tamrin
