#include "app/player_maker.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "scenario/player_payload.h"
#include "scenario/record.h"
#include "scenario/scenario_text.h"

namespace tamrin {
namespace {

constexpr const char* kExtension = ".exe";

}  // namespace

std::string PlayerMaker::Proposed() const {
    if (!scenario_.HasFile()) {
        return scenario_.SaveFolder() + platform_.files.Separator() + "無題" + kExtension;
    }
    const std::string& path = globals_.current_file;
    // A full stop in the name of a folder begins no extension.
    const auto stop = path.find_last_of("./\\");
    const bool extended = stop != std::string::npos && path[stop] == '.';
    return path.substr(0, extended ? stop : path.size()) + kExtension;
}

void PlayerMaker::mnuMakeExe_Click() {
    if (!scenario_.Idle()) return;
    const std::string path = platform_.windows.dialogs().SaveFile(
        {"実行形式で保存", "実行ファイル(*.exe)", "*.exe", Proposed()});
    if (!path.empty()) Save(path);
}

bool PlayerMaker::Save(const std::string& path) {
    const std::string fault = Write(path);
    if (fault.empty()) {
        controls_.txtStatus.SetText("実行形式で保存しました：" + path);
    } else {
        platform_.windows.dialogs().MsgBox(fault, "保存エラー");
    }
    return fault.empty();
}

std::string PlayerMaker::Write(const std::string& path) {
    const std::vector<std::string> lines = records_.Lines();
    if (std::ranges::none_of(
            lines, [](const auto& line) { return GetRecordItem(line, "Act") == "url"; })) {
        return "最初に開くページ（url の行）がないため、再生できるものがありません。";
    }
    Files& files = platform_.files;
    Processes& processes = platform_.processes;
    if (processes.IsRunning(path)) {
        return path +
               "\r\nは実行中か使用中のため、置き換えられません。\r\n別の名前を付けてください。";
    }
    const std::string own = processes.OwnExecutable();
    auto program = files.Read(own);
    if (!program) return own + "\r\nのファイルを読み込めません。";
    const auto player =
        MakePlayer(*std::move(program), WriteScenarioText(lines, platform_.codec, true));
    if (!player) return own + "\r\nは壊れているため、実行形式のもとにできません。";
    if (!files.Replace(path, *player)) return SaveError(path, files);
    processes.AllowRunning(path);
    return "";
}

}  // namespace tamrin
