#include "app/frm_edit.h"

#include <array>

#include "app/record_fields.h"

namespace tamrin {
namespace {

constexpr unsigned kWide = kStretchRight;
constexpr unsigned kCorner = kMoveRight | kMoveBottom;
constexpr std::string_view kSizeBarTip =
    "左.上.幅.高さ.表示（ツールバー・メニュー・アドレス・ステータス・全画面）";

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblAct", -1, "動作(&A)", "", {12, 15, 96, 20}},
    {ControlKind::kComboBox, "cmbAct", -1, "", "再生時の動作", {112, 12, 356, 22}, kWide},
    {ControlKind::kLabel, "lblId", -1, "Id(&I)", "", {12, 45, 96, 20}},
    {ControlKind::kTextBox, "txtId", -1, "", "要素の id または name", {112, 42, 356, 22}, kWide},
    {ControlKind::kLabel, "lblType", -1, "Type(&T)", "", {12, 75, 96, 20}},
    {ControlKind::kComboBox, "cmbType", -1, "", "要素の種類", {112, 72, 160, 22}},
    {ControlKind::kLabel, "lblInDt", -1, "入力データ(&D)", "", {12, 105, 96, 20}},
    {ControlKind::kTextBox,
     "txtInDt",
     -1,
     "",
     "入力する値、ページのアドレス、キー、コメント、待機時間",
     {112, 102, 356, 96},
     kStretchRight | kStretchBottom,
     kMultiLine},
    {ControlKind::kLabel, "lblSizeBar", -1, "位置・サイズ(&S)", "", {12, 209, 96, 20}, kMoveBottom},
    {ControlKind::kTextBox,
     "txtSizeBar",
     -1,
     "",
     kSizeBarTip,
     {112, 206, 356, 22},
     kStretchRight | kMoveBottom},
    {ControlKind::kLabel, "lblUserWait", -1, "待ち時間（秒）", "", {12, 239, 96, 20}, kMoveBottom},
    {ControlKind::kTextBox,
     "txtUserWait",
     -1,
     "",
     "動作の前に待つ秒数",
     {112, 236, 80, 22},
     kMoveBottom},
    {ControlKind::kButton, "cmdOk", -1, "Ok", "", {276, 270, 92, 26}, kCorner, kDefault},
    {ControlKind::kButton, "cmdCancel", -1, "Cancel", "", {376, 270, 92, 26}, kCorner, kCancel},
});

const FormSpec kSpec{"frmEdit", "レコードの編集", 480, 306, kControls, {}, kResizable};

}  // namespace

frmEdit::frmEdit(WindowSystem& windows)
    : form_(windows.Create(kSpec)),
      cmbAct(form_->Combo("cmbAct")),
      txtId(form_->Find("txtId")),
      cmbType(form_->Combo("cmbType")),
      txtInDt(form_->Find("txtInDt")),
      txtSizeBar(form_->Find("txtSizeBar")),
      txtUserWait(form_->Find("txtUserWait")) {
    std::vector<std::string> actions;
    for (const ActionName& action : Actions()) actions.push_back(ActionItem(action.keyword));
    cmbAct.SetItems(std::move(actions));
    cmbType.SetItems(OfferedTypes());
    cmbAct.onChange = [this] { cmbAct_Change(); };
    form_->Find("cmdOk").onClick = [this] { cmdOk_Click(); };
    form_->Find("cmdCancel").onClick = [this] { form_->Close(); };
}

std::optional<std::string> frmEdit::Edit(const std::string& line, Form& owner) {
    line_ = line;
    const Record fields = ReadRecordFields(line);
    cmbAct.SetText(ActionItem(fields.act));
    txtId.SetText(fields.id);
    cmbType.SetText(fields.type);
    txtInDt.SetText(fields.indt);
    txtSizeBar.SetText(fields.size_bar);
    txtUserWait.SetText(fields.userwait);
    cmbAct_Change();
    form_->ShowModal(owner);
    return result_;
}

void frmEdit::cmbAct_Change() {
    const std::string act = ActionOfItem(cmbAct.Text());
    txtSizeBar.SetEnabled(act == "url" || !txtSizeBar.Text().empty());
    txtUserWait.SetEnabled(TakesUserWait(act));
}

void frmEdit::cmdOk_Click() {
    result_ = RewriteRecord(line_, {.act = ActionOfItem(cmbAct.Text()),
                                    .id = txtId.Text(),
                                    .type = cmbType.Text(),
                                    .size_bar = txtSizeBar.Text(),
                                    .indt = txtInDt.Text(),
                                    .userwait = txtUserWait.Text()});
    form_->Close();
}

}  // namespace tamrin
