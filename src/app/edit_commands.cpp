#include "app/edit_commands.h"

#include <array>
#include <utility>

#include "app/record_fields.h"
#include "platform/text.h"

namespace tamrin {
namespace {

constexpr const char* kChanged = "編集中に記録が変更されました。編集した内容は反映されません。";

constexpr unsigned kCorner = kMoveRight | kMoveBottom;
constexpr std::string_view kSizeBarTip =
    "左.上.幅.高さ.表示（ツールバー・メニュー・アドレス・ステータス・全画面）";

constexpr auto kRecordControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblAct", "動作(&A)", "", {12, 15, 96, 20}},
    {ControlKind::kComboBox, "cmbAct", "", "再生時の動作", {112, 12, 356, 22}, kStretchRight},
    {ControlKind::kLabel, "lblId", "Id(&I)", "", {12, 45, 96, 20}},
    {ControlKind::kTextBox,
     "txtId",
     "",
     "要素の id または name",
     {112, 42, 356, 22},
     kStretchRight},
    {ControlKind::kLabel, "lblType", "Type(&T)", "", {12, 75, 96, 20}},
    {ControlKind::kComboBox, "cmbType", "", "要素の種類", {112, 72, 160, 22}},
    {ControlKind::kLabel, "lblInDt", "入力データ(&D)", "", {12, 105, 96, 20}},
    {ControlKind::kTextBox,
     "txtInDt",
     "",
     "入力する値、ページのアドレス、キー、コメント、待機時間",
     {112, 102, 356, 96},
     kStretchRight | kStretchBottom,
     kMultiLine},
    {ControlKind::kLabel, "lblSizeBar", "位置・サイズ(&S)", "", {12, 209, 96, 20}, kMoveBottom},
    {ControlKind::kTextBox,
     "txtSizeBar",
     "",
     kSizeBarTip,
     {112, 206, 356, 22},
     kStretchRight | kMoveBottom},
    {ControlKind::kLabel, "lblUserWait", "待ち時間（秒）", "", {12, 239, 96, 20}, kMoveBottom},
    {ControlKind::kTextBox,
     "txtUserWait",
     "",
     "動作の前に待つ秒数",
     {112, 236, 80, 22},
     kMoveBottom},
    {ControlKind::kButton, "cmdOk", "Ok", "", {276, 270, 92, 26}, kCorner, kDefault},
    {ControlKind::kButton, "cmdCancel", "Cancel", "", {376, 270, 92, 26}, kCorner, kCancel},
});

const FormSpec kRecordForm{"frmEdit", "レコードの編集", 480, 306, kRecordControls, {}, kResizable};

constexpr auto kTextControls = std::to_array<ControlSpec>({
    {ControlKind::kTextBox,
     "txtText",
     "",
     "",
     {8, 8, 504, 256},
     kStretchRight | kStretchBottom,
     kMultiLine | kTakesTab},
    {ControlKind::kButton, "cmdOk", "Ok", "", {320, 274, 92, 26}, kCorner},
    {ControlKind::kButton, "cmdCancel", "Cancel", "", {420, 274, 92, 26}, kCorner, kCancel},
});

const FormSpec kTextForm{"frmSimpleEdit", "テキストで編集", 520, 308, kTextControls, {},
                         kResizable};

}  // namespace

std::optional<std::string> EditRecord(WindowSystem& windows, const std::string& line, Form& owner) {
    const std::unique_ptr<Form> form = windows.Create(kRecordForm);
    ComboBox& act = form->Combo("cmbAct");
    ComboBox& type = form->Combo("cmbType");
    Control& id = form->Find("txtId");
    Control& indt = form->Find("txtInDt");
    Control& size_bar = form->Find("txtSizeBar");
    Control& userwait = form->Find("txtUserWait");
    std::vector<std::string> actions;
    for (const ActionName& action : Actions()) actions.push_back(ActionItem(action.keyword));
    act.SetItems(std::move(actions));
    type.SetItems(OfferedTypes());

    const Record fields = ReadRecordFields(line);
    act.SetText(ActionItem(fields.act));
    id.SetText(fields.id);
    type.SetText(fields.type);
    indt.SetText(fields.indt);
    size_bar.SetText(fields.size_bar);
    userwait.SetText(fields.userwait);
    const auto enable_fields = [&] {
        const std::string chosen = ActionOfItem(act.Text());
        size_bar.SetEnabled(chosen == "url" || !size_bar.Text().empty());
        userwait.SetEnabled(TakesUserWait(chosen));
    };
    enable_fields();

    std::optional<std::string> result;
    act.onChange = enable_fields;
    form->Find("cmdOk").onClick = [&] {
        result = RewriteRecord(line, {.act = ActionOfItem(act.Text()),
                                      .id = id.Text(),
                                      .type = type.Text(),
                                      .size_bar = size_bar.Text(),
                                      .indt = indt.Text(),
                                      .userwait = userwait.Text()});
        form->Close();
    };
    form->Find("cmdCancel").onClick = [&] { form->Close(); };
    form->ShowModal(owner);
    return result;
}

std::optional<std::vector<std::string>> EditLines(WindowSystem& windows,
                                                  const std::vector<std::string>& lines,
                                                  Form& owner) {
    const std::unique_ptr<Form> form = windows.Create(kTextForm);
    Control& text = form->Find("txtText");
    std::optional<std::vector<std::string>> result;
    form->Find("cmdOk").onClick = [&] {
        result = SplitLines(text.Text());
        form->Close();
    };
    form->Find("cmdCancel").onClick = [&] { form->Close(); };
    text.SetText(JoinLines(lines));
    form->ShowModal(owner);
    return result;
}

void EditCommands::Take(int row, const std::string& before, std::vector<std::string> after) {
    if (list_.Line(row) != before || row >= list_.Count()) {
        windows_.dialogs().MsgBox(kChanged, "Tamrin");
        return;
    }
    if (after.size() == 1 && after.front() == before) return;
    records_.Replace(row, 1, std::move(after));
    list_.SetListIndex(row);
}

void EditCommands::mnuEdit_Click() {
    const int row = list_.ListIndex();
    if (row < 0) return;
    const std::string before(list_.Line(row));
    if (auto after = EditRecord(windows_, before, form_)) Take(row, before, {*std::move(after)});
}

void EditCommands::mnuEditLine_Click() {
    const int row = list_.ListIndex();
    if (row < 0) return;
    const std::string before(list_.Line(row));
    if (auto after = EditLines(windows_, {before}, form_)) {
        Take(row, before, *std::move(after));
    }
}

void EditCommands::mnuEditAll_Click() {
    const std::vector<std::string> before = records_.Lines();
    auto after = EditLines(windows_, before, form_);
    if (!after) return;
    // An emptied text is an empty list, and not a list of one empty record.
    if (after->size() == 1 && after->front().empty() && before.size() != 1) after->clear();
    if (*after == before) return;
    if (records_.Lines() != before) {
        windows_.dialogs().MsgBox(kChanged, "Tamrin");
        return;
    }
    records_.Replace(0, list_.Count(), *std::move(after));
}

}  // namespace tamrin
