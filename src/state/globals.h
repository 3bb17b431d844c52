#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tamrin {

// The settings of Conf.txt, with their defaults. The default window rectangle depends on the screen
// and is computed where the screen is known.
struct Settings {
    int form_left = 0;  // screen pixels
    int form_top = 0;
    int form_right = 500;
    int form_bottom = 300;
    int top_height = 1035;         // twips: height of the upper list pane
    bool auto_point = true;        // the pointer moves to the element that a record addresses
    bool rec_change_only = false;  // record only what the user changed
    bool async = false;            // kept and written; nothing sets it
    bool cipher = false;           // encipher scenario files when saving
    int disp = 1;                  // index of the chosen optDisp: nothing, the files, the tags
    bool disp_top = true;          // always on top
    bool scroll_bar = false;       // horizontal scroll bar on the lists
    std::string save_folder_path;  // "" is the program's folder
    bool mouse_click = true;       // clicks are carried out as real mouse clicks
    bool tasktray = false;         // show the program in the notification area
    bool quit_after_play = false;  // close the program after playback
    int play_count = 1;            // how many times a scenario is played
    int max_wait_time = 10;        // seconds

    // The longest wait for the browser to answer, in milliseconds.
    std::uint32_t MaxWaitMs() const {
        return max_wait_time > 0 ? static_cast<std::uint32_t>(max_wait_time) * 1000U : 0U;
    }
};

// Which browser is driven: Internet Explorer where there is one that answers and else Edge or
// Chrome, or always the one or the other.
enum class BrowserKind { kAny, kExplorer, kChromium };

// The settings of Options.txt: those that Conf.txt does not know.
struct Options {
    BrowserKind browser_kind = BrowserKind::kAny;
    std::string browser_path;  // the executable of Edge or Chrome; "" to look for one
    // The path that the file holds, while the command line names another one for this run.
    std::optional<std::string> kept_browser_path;
    // Where the failed calls of Internet Explorer are written to; "" for nowhere.
    std::string trace_path;
    // Address and port of a browser that can be recorded, such as "127.0.0.1:9222"; "" to look for
    // one.
    std::string debug_address;
    // How long one record of a run that was started automatically may take, in seconds; 0 for any
    // time.
    int record_limit = 600;
    bool tool_panel = false;                // show place and bars of the attached browser window
    std::vector<std::string> recent_files;  // full paths, the latest first
};

// What the program remembers while it runs. One of these is made at start and handed down by
// reference; everything runs on one thread.
struct Globals {
    Settings settings;
    Options options;

    // What is running: "" (idle), "rec", "play", "loading" or "confload". The empty text is the
    // stop signal that every wait and step checks.
    std::string activity;

    std::uint32_t last_activity_tick = 0;  // last completed page, or the start of a run

    int twips_per_pixel_y = 15;
    std::string version_text;

    bool auto_play = false;         // play as soon as start-up ends
    bool is_player = false;         // a stand-alone player, which has no settings
    bool close_after_play = false;  // quit when playback ends, and leave Conf.txt as it is
    // The browsers that the program has opened stay open when it ends.
    bool keep_browser = false;
    bool unsaved = false;      // the record list holds changes not yet saved
    bool skip_wait = false;    // the user wants to skip the wait of the current record
    std::string current_file;  // the open scenario; "stream" for one from the command line
    std::string last_error;    // the last line about a record that found no element

    bool ActivityContains(const char* word) const {
        return activity.find(word) != std::string::npos;
    }
};

}  // namespace tamrin
