#include "app/frm_ie_auto_form.h"

#include <array>

namespace tamrin {
namespace {

constexpr unsigned kWide = kStretchRight;
constexpr unsigned kWideAndTall = kStretchRight | kStretchBottom;
constexpr unsigned kWideAtBottom = kStretchRight | kMoveBottom;

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kButton, "cmdRec", -1, "記録", "記録を開始します。", {6, 4, 60, 26}},
    {ControlKind::kButton, "cmdPlay", -1, "再生", "シナリオを再生します。", {71, 4, 60, 26}},
    {ControlKind::kButton,
     "cmdStop",
     -1,
     "停止",
     "記録・再生を停止します。",
     {136, 4, 60, 26},
     kFixed,
     kDisabled},
    {ControlKind::kOptionButton, "optDisp", 0, "なし", "上段を表示しません。", {216, 4, 54, 26}},
    {ControlKind::kOptionButton, "optDisp", 1, "タグ", "ページのタグ一覧", {272, 4, 54, 26}},
    {ControlKind::kOptionButton, "optDisp", 2, "ファイル", "ファイル一覧", {328, 4, 80, 26}},
    {ControlKind::kListBox, "lstDetail", -1, "", "ページのタグ一覧", {6, 34, 468, 69}, kWide},
    {ControlKind::kListBox, "lstCsv", -1, "", "ファイル一覧", {6, 34, 468, 69}, kWide, kHidden},
    {ControlKind::kSplitter, "splTop", -1, "", "", {6, 103, 468, 5}, kWide},
    {ControlKind::kListBox,
     "lstDtList",
     -1,
     "",
     "シナリオ",
     {6, 108, 468, 70},
     kWideAndTall,
     kMultiSelect},
    {ControlKind::kTextBox,
     "txtUrl",
     -1,
     "",
     "ページのアドレス",
     {6, 181, 380, 22},
     kWideAtBottom,
     kReadOnly},
    {ControlKind::kTextBox,
     "txthWnd",
     -1,
     "",
     "ウィンドウハンドル（十進）",
     {392, 181, 82, 22},
     kMoveRight | kMoveBottom,
     kReadOnly},
    {ControlKind::kTextBox,
     "txtStatus",
     -1,
     "",
     "状態",
     {6, 205, 468, 22},
     kWideAtBottom,
     kReadOnly},
    {ControlKind::kTimer, "Timer1", -1, "", "", {}, kFixed, kDisabled, 1000},
});

constexpr auto kMenus = std::to_array<MenuSpec>({
    {0, "mnuFile", "ファイル(&F)"},
    {1, "mnuNew", "新規作成(&N)", "Ctrl+N"},
    {1, "mnuOpen", "開く(&O)...", "Ctrl+O"},
    {1, "mnuOpenFolder", "フォルダを開く(&D)..."},
    {1, "mnuFileSpc1", "-"},
    {1, "mnuSave", "上書き保存(&S)", "Ctrl+S"},
    {1, "mnuSaveAs", "名前を付けて保存(&A)...", "Ctrl+Shift+S"},
    {1, "mnuFileSpc2", "-"},
    {1, "mnuRecent1", "", {}, kHidden},
    {1, "mnuRecent2", "", {}, kHidden},
    {1, "mnuRecent3", "", {}, kHidden},
    {1, "mnuRecent4", "", {}, kHidden},
    {1, "mnuRecent5", "", {}, kHidden},
    {1, "mnuFileSpc3", "-", {}, kHidden},
    {1, "mnuClose", "閉じる(&X)"},
    {0, "mnuEditing", "編集(&E)"},
    {1, "mnuUndo", "元に戻す(&U)", "Ctrl+Z"},
    {1, "mnuRedo", "やり直し(&R)", "Ctrl+Y, Ctrl+Shift+Z"},
    {1, "mnuEditSpc1", "-"},
    {1, "mnuCopy", "コピー(&C)", "Ctrl+C"},
    {1, "mnuPaste", "貼り付け(&P)", "Ctrl+V"},
    {1, "mnuDelete", "削除(&D)", "Del"},
    {1, "mnuSelectAll", "すべて選択(&A)", "Ctrl+A"},
    {1, "mnuEditSpc2", "-"},
    {1, "mnuEditRecord", "レコードの編集(&E)...", "F2"},
    {1, "mnuEditLine", "行をテキストで編集(&L)...", "Ctrl+E"},
    {1, "mnuEditAll", "全体をテキストで編集(&T)...", "Ctrl+Shift+E"},
    {0, "mnuRun", "実行(&R)"},
    {1, "mnuPlay", "再生(&P)", "F5"},
    {1, "mnuStop", "停止(&S)", "Shift+F5, Esc", kDisabled},
    {1, "mnuRunSpc1", "-"},
    {1, "mnuRepeat", "再生回数変更：現在値 1 回"},
    {0, "mnuView", "表示(&V)"},
    {1, "mnuDispTop", "常に手前に表示(&F)"},
    {1, "mnuScrollBar", "横スクロールバー(&H)"},
    {1, "mnuTaskTray", "タスクトレイに表示(&T)"},
    {1, "mnuViewSpc1", "-"},
    {1, "mnuSetting", "設定(&O)...", "F4"},
    {0, "mnuHelp", "ヘルプ(&H)"},
    {1, "mnuAbout", "バージョン情報(&A)..."},
    {0, "mnuContext", "コンテキストメニュー", {}, kHidden},
    {1, "mnuEdit", "編集..."},
    {1, "mnuContextSpc1", "-"},
    {1, "mnuAddUpper", "行追加 - 上"},
    {1, "mnuAddUnder", "行追加 - 下"},
    {1, "mnuDelLine", "行削除"},
    {1, "mnuContextSpc2", "-"},
    {1, "mnuContextCopy", "コピー"},
    {1, "mnuContextPaste", "貼り付け"},
    {0, "mnuListEdit", "ファイル一覧メニュー", {}, kHidden},
    {1, "mnuListOpen", "開く"},
    {1, "mnuListRefresh", "最新の情報に更新"},
    {1, "mnuListSpc1", "-"},
    {1, "mnuListDelFile", "ファイル削除"},
});

}  // namespace

const FormSpec& MainFormSpec() {
    // What is left of a window of 500 x 300 by its borders, title and menu bar.
    static const FormSpec spec{"frmIeAuto", "Tamrin", 480, 230, kControls, kMenus, kResizable};
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
      splTop(form.Find("splTop")),
      lstDtList(form.List("lstDtList")),
      txtStatus(form.Find("txtStatus")),
      txtUrl(form.Find("txtUrl")),
      txthWnd(form.Find("txthWnd")),
      Timer1(form.Find("Timer1")),
      mnuRepeat(form.Find("mnuRepeat")),
      mnuDispTop(form.Find("mnuDispTop")),
      mnuScrollBar(form.Find("mnuScrollBar")),
      mnuTaskTray(form.Find("mnuTaskTray")) {}

}  // namespace tamrin
