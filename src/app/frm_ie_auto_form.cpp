#include "app/frm_ie_auto_form.h"

#include <array>

namespace tamrin {
namespace {

constexpr unsigned kWide = kStretchRight;
constexpr unsigned kWideAndTall = kStretchRight | kStretchBottom;
constexpr unsigned kWideAtBottom = kStretchRight | kMoveBottom;

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kButton, "cmdRec", -1, "記録", "記録を開始します。", {6, 6, 60, 26}},
    {ControlKind::kButton, "cmdPlay", -1, "再生", "シナリオを再生します。", {71, 6, 60, 26}},
    {ControlKind::kButton, "cmdStop", -1, "停止", "記録・再生を停止します。", {136, 6, 60, 26}},
    {ControlKind::kOptionButton, "optDisp", 0, "なし", "上段を表示しません。", {216, 6, 50, 26}},
    {ControlKind::kOptionButton, "optDisp", 1, "タグ", "ページのタグ一覧", {268, 6, 50, 26}},
    {ControlKind::kOptionButton, "optDisp", 2, "ファイル", "ファイル一覧", {320, 6, 70, 26}},
    {ControlKind::kListBox, "lstDetail", -1, "", "ページのタグ一覧", {6, 38, 488, 69}, kWide},
    {ControlKind::kListBox, "lstCsv", -1, "", "ファイル一覧", {6, 38, 488, 69}, kWide, kHidden},
    {ControlKind::kListBox,
     "lstDtList",
     -1,
     "",
     "シナリオ",
     {6, 112, 488, 128},
     kWideAndTall,
     kMultiSelect},
    {ControlKind::kTextBox,
     "txtUrl",
     -1,
     "",
     "ページのアドレス",
     {6, 246, 400, 22},
     kWideAtBottom,
     kReadOnly},
    {ControlKind::kTextBox,
     "txthWnd",
     -1,
     "",
     "ウィンドウハンドル（十進）",
     {412, 246, 82, 22},
     kMoveRight | kMoveBottom,
     kReadOnly},
    {ControlKind::kTextBox,
     "txtStatus",
     -1,
     "",
     "状態",
     {6, 272, 488, 22},
     kWideAtBottom,
     kReadOnly},
    {ControlKind::kTimer, "Timer1", -1, "", "", {}, kFixed, kDisabled, 1000},
});

constexpr auto kMenus = std::to_array<MenuSpec>({
    {0, "mnuFile", "ファイル(&F)"},
    {1, "mnuSave", "上書き保存(&S)", "Ctrl+S"},
    {1, "mnuSaveAs", "名前を付けて保存(&A)..."},
    {1, "mnuFileSpc1", "-"},
    {1, "mnuClose", "閉じる(&X)"},
    {0, "mnuRun", "実行(&R)"},
    {1, "mnuPlay", "再生(&P)", "F5"},
    {1, "mnuRepeat", "再生回数変更：現在値 1 回"},
    {0, "mnuView", "表示(&V)"},
    {1, "mnuTaskTray", "タスクトレイに表示(&T)"},
    {0, "mnuContext", "コンテキストメニュー", {}, kHidden},
    {0, "mnuListEdit", "ファイル一覧メニュー", {}, kHidden},
});

}  // namespace

const FormSpec& MainFormSpec() {
    static const FormSpec spec{"frmIeAuto", "Tamrin", 500, 300, kControls, kMenus};
    return spec;
}

MainControls::MainControls(Form& form)
    : cmdRec(form.Find("cmdRec")),
      cmdPlay(form.Find("cmdPlay")),
      cmdStop(form.Find("cmdStop")),
      optDispNothing(form.Find("optDisp", 0)),
      optDispTags(form.Find("optDisp", 1)),
      optDispFiles(form.Find("optDisp", 2)),
      lstDetail(form.List("lstDetail")),
      lstCsv(form.List("lstCsv")),
      lstDtList(form.List("lstDtList")),
      txtStatus(form.Find("txtStatus")),
      txtUrl(form.Find("txtUrl")),
      txthWnd(form.Find("txthWnd")),
      Timer1(form.Find("Timer1")),
      mnuSave(form.Find("mnuSave")),
      mnuSaveAs(form.Find("mnuSaveAs")),
      mnuClose(form.Find("mnuClose")),
      mnuPlay(form.Find("mnuPlay")),
      mnuRepeat(form.Find("mnuRepeat")),
      mnuTaskTray(form.Find("mnuTaskTray")) {}

}  // namespace tamrin
