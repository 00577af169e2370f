// What raises the three transient icons, and what does not.
#include "story.h"

namespace {

class UpdateEvents : public Story {};

TEST_F(UpdateEvents, AnOfferIsAnnouncedWithTheFirstResult) {
    Offer("Agent", "4.2.7-2");
    Deliver({.more = "<"});
    Start();
    Pass();
    Offer("Agent", "4.2.7-2");
    Pass();
    EXPECT_THAT(Tray(), IsEmpty()) << "no announcement before a health result";
    Show({.enabled = "no"});
    ASSERT_THAT(Tray(), ElementsAre(TRAY_ID_UPDATES)) << "one without an icon will do";
    const auto icon = desktop::FindIcon(TRAY_ID_UPDATES);
    EXPECT_EQ(icon->image, 128u);
    EXPECT_EQ(icon->tip, "Tessara Link  software updates are available for download.");
    EXPECT_EQ(icon->balloonTitle, "Tessara Link");
    EXPECT_EQ(icon->balloonText,
              "Software updates are available for download.\r\n\r\nDouble-click for details.");
    EXPECT_EQ(icon->version, 3u);
    Offer("Agent", "4.2.7-3");
    Pass();
    EXPECT_EQ(IconOf(TRAY_ID_UPDATES).balloons, 1) << "it is shown already";
}

TEST_F(UpdateEvents, RecentRecordsAreAnnounced) {
    const struct {
        const char *what, *key;
        Age age;
        DWORD result;
        bool isAnnounced;
    } cases[] = {
        {"an installation", HLX_INSTALL_RESULTS_KEY, 600s, 0, true},
        {"a bad result", HLX_INSTALL_RESULTS_KEY, 0s, 1603, true},
        {"an old one", HLX_INSTALL_RESULTS_KEY, 601s, 0, false},
        {"a failure", HLX_DOWNLOAD_RESULTS_KEY, 0s, 0x80000000, true},
        {"a failure without a time", HLX_DOWNLOAD_RESULTS_KEY, {}, kFailed, true},
        {"a success without a time", HLX_DOWNLOAD_RESULTS_KEY, {}, 0, false},
        {"a positive code", HLX_DOWNLOAD_RESULTS_KEY, 0s, 0x7FFFFFFF, false},
    };
    StartWith({});
    for (const auto& each : cases) {
        Report(each.key, "value", each.result, each.age);
        const auto tray = Tray();
        EXPECT_EQ(tray.size(), each.isAnnounced ? 2u : 1u) << each.what;
        if (tray.size() < 2) continue;
        desktop::DoubleClick(tray.back());  // its dialog takes the icon away
        desktop::CloseWindow();
    }
}

TEST_F(UpdateEvents, OnlyInstallationsAreAnnouncedAtTheStart) {
    Report(HLX_INSTALL_RESULTS_KEY, "x", 0);
    Report(HLX_DOWNLOAD_RESULTS_KEY, "y", kFailed);
    Start();
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_INSTALLED));
    EXPECT_EQ(Tip(TRAY_ID_INSTALLED), "Tessara Link software updates have been installed.");
    EXPECT_EQ(IconOf(TRAY_ID_INSTALLED).balloonText,
              "Tessara Link software updates have been installed.\r\n\r\n"
              "Double-click for details.");
    Report(HLX_DOWNLOAD_RESULTS_KEY, "z", 0);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_INSTALLED, TRAY_ID_DOWNLOADS))
        << "any change has the whole key looked at";
    EXPECT_EQ(Tip(TRAY_ID_DOWNLOADS),
              "Error downloading one or more Tessara Link software update files.");
    EXPECT_EQ(IconOf(TRAY_ID_DOWNLOADS).balloonText,
              "One or more Tessara Link software update files could not be downloaded.\r\n\r\n"
              "Double-click for more details.");
}

TEST_F(UpdateEvents, AScanOverAKeyThatFailsForGoodComesToAnEnd) {
    StartWith({});
    for (const DWORD error : {ERROR_KEY_DELETED, ERROR_MORE_DATA}) {
        simulator::FailNext("RegEnumValueA", simulator::kEveryCall, error);
        Report(HLX_INSTALL_RESULTS_KEY, "x", 0);
        EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
        EXPECT_EQ(simulator::ClearFaults(), "");
    }
}

TEST_F(UpdateEvents, AScanPassesOverWhatItCannotRead) {
    const std::string longest(8191, 'n');
    StartWith({});
    Report(HLX_INSTALL_RESULTS_KEY, longest + "n", 0);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
    Report(HLX_INSTALL_RESULTS_KEY, longest, 0);
    EXPECT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH, TRAY_ID_INSTALLED));
    for (int i = 0; i < 100; ++i) Report(HLX_DOWNLOAD_RESULTS_KEY, std::to_string(i), 0);
    for (const auto& [failures, icons] : {std::pair{100, 2u}, {99, 3u}}) {
        simulator::FailNext("RegEnumValueA", failures, ERROR_ACCESS_DENIED);
        Report(HLX_DOWNLOAD_RESULTS_KEY, "z", kFailed);
        EXPECT_EQ(Tray().size(), icons) << failures << " failures in a row";
    }
    simulator::FailNext("RegQueryInfoKeyA", 1, ERROR_ACCESS_DENIED);
    desktop::DoubleClick(TRAY_ID_DOWNLOADS);
    const auto dialog = Front();
    ASSERT_TRUE(dialog.FirstList());
    EXPECT_EQ(dialog.FirstList()->rows.size(), 1u) << "the batch is measured from now";
}

}  // namespace
