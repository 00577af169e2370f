// One long session with everything that the applet does, from its start to its end.
#include "hlxCommand.h"
#include "story.h"

namespace {

constexpr char kReassessFrame[] = "00 00 00 04 00 00 00 05 00 00 00 00 00";

class WholeSession : public Story {
protected:
    WholeSession() {
        WriteText(HLX_CPLS_KEY, HLX_CPLS_VALUE, SAMPLE_CPL);
        listen(m_connections, 1);
    }

    void ReassessByMenu(const char* tip) {
        EXPECT_TRUE(desktop::RightClick(TRAY_ID_HEALTH));
        const auto menu = desktop::OpenMenu().value_or(desktop::Menu{});
        std::vector<std::string> texts;
        for (const auto& item : menu.items)
            texts.push_back(item.text + (item.isDefault ? " (default)" : ""));
        EXPECT_THAT(texts, ElementsAre("Display last health results (default)", "Reassess health",
                                       "About"));
        EXPECT_TRUE(desktop::Choose("Reassess health"));
        desktop::Advance(2s);  // the time that a frame by TCP takes
        EXPECT_EQ(Tip(TRAY_ID_HEALTH), tip);
    }
    // Opens the dialog of a transient icon, sorts its list and presses the button.
    static void Answer(UINT icon, const char* caption, const char* button) {
        EXPECT_TRUE(desktop::DoubleClick(icon));
        EXPECT_EQ(Front().caption, caption);
        EXPECT_TRUE(desktop::ClickHeader(0));
        EXPECT_TRUE(desktop::ClickHeader(1));
        EXPECT_TRUE(desktop::Press(button));
        EXPECT_EQ(Tip(icon), "");
    }

    const Loopback m_connections{SOCK_STREAM | SOCK_NONBLOCK, 30024};
};

TEST_F(WholeSession, EverythingOnce) {
    Offer("Agent", "4.2.7-2");
    StartWith({.state = "low", .message = "Please call.", .url = "http://help"});
    const auto boxes = desktop::Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].caption, "Tessara Link Health");
    EXPECT_EQ(boxes[0].text, "Please call.");
    EXPECT_TRUE(boxes[0].topmost);
    EXPECT_THAT(boxes[0].buttons, ElementsAre("OK"));
    EXPECT_THAT(desktop::Pages(), IsEmpty());
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "") << "before the box is answered";
    desktop::PressKey(VK_RETURN);
    EXPECT_THAT(desktop::Pages(), ElementsAre("http://help"));

    ReassessByMenu("System health is low");
    EXPECT_THAT(Frames(), ElementsAre(kReassessFrame));
    Show({.state = "medium"});
    g_useTcp = -1;  // as in a process that starts with the setting
    WriteValue(HLX_AGENT_KEY, "UseTCP", REG_DWORD, {"\1\0\0\0", 4});
    ReassessByMenu("System health is medium");
    const SOCKET connection = accept(m_connections, nullptr, nullptr);
    EXPECT_EQ(ReceivedHex(connection), kReassessFrame);
    closesocket(connection);
    g_useTcp = 0;

    Answer(TRAY_ID_UPDATES, "Install Tessara Link Updates", "Yes");
    Report(HLX_DOWNLOAD_RESULTS_KEY, "a.msi", kFailed);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "b.msi", kFailed);
    Answer(TRAY_ID_DOWNLOADS, "Failed Tessara Link Update Downloads", "Yes");
    EXPECT_EQ(Frames().size(), 2u);
    Report(HLX_INSTALL_RESULTS_KEY, OwnFile(), ERROR_SUCCESS_REBOOT_REQUIRED);
    Report(HLX_INSTALL_RESULTS_KEY, "unknown.msi", 0);
    Answer(TRAY_ID_INSTALLED, "Installed Tessara Link Updates", "Yes");
    EXPECT_EQ(desktop::Reboots().size(), 1u);

    EXPECT_TRUE(desktop::DoubleClick(TRAY_ID_HEALTH));
    EXPECT_TRUE(desktop::RightClick(TRAY_ID_HEALTH));
    EXPECT_TRUE(desktop::Choose("About"));
    EXPECT_EQ(desktop::Dialogs().size(), 2u);
    desktop::CloseWindow();
    desktop::CloseWindow();
    Show({});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high");
    Show({.icon = "no"});
    EXPECT_THAT(Tray(), IsEmpty());
    EXPECT_EQ(End(), IDCANCEL);
}

}  // namespace
