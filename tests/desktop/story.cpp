#include "story.h"

#include "simulator/objects.h"

namespace {

constexpr simulator::Ticks kStart = 134'394'561'080'000'000;  // 2026-11-18 06:15:08 UTC

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
    return text + more + "</HLXHealthResult>\n";
}

Story::Story() : m_folder(MakeFolder()), m_agentDirectory(m_folder / "agent") {
    simulator::Clock::SetManual(kStart);
    std::filesystem::create_directory(m_agentDirectory);
    setenv("WIN32_REGISTRY", (m_folder / "registry").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", m_folder.c_str(), 1);
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "C", 1);
    WriteText(HLX_AGENT_KEY, nullptr, m_agentDirectory);
    m_objectsBefore = simulator::LiveObjects();
}

void Story::SetUp() {
    if (FaultRun::Current()) FaultRun::Current()->Begin();
}

Story::~Story() {
    if (FaultRun::Current()) RequireThatItGoesOn(*FaultRun::Current());
    EXPECT_EQ(simulator::ClearFaults(), "") << "faults that nothing used";
    m_session.reset();
    auto objects = simulator::LiveObjects();
    std::erase_if(objects,
                  [&](const auto& kind) { return kind.second <= m_objectsBefore[kind.first]; });
    EXPECT_THAT(objects, IsEmpty());
    EXPECT_THAT(Tray(), IsEmpty());
    if (FaultRun::Current()) RequireNothingLeft(FaultRun::Current()->Kind(), objects);
    simulator::Clock::SetReal();
    std::error_code
        ignored;  // a watcher that did not end because of a fault may still create its key
    std::filesystem::remove_all(m_folder, ignored);
}

void Story::Start() {
    m_session.emplace([] {
        char arguments[] = "--whatever it says";
        return WinMain(GetModuleHandleA(nullptr), nullptr, arguments, SW_SHOWNORMAL);
    });
    desktop::Advance(10ms);  // the start timer
    if (FaultRun::Current()) m_failedAtStart = FaultRun::Current()->HasFailed();
}

void Story::StartWith(const HealthDocument& document) {
    Deliver(document);
    Start();
    Pass();
    NoteIcon(document);
    if (document.HasIcon() && !FaultRun::Current() && Tray().empty() && desktop::Boxes().empty())
        ADD_FAILURE() << "The applet shows neither icon nor box after a poll period of 5 s";
}

void Story::NoteIcon(const HealthDocument& document) {
    if (FaultRun::Current() && !FaultRun::Current()->HasFailed())
        m_hasIcon = document.HasIcon() && Tip(TRAY_ID_HEALTH) != "";
}

// A fault during the start may leave out one watcher or the start timer; other events are still
// handled.
void Story::RequireThatItGoesOn(const FaultRun& run) {
    run.End();
    if (!m_session) return;
    desktop::Advance(10s);  // an end that has begun waits for its watchers
    if (!ExitCode()) {
        run.Require(!m_hasIcon || Tip(TRAY_ID_HEALTH) != "", "the last good state is shown");
        Show({.state = "low"});
        Show({.state = "medium"});
        Report(HLX_INSTALL_RESULTS_KEY, "after the fault", 0);
        run.Require(Tip(TRAY_ID_HEALTH) == "System health is medium" ||
                        (m_failedAtStart && Tip(TRAY_ID_INSTALLED) != ""),
                    "events are served");
    }
    run.Require(std::set<int>{0, IDOK, IDCANCEL, ID_EXIT}.contains(End()), "a defined exit code");
}

// Unless the call that failed was to remove it. Without memory for its wrapper the parser library
// stays loaded until the next result.
void Story::RequireNothingLeft(const std::string& kind,
                               std::map<std::string, std::size_t> objects) {
    const std::set<std::string> removing{
        "CloseHandle",        "RegCloseKey", "SetEvent", "closesocket", "WaitForMultipleObjects",
        "WaitForSingleObject"};
    if (kind == "allocation") objects.erase("library");
    FaultRun::Require(objects.empty() || removing.contains(kind), "no object is left");
    FaultRun::Require(Tray().empty() || kind == "Shell_NotifyIconA", "the tray is empty");
}

int Story::End() { return m_session->End(); }

// Stamped one second ahead, so that the file is later than the present pass. Renamed into place,
// since a handle that could not be closed would prevent opening the old file for writing.
void Story::WriteFile(const std::string& name, const std::string& text) const {
    const std::string path = m_agentDirectory / "new";
    std::ofstream(path, std::ios::binary) << text;
    const std::chrono::sys_seconds stamp{std::chrono::seconds{
        (simulator::Clock::Now() - simulator::kUnixEpoch) / simulator::kTicksPerSecond + 1}};
    std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(stamp));
    std::filesystem::rename(path, m_agentDirectory / name);
}

void Story::Deliver(const HealthDocument& document) {
    m_hasIcon &= document.HasIcon();
    WriteFile(HLX_HEALTH_FILE, document.Text());
}

void Story::Show(const HealthDocument& document) {
    Deliver(document);
    Pass();
    NoteIcon(document);
}

void Story::Offer(const std::string& name, const std::string& version) const {
    WriteFile(HLX_SWCACHE_FILE, name + ":" + version + "::\n");
}

std::string Story::Record(DWORD result, Age age) {
    const auto ticks = age ? simulator::Clock::Now() - age->count() / 100 : 0;
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
    desktop::Advance(0ms);  // the applet has handled it
}

void Story::WriteText(const char* key, const char* name, const std::string& text) {
    WriteValue(key, name ? name : "", REG_SZ, text + '\0');
}

std::string Story::OwnFile() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}

std::vector<std::string> Story::Frames() const {
    std::vector<std::string> frames;
    for (std::string frame; (frame = ReceivedHex(m_agent, MSG_DONTWAIT)) != "nothing";)
        frames.push_back(frame);
    return frames;
}

std::vector<MSG> Receiver::Received() const {
    desktop::Advance(0ms);
    std::vector<MSG> received;
    for (MSG message; PeekMessageA(&message, m_window, kMessage, kMessage, PM_REMOVE);)
        received.push_back(message);
    return received;
}

std::vector<UINT> Tray() {
    std::vector<UINT> ids;
    for (const desktop::Icon& icon : desktop::Icons()) ids.push_back(icon.id);
    return ids;
}

std::string Tip(UINT icon) { return IconOf(icon).tip; }

desktop::Icon IconOf(UINT icon) { return desktop::FindIcon(icon).value_or(desktop::Icon{}); }

desktop::Dialog Front() {
    const auto dialogs = desktop::Dialogs();
    return dialogs.empty() ? desktop::Dialog{} : dialogs.front();
}
