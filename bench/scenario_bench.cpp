// Measures the scenario room against its limits: ./bench_scenario

#include <string>
#include <vector>

#include "live_bytes.h"
#include "platform/posix/text_codec.h"
#include "scenario/record.h"
#include "scenario/scenario_text.h"
#include "table.h"

namespace tamrin {
namespace {

const PosixTextCodec codec;

// A scenario of records of about 60 characters, one in four with Japanese text.
std::vector<std::string> Records(int count) {
    std::vector<std::string> lines;
    lines.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        lines.push_back(i % 4 == 0 ? BuildElementRecord("input", "customer_name_" + number, "text",
                                                        "株式会社　山田太郎商店　御中")
                                   : BuildElementRecord("click", "order_form_send_" + number,
                                                        "submit", "Send the order now"));
    }
    return lines;
}

void MeasureGetRecordItem(Table& table) {
    const std::string line = "input\t,id=customer_name,type=text,indt=Yamada Taro and Hanako";
    constexpr int kCalls = 500000;
    for (const char* key : {"Act", "id", "type", "indt", "userwait"}) {
        volatile std::size_t size = 0;
        const double seconds = BestSeconds([&] {
            for (int i = 0; i < kCalls; ++i) size = GetRecordItem(line, key).size();
        });
        const std::string what = std::string("GetRecordItem, key ") + key;
        table.Row(what.c_str(), seconds / kCalls * 1e9, 100, "ns");
    }
}

// Reads and writes `count` records. The limits are those of 100,000 records and grow with them.
void MeasureText(Table& table, int count, bool cipher) {
    const double share = count / 100000.0;
    const char* kind = cipher ? "enciphered" : "plain";
    const auto name = [&](const char* what) {
        return std::to_string(count) + " records, " + kind + ": " + what;
    };
    std::string file;
    {
        const auto lines = Records(count);
        const double seconds = BestSeconds([&] { file = WriteScenarioText(lines, codec, cipher); });
        table.Row(name("write").c_str(), seconds, share * (cipher ? 1 : 0.3), "s");
    }
    file.shrink_to_fit();
    const std::size_t before = LiveBytes() - file.size();
    RestartPeak();
    std::vector<std::string> lines;
    const double seconds = BestSeconds([&] {
        lines = {};
        lines = ReadScenarioText(file, codec);
    });
    table.Row(name("read").c_str(), seconds, share * (cipher ? 1 : 0.3), "s");
    const double peak = static_cast<double>(PeakBytes() - before);
    table.Row(name("peak memory / file size").c_str(), peak / static_cast<double>(file.size()), 5,
              "x");
}

int Run() {
    Table table;
    MeasureGetRecordItem(table);
    for (const bool cipher : {false, true}) {
        for (const int count : {10000, 100000, 1000000}) MeasureText(table, count, cipher);
    }
    return table.ExitCode();
}

}  // namespace
}  // namespace tamrin

int main() { return tamrin::Run(); }
