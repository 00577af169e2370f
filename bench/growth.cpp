// How the time of four works grows from 10 to 100,000 items: the parse of a document, a scan of the
// reported results, a double-click that opens their list (which scans, then fills), and a click
// that sorts it. Prints one line of JSON
// for each work and size: the median CPU time, in seconds, of all threads of the program.

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "controller/MainDlg.h"
#include "health_document.h"
#include "hlxInterface.h"
#include "hlxParseConf.h"
#include "simulator/clock.h"
#include "simulator/desktop.h"
#include "simulator/session.h"
#include "updates/UpdateResultStore.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int show);

namespace {

using namespace std::chrono_literals;

constexpr DWORD kFailed = 0x80070002;

double SecondsOf(const std::function<void()>& work) {
    const std::clock_t begin = std::clock();
    work();
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Each round gives the seconds of its works, in the order of their names.
void Print(const std::vector<const char*>& works, int count,
           const std::function<std::vector<double>()>& round) {
    std::vector<std::vector<double>> seconds(works.size());
    for (int i = 0; i < (count < 10'000 ? 11 : 3); ++i) {
        const std::vector<double> measured = round();
        for (std::size_t work = 0; work < works.size(); ++work)
            seconds[work].push_back(measured[work]);
    }
    for (std::size_t work = 0; work < works.size(); ++work)
        std::printf("{\"work\": \"%s\", \"count\": %d, \"seconds\": %.9f}\n", works[work], count,
                    Median(seconds[work]));
    std::fflush(stdout);
}

class ResultsKey {
public:
    ResultsKey() {
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, HLX_DOWNLOAD_RESULTS_KEY, 0, nullptr, 0,
                        KEY_READ | KEY_WRITE, nullptr, &m_key, nullptr);
    }
    ResultsKey(const ResultsKey&) = delete;
    ~ResultsKey() { RegCloseKey(m_key); }

    void Report(const std::string& name) const {
        UpdateResultRecord record{{}, kFailed};
        GetSystemTimeAsFileTime(&record.m_time);
        RegSetValueExA(m_key, name.c_str(), 0, REG_BINARY, reinterpret_cast<const BYTE*>(&record),
                       sizeof record);
    }

    void Scan() const {
        CRecordWalk walk(m_key);
        while (walk.NextBinaryRecord()) continue;
    }

private:
    HKEY m_key = nullptr;
};

// The dialog of failed downloads with this many rows: its scan, fill and sort.
void MeasureList(int count) {
    const ResultsKey results;
    for (int i = 0; i < count - 1; ++i) results.Report("file" + std::to_string(i * 7919LL % count));
    desktop::Session session([] {
        char noArguments[] = "";
        return WinMain(GetModuleHandleA(nullptr), nullptr, noArguments, SW_SHOWNORMAL);
    });
    desktop::Advance(5s);
    results.Report("the last");
    desktop::Advance(0s);
    Print({"scan", "open", "sort"}, count, [&] {
        std::vector<double> seconds{
            SecondsOf([&] { results.Scan(); }),
            SecondsOf([] { desktop::DoubleClick(TRAY_ID_DOWNLOADS); }),
            SecondsOf([] { desktop::ClickHeader(0); }),
        };
        desktop::CloseWindow();
        desktop::Forget();
        results.Report("the last");  // the icon comes back
        desktop::Advance(0s);
        return seconds;
    });
}

void MeasureParse(int count) {
    const std::string document = HealthDocument(count);
    Print({"parse"}, count, [&] {
        return std::vector<double>{SecondsOf([&] {
            hlxParseConf tree;
            tree.Create("UTF-8", nullptr);
            tree.Parse(document.c_str(), -1, true);
        })};
    });
}

}  // namespace

int main() {
    simulator::Clock::SetManual(simulator::kUnixEpoch + 1'794'982'508 * simulator::kTicksPerSecond);
    for (const int count : {10, 100, 1000, 10'000, 100'000}) {
        std::string folder = (std::filesystem::temp_directory_path() / "growth-XXXXXX").string();
        setenv("WIN32_REGISTRY", mkdtemp(folder.data()), 1);
        setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
        MeasureParse(count);
        MeasureList(count);
        std::filesystem::remove_all(folder);
    }
}
