#include "story.h"

#include <cstdlib>
#include <fstream>

namespace {

constexpr machine::Ticks kStart = 134'394'561'080'000'000;  // 2026-11-18 06:15:08 UTC

std::filesystem::path MakeFolder() {
    std::string name = testing::TempDir() + "vh-story-XXXXXX";
    return mkdtemp(name.data());
}

std::string Element(const std::string& name, const std::string& text) {
    return text.empty() ? "" : "<" + name + ">" + text + "</" + name + ">\n";
}

}  // namespace

std::string HealthDocument::Text() const {
    std::string text = "<HLXHealthResult version=\"1.0\">\n";
    text += Element("AutoInstall", autoInstall) + Element("Enabled", enabled) +
            Element("HealthState", state) + Element("DisplayHealthIcon", icon);
    if (!message.empty()) text += "<Message popup=\"true\">" + message + "</Message>\n";
    if (!url.empty()) text += "<Browser popup=\"true\" url=\"" + url + "\"/>\n";
    return text + "</HLXHealthResult>\n";
}

Story::Story() : m_folder(MakeFolder()), m_agentDirectory(m_folder / "agent") {
    machine::Clock::Hold(kStart);
    std::filesystem::create_directory(m_agentDirectory);
    setenv("WIN32_REGISTRY", (m_folder / "registry").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", m_folder.c_str(), 1);
    setenv("TZ", "UTC", 1);
    WriteText(kHlxAgentKey, nullptr, m_agentDirectory);
}

Story::~Story() {
    machine::ClearFaults();
    m_session.reset();
    EXPECT_THAT(Tray(), IsEmpty());
    machine::Clock::Release();
    std::filesystem::remove_all(m_folder);
}

void Story::Start() {
    m_session.emplace([] {
        char arguments[] = "--whatever it says";
        return WinMain(GetModuleHandleA(nullptr), nullptr, arguments, SW_SHOWNORMAL);
    });
    desktop::Advance(10ms);  // the start timer
}

void Story::StartWith(const HealthDocument& document) {
    Deliver(document);
    Start();
    Pass();
}

int Story::End() { return m_session->End(); }

// One second ahead, so that the file is later than the pass that is under way.
void Story::WriteFile(const std::string& name, const std::string& text) const {
    const std::string path = m_agentDirectory / name;
    std::ofstream(path, std::ios::binary) << text;
    const std::chrono::sys_seconds stamp{std::chrono::seconds{
        (machine::Clock::Now() - machine::kUnixEpoch) / machine::kTicksPerSecond + 1}};
    std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(stamp));
}

void Story::Deliver(const HealthDocument& document) const {
    WriteFile("healthnotif.txt", document.Text());
}

void Story::Show(const HealthDocument& document) const {
    Deliver(document);
    Pass();
}

void Story::Offer(const std::string& name, const std::string& version) const {
    WriteFile("swcache", name + ":" + version + "::\n");
}

std::string Story::Record(DWORD result, Age age) {
    const auto ticks = age ? machine::Clock::Now() - age->count() / 100 : 0;
    const UpdateResultRecord record{{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)},
                                    result};
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

void Story::Report(const char* key, const std::string& name, DWORD result, Age age) {
    WriteValue(key, name, REG_BINARY, Record(result, age));
}

void Story::WriteValue(const char* key, const std::string& name, DWORD type,
                       const std::string& data) {
    HKEY opened = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, key, 0, nullptr, 0, KEY_WRITE, nullptr, &opened, nullptr);
    EXPECT_EQ(
        RegSetValueExA(opened, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                       static_cast<DWORD>(data.size())),
        ERROR_SUCCESS);
    RegCloseKey(opened);
    desktop::Advance(0ms);  // the applet has seen it
}

void Story::WriteText(const char* key, const char* name, const std::string& text) {
    WriteValue(key, name ? name : "", REG_SZ, text + '\0');
}

std::vector<std::string> Story::Frames() const {
    std::vector<std::string> frames;
    for (std::string frame; (frame = ReceivedHex(m_agent, MSG_DONTWAIT)) != "nothing";)
        frames.push_back(frame);
    return frames;
}

std::vector<UINT> Tray() {
    std::vector<UINT> ids;
    for (const desktop::Icon& icon : desktop::Icons()) ids.push_back(icon.id);
    return ids;
}

std::string Tip(UINT icon) {
    const auto found = desktop::FindIcon(icon);
    return found ? found->tip : "";
}

desktop::Dialog Front() {
    const auto dialogs = desktop::Dialogs();
    return dialogs.empty() ? desktop::Dialog{} : dialogs.front();
}
