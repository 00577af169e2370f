// From a notification file to icon, balloon, box and page; and the request for a new assessment.
#include "story.h"

namespace {

class Health : public Story {};

TEST_F(Health, EachStateHasItsBoxIconAndBalloon) {
    const std::string limited = "\r\n\r\nNetwork access may be limited.";
    Start();
    for (const auto& [state, kind, image, more] :
         {std::tuple{"low", MB_ICONEXCLAMATION, 129u, limited},
          {"medium", MB_ICONEXCLAMATION, 130u, limited},
          {"high", MB_ICONINFORMATION, 131u, {}}}) {
        Show({.state = state, .message = "Please call."});
        ASSERT_EQ(desktop::Boxes().size(), 1u) << state;
        EXPECT_EQ(static_cast<int>(desktop::Boxes().at(0).icon), kind) << state;
        desktop::Press("OK");
        const auto icon = IconOf(TRAY_ID_HEALTH);
        const std::string tip = std::string("System health is ") + state;
        EXPECT_EQ(icon.tip, tip);
        EXPECT_EQ(icon.image, image);
        EXPECT_EQ(icon.balloonTitle, "Tessara Link Health");
        EXPECT_EQ(icon.balloonText, tip + "; double-click for details." + more);
        EXPECT_EQ(icon.balloonKind, DWORD{NIIF_USER});
        EXPECT_EQ(icon.version, 3u);
        EXPECT_EQ(icon.balloons, static_cast<int>(image) - 128);
    }
    Show({.state = "critical", .message = "Please call."});
    EXPECT_EQ(desktop::Boxes().at(0).icon, UINT{MB_ICONEXCLAMATION});
    desktop::Press("OK");
    EXPECT_THAT(Tray(), IsEmpty()) << "an unknown state has no icon";
}

TEST_F(Health, WithoutPopUpOrTextThereIsNoBoxAndWithoutUrlNoPage) {
    StartWith({});
    for (const char* elements : {"<Message popup='no'>m</Message><Browser popup='no' url='u'/>",
                                 "<Message popup='yes'></Message><Browser popup='yes' url=''/>"}) {
        Show({.state = "low", .more = elements});
        EXPECT_TRUE(desktop::Boxes().empty() && desktop::Pages().empty()) << elements;
        EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low") << elements;
        Show({});
    }
}

TEST_F(Health, BadDocumentsLeaveTheLastStateInSilence) {
    StartWith({});
    desktop::Forget();
    std::string bomb = "<!DOCTYPE b [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const std::string name = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " \"" + name + name + name + name + "\">";
    }
    bomb += "]><b>&a29;</b>";
    const std::string good = HealthDocument{.state = "low"}.Text();
    for (const std::string& document :
         {std::string(), good.substr(0, good.size() / 2), std::string("<HLXHealthResult>"), bomb}) {
        WriteFile(HLX_HEALTH_FILE, document);
        Pass();
        EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high") << document.substr(0, 40);
    }
    simulator::FailNext("LoadLibraryA", 1, ERROR_MOD_NOT_FOUND);
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high") << "without the parser library";
    EXPECT_THAT(desktop::Journal(), IsEmpty());
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low") << "and a good one is taken again";
}

}  // namespace
