// From a notification file to icon, balloon, box and page; and the request for a new assessment.
#include "story.h"

namespace {

class Health : public Story {};

TEST_F(Health, EachStateHasItsTooltipAndBalloon) {
    const std::string limited = "\r\n\r\nNetwork access may be limited.";
    Start();
    for (const auto& [state, image, more] :
         {std::tuple{"low", 129u, limited}, {"medium", 130u, limited}, {"high", 131u, {}}}) {
        Show({.state = state});
        const auto icon = desktop::FindIcon(TRAY_ID_HEALTH).value();
        const std::string tip = std::string("System health is ") + state;
        EXPECT_EQ(icon.tip, tip);
        EXPECT_EQ(icon.image, image);
        EXPECT_EQ(icon.balloonTitle, "Tessara Link Health");
        EXPECT_EQ(icon.balloonText, tip + "; double-click for details." + more);
        EXPECT_EQ(icon.balloonKind, DWORD{NIIF_USER});
        EXPECT_EQ(icon.version, 3u);
        EXPECT_EQ(icon.balloons, static_cast<int>(image) - 128);
    }
}

TEST_F(Health, BoxThenPageThenIcon) {
    StartWith({});
    Show({.state = "low", .message = "Please call.", .url = "http://help"});
    const auto boxes = desktop::Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].caption, "Tessara Link Health");
    EXPECT_EQ(boxes[0].text, "Please call.");
    EXPECT_TRUE(boxes[0].topmost);
    EXPECT_THAT(boxes[0].buttons, ElementsAre("OK"));
    EXPECT_THAT(desktop::Pages(), IsEmpty());
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high") << "old until the box is answered";
    ASSERT_TRUE(desktop::Press("OK"));
    EXPECT_THAT(desktop::Pages(), ElementsAre("http://help"));
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low");
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

TEST_F(Health, TheBoxHasTheKindOfItsStateAndAnUnknownStateNoIcon) {
    StartWith({.state = "medium"});
    for (const auto& [state, kind] : {std::pair{"low", MB_ICONEXCLAMATION},
                                      {"high", MB_ICONINFORMATION},
                                      {"critical", MB_ICONEXCLAMATION}}) {
        Show({.state = state, .message = "Please call."});
        ASSERT_EQ(desktop::Boxes().size(), 1u) << state;
        EXPECT_EQ(static_cast<int>(desktop::Boxes().at(0).icon), kind) << state;
        desktop::Press("OK");
    }
    EXPECT_THAT(Tray(), IsEmpty());
}

TEST_F(Health, BadDocumentsLeaveTheLastStateInSilence) {
    StartWith({});
    desktop::Forget();
    std::string deep, bomb = "<!DOCTYPE b [<!ENTITY a0 \"ha\">";
    for (int i = 0; i < 100'000; ++i) deep += "<a>";
    for (int i = 1; i < 30; ++i) {
        const std::string name = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " \"" + name + name + name + name + "\">";
    }
    bomb += "]><b>&a29;</b>";
    const std::string good = HealthDocument{.state = "low"}.Text();
    std::string wide;
    for (const char byte : good) wide += {byte, '\0'};
    for (const std::string& document :
         {std::string(), good.substr(0, good.size() / 2), std::string("<HLXHealthResult>"), wide,
          std::string(10'000'000, 'x'), deep, bomb}) {
        WriteFile(HLX_HEALTH_FILE, document);
        Pass();
        EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high") << document.substr(0, 40);
    }
    EXPECT_THAT(desktop::Journal(), IsEmpty());
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low") << "and a good one is taken again";
}

}  // namespace
