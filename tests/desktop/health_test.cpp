// From a notification file to icon, balloon, box and page; and the request for a new assessment.
#include "story.h"

namespace {

class Health : public Story {};

TEST_F(Health, EachStateHasItsTooltipAndBalloon) {
    StartWith({.state = "low"});
    const auto icon = desktop::FindIcon(TRAY_ID_HEALTH);
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->image, 129u);
    EXPECT_EQ(icon->tip, "System health is low");
    EXPECT_EQ(icon->balloonTitle, "Tessara Link Health");
    EXPECT_EQ(icon->balloonText,
              "System health is low; double-click for details.\r\n\r\nNetwork access may be "
              "limited.");
    EXPECT_EQ(icon->balloonKind, DWORD{NIIF_USER});
    EXPECT_EQ(icon->version, 3u);
    Show({.state = "medium"});
    EXPECT_EQ(desktop::FindIcon(TRAY_ID_HEALTH)->balloonText,
              "System health is medium; double-click for details.\r\n\r\nNetwork access may be "
              "limited.");
    Show({.state = "high"});
    EXPECT_EQ(desktop::FindIcon(TRAY_ID_HEALTH)->balloonText,
              "System health is high; double-click for details.");
    EXPECT_EQ(desktop::FindIcon(TRAY_ID_HEALTH)->balloons, 3);
}

TEST_F(Health, ARepeatedStateDoesNothingAtAll) {
    StartWith({});
    Show({.message = "new text", .url = "http://new"});
    EXPECT_THAT(desktop::Boxes(), IsEmpty());
    EXPECT_THAT(desktop::Pages(), IsEmpty());
    EXPECT_EQ(desktop::FindIcon(TRAY_ID_HEALTH)->balloons, 1);
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

TEST_F(Health, TheBoxHasTheKindOfItsStateAndAnUnknownStateNoIcon) {
    StartWith({.state = "medium"});
    for (const auto& [state, kind] : {std::pair{"low", MB_ICONEXCLAMATION},
                                      {"high", MB_ICONINFORMATION},
                                      {"critical", MB_ICONEXCLAMATION}}) {
        Show({.state = state, .message = "Please call."});
        ASSERT_EQ(desktop::Boxes().size(), 1u) << state;
        EXPECT_EQ(static_cast<int>(desktop::Boxes()[0].icon), kind) << state;
        desktop::Press("OK");
    }
    EXPECT_THAT(Tray(), IsEmpty());
}

TEST_F(Health, WhileABoxIsOpenTheFirstResultHasTheLastWord) {
    StartWith({});
    Show({.state = "low", .message = "first", .url = "http://first"});
    Show({.state = "medium", .message = "second", .url = "http://second"});
    ASSERT_EQ(desktop::Boxes().size(), 1u);
    EXPECT_EQ(desktop::Boxes()[0].text, "first");
    EXPECT_THAT(desktop::Pages(), ElementsAre("http://second"));
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is medium");
    ASSERT_TRUE(desktop::Press("OK"));
    EXPECT_THAT(desktop::Pages(), ElementsAre("http://second", "http://first"));
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low");
}

TEST_F(Health, ARefusedBoxOrPageDoesNotKeepTheIconBack) {
    StartWith({});
    machine::FailNext("MessageBoxA", 1, ERROR_NOT_ENOUGH_MEMORY);
    machine::FailNext("ShellExecuteA", 1, ERROR_FILE_NOT_FOUND);
    Show({.state = "low", .message = "m", .url = "u"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low");
}

TEST_F(Health, SwitchedOffRemovesTheIconWithoutBoxOrPage) {
    const HealthDocument off[] = {
        {.state = "low", .enabled = "no", .message = "m", .url = "u"},
        {.state = "low", .enabled = {}, .message = "m", .url = "u"},
        {.state = "low", .icon = "off", .message = "m", .url = "u"},
        {.state = "low", .icon = {}, .message = "m", .url = "u"},
    };
    StartWith({});
    for (const HealthDocument& document : off) {
        Show({});
        ASSERT_THAT(Tray(), ElementsAre(TRAY_ID_HEALTH));
        Show(document);
        EXPECT_THAT(Tray(), IsEmpty()) << document.Text();
    }
    EXPECT_THAT(desktop::Boxes(), IsEmpty());
    EXPECT_THAT(desktop::Pages(), IsEmpty());
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
        WriteFile("healthnotif.txt", document);
        Pass();
        EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high") << document.substr(0, 40);
    }
    EXPECT_THAT(desktop::Journal(), IsEmpty());
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low") << "and a good one is taken again";
}

TEST_F(Health, WithoutItsParserLibraryTheResultIsDropped) {
    StartWith({});
    machine::FailNext("LoadLibraryA", 2, ERROR_MOD_NOT_FOUND);
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high");
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low");
}

TEST_F(Health, WhatTheShellRefusesIsTriedAgainWithTheNextResult) {
    machine::FailNext("Shell_NotifyIconA", 1, 0, NIM_ADD);
    StartWith({.state = "low"});
    EXPECT_THAT(Tray(), IsEmpty());
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low") << "added, since none stands";
    machine::FailNext("Shell_NotifyIconA", 1, 0, NIM_MODIFY);
    Show({.state = "medium"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low");
    Show({.state = "medium"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is medium");
}

TEST_F(Health, OneReassessRequestAtATimeUntilAnyResultComes) {
    const char frame[] = "00 00 00 04 00 00 00 05 00 00 00 00 00";
    StartWith({});
    desktop::PostCommand(ID_REASSESS);
    EXPECT_THAT(Frames(), ElementsAre(frame));
    desktop::PostCommand(ID_REASSESS);
    EXPECT_THAT(Frames(), IsEmpty()) << "the answer is still to come";
    WriteFile("healthnotif.txt", "no document at all");
    Pass();
    desktop::PostCommand(ID_REASSESS);
    EXPECT_THAT(Frames(), ElementsAre(frame));
    machine::FailNext("sendto", 1, WSAENETUNREACH);
    Show({});
    desktop::PostCommand(ID_REASSESS);
    desktop::PostCommand(ID_REASSESS);
    EXPECT_THAT(Frames(), ElementsAre(frame)) << "the first of the two failed and left no mark";
}

TEST_F(Health, AFileThatAWriterHoldsIsNotRead) {
    StartWith({});
    Deliver({.state = "low"});
    std::FILE* writer = std::fopen((m_agentDirectory / "healthnotif.txt").c_str(), "a");
    Pass();
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is high");
    std::fclose(writer);
    Show({.state = "low"});
    EXPECT_EQ(Tip(TRAY_ID_HEALTH), "System health is low");
}

}  // namespace
