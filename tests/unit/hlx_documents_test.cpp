// Health documents: what the tree holds after a parse and how its cursors move, how the parser's
// glue treats its parser and a handler that throws, and what the reader hands out for a document of
// every shape, hostile ones among them.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "hlxHealthResult.h"
#include "hlxMalloc.h"
#include "hlxParseConf.h"

namespace {

// One element a line: depth, tag, attributes, text.
std::string Dump(hlxParseConf& tree) {
    std::string text;
    hlxConfElement element;
    for (bool more = tree.GetFirstElement(element); more; more = tree.GetNextElement(element)) {
        text += std::to_string(element.m_depth) + " " + element.m_tag;
        hlxConfAttribute attribute;
        for (bool has = element.GetFirstAttribute(attribute); has;
             has = element.GetNextAttribute(attribute))
            text += " " + attribute.m_name + "=" + attribute.m_value;
        text += " [" + element.m_text + "]\n";
    }
    return text;
}

bool ParseInto(hlxParseConf& tree, const char* text) {
    return tree.Create("UTF-8", nullptr) && tree.Parse(text, -1, true);
}

TEST(Tree, HoldsElementsFlatWithTheTextThatFollowedEach) {
    const struct {
        const char* document;
        const char* dump;
    } cases[] = {
        {"<Message>Hello <b>big</b> world</Message>", "1 Message [Hello ]\n2 b [bigworld]\n"},
        {"<m>one\n   two \r\n\tthree</m>", "1 m [onetwo three]\n"},
        {"<m>a &amp; b</m>", "1 m [a &b]\n"},
        {"<!DOCTYPE m [<!ENTITY e \"in\">]><m>&e;<!-- no --><?pi no?></m>", "1 m [in]\n"},
        {"<r a='1' b=''><e x='2'/>  </r>", "1 r a=1 b= []\n2 e x=2 []\n"},
        {"<n:r xmlns:n='u'>\xC3\xA4</n:r>", "1 n:r xmlns:n=u [\xC3\xA4]\n"},
    };
    for (const auto& each : cases) {
        hlxParseConf tree;
        EXPECT_TRUE(ParseInto(tree, each.document)) << each.document;
        EXPECT_EQ(Dump(tree), each.dump) << each.document;
        EXPECT_EQ(tree.m_depth, 0) << each.document;
    }
}

TEST(Tree, TakesTheVersionFromTheRootOnlyWhateverItsCase) {
    hlxConfElement element;
    hlxConfAttribute attribute("untouched");
    hlxParseConf tree("source");
    ASSERT_TRUE(ParseInto(tree, "<Root Version='2' VERSION='3'><a version='4'/></Root>"));
    EXPECT_EQ(tree.m_version, "2");
    EXPECT_EQ(tree.m_rootTag, "Root");
    EXPECT_EQ(tree.m_source, "source");
    ASSERT_TRUE(tree.FindElement("Root", element));
    EXPECT_FALSE(element.FindAttribute("version", attribute));
    EXPECT_EQ(attribute.m_name, "untouched");

    hlxParseConf bare;
    ASSERT_TRUE(ParseInto(bare, "<r><a version='4'/></r>"));
    EXPECT_EQ(bare.m_version, "0.0");
}

TEST(Tree, SharesOneCursorAmongItsLookups) {
    hlxParseConf tree;
    hlxConfElement element("untouched");
    EXPECT_FALSE(tree.GetFirstElement(element));
    ASSERT_TRUE(ParseInto(tree, "<r><a>1</a><b/><a>2</a></r>"));
    EXPECT_FALSE(tree.GetNextElement(element)) << "nothing has moved the cursor yet";
    EXPECT_EQ(element.m_tag, "untouched");
    for (int again = 0; again < 2; ++again) {
        ASSERT_TRUE(tree.FindElement("a", element));
        EXPECT_EQ(element.m_text, "1") << "a search starts anew";
    }
    ASSERT_TRUE(tree.GetNextElement(element));
    EXPECT_EQ(element.m_tag, "b");
    EXPECT_FALSE(tree.FindElement("A", element));
    EXPECT_FALSE(tree.GetNextElement(element)) << "a failed search leaves the cursor at the end";
}

TEST(Element, CopiesDeeplyAndWithoutTheCursor) {
    hlxConfElement original("tag", nullptr);
    hlxConfAttribute attribute;
    original.AddAttribute(hlxConfAttribute("a", "1"));
    original.AddAttribute(hlxConfAttribute("b", nullptr));
    ASSERT_TRUE(original.FindAttribute("a", attribute));
    hlxConfElement copy(original);
    hlxConfElement assigned;
    assigned = original;
    original.m_attributes.front().SetValue("changed");
    EXPECT_FALSE(copy.GetNextAttribute(attribute));
    EXPECT_FALSE(assigned.GetNextAttribute(attribute));
    ASSERT_TRUE(copy.FindAttribute("a", attribute));
    EXPECT_EQ(attribute.m_value, "1");
    ASSERT_TRUE(copy.GetNextAttribute(attribute));
    EXPECT_EQ(attribute.m_name, "b");
}

// Notes what it is called for, and throws at a tag "bad".
class Recorder : public CExpatImpl<Recorder> {
public:
    void OnStartElement(const char* tag, const char**) {
        m_events += std::string("<") + tag;
        if (std::string(tag) == "bad") throw std::runtime_error("refused");
    }
    void OnEndElement() { m_events += ">"; }
    void OnCharacterData(const char* data, int length) {
        m_events.append(data, std::size_t(length));
    }
    void OnComment(const char* text) { m_events += std::string("!") + text; }
    void OnDefault(const char* data, int length) {
        m_events += '?';
        m_events.append(data, std::size_t(length));
    }
    std::string m_events;
};

TEST(Glue, OwnsOneParserAtATime) {
    Recorder recorder;
    recorder.Destroy();
    ASSERT_TRUE(recorder.Create("", ""));
    ASSERT_TRUE(recorder.Create("UTF-8", nullptr));
    EXPECT_TRUE(recorder.Parse("<a>xy", 4, false));
    EXPECT_TRUE(recorder.Parse("</a><!--c-->", -1, true));
    EXPECT_EQ(recorder.m_events, "<ax>!c");
    recorder.Destroy();
    ASSERT_TRUE(recorder.Create(nullptr, nullptr));
    EXPECT_FALSE(recorder.Parse("<a>", -1, true));
}

TEST(Glue, SwitchesHandlersOff) {
    constexpr char kDocument[] = "<!DOCTYPE a [<!ENTITY e 'in'>]><a>&e;<!--c-->t</a>";
    Recorder off;
    ASSERT_TRUE(off.Create("UTF-8", nullptr));
    off.EnableStartElementHandler(false);
    off.EnableEndElementHandler(false);
    off.EnableCharacterDataHandler(false);
    off.EnableCommentHandler(false);
    off.EnableDefaultHandler(false, true);
    EXPECT_TRUE(off.Parse(kDocument, -1, true));
    EXPECT_EQ(off.m_events, "");

    Recorder unexpanded;
    ASSERT_TRUE(unexpanded.Create("UTF-8", nullptr));
    unexpanded.EnableDefaultHandler(true, false);
    EXPECT_TRUE(unexpanded.Parse("<!DOCTYPE a [<!ENTITY e 'in'>]><a>&e;</a>", -1, true));
    EXPECT_NE(unexpanded.m_events.find("?&e;"), std::string::npos) << unexpanded.m_events;
}

TEST(Glue, HoldsAnExceptionUntilTheParserHasReturned) {
    Recorder recorder;
    ASSERT_TRUE(recorder.Create("UTF-8", nullptr));
    EXPECT_THROW(recorder.Parse("<a><bad/>later<b/></a>", -1, true), std::runtime_error);
    EXPECT_EQ(recorder.m_events, "<a<bad") << "no handler runs behind the one that threw";
    ASSERT_TRUE(recorder.Create("UTF-8", nullptr));
    EXPECT_TRUE(recorder.Parse("<c/>", -1, true));
}

TEST(Glue, LoadsTheLibraryAfreshAfterEachScope) {
    for (int round = 0; round < 3; ++round) {
        CHlxExpatWrapper scope;
        hlxParseConf tree;
        EXPECT_TRUE(ParseInto(tree, "<a/>"));
    }
    CHlxExpatWrapper unused;
}

constexpr std::uint32_t kUntouched = 77;

std::string Address(std::uint32_t address) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&address);
    std::string text;
    for (int i = 0; i < 4; ++i) text += std::to_string(bytes[i]) + (i < 3 ? "." : "");
    return text;
}

// The reader's result code, and all that it handed out in the order of its parameters.
std::string Read(const std::string& document) {
    std::uint32_t flags[7];
    for (std::uint32_t& flag : flags) flag = kUntouched;
    auto& [automatic, enabled, state, icon, popup, open, count] = flags;
    char* raw = nullptr;
    char* message = nullptr;
    char* url = nullptr;
    std::uint32_t* addresses = nullptr;
    const std::int32_t before = g_mf_sem;
    std::string text = std::to_string(hlx_parseHealthResult(document.c_str(), &automatic, &enabled,
                                                            &state, &icon, &raw, &message, &popup,
                                                            &url, &open, &count, &addresses));
    const auto addFlag = [&text](const char* name, std::uint32_t value) {
        if (value != kUntouched) text += std::string(" ") + name + "=" + std::to_string(value);
    };
    const auto addText = [&text](const char* name, char* value) {
        if (value) text += std::string(" ") + name + "='" + value + "'";
        if (value) hlxfree(value);
    };
    addFlag("auto", automatic);
    addFlag("enabled", enabled);
    addFlag("state", state);
    addFlag("icon", icon);
    addText("raw", raw);
    addText("message", message);
    addFlag("popup", popup);
    addText("url", url);
    addFlag("open", open);
    addFlag("count", count);
    for (std::uint32_t i = 0; addresses && i < count; ++i) text += " " + Address(addresses[i]);
    if (addresses) hlxfree(addresses);
    EXPECT_EQ(g_mf_sem, before);
    return text;
}

TEST(Reader, HandsOutTheWholeOfADocument) {
    const std::string result =
        "<HLXHealthResult version=\"1.0\">\n"
        "<AutoInstall>yes</AutoInstall>\n<Enabled>true</Enabled>\n"
        "<HealthState>medium</HealthState>\n<DisplayHealthIcon>true</DisplayHealthIcon>\n"
        "<Message popup=\"true\">Please contact your administrator.</Message>\n"
        "<Browser popup=\"false\" url=\"C:\\Agent\\howto.html\"/>\n"
        "<RestrictIP>10.0.0.1-10.0.0.254</RestrictIP>\n"
        "<RestrictIP>192.168.4.10 - 192.168.4.20</RestrictIP>\n</HLXHealthResult>";
    EXPECT_EQ(Read("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n" + result + "\n"),
              "0 auto=1 enabled=1 state=2 icon=1 raw='" + result +
                  "' message='Please contact your administrator.' popup=1"
                  " url='C:\\Agent\\howto.html' open=0"
                  " count=4 10.0.0.1 10.0.0.254 192.168.4.10 192.168.4.20");
}

TEST(Reader, TakesDocumentsOfEveryShape) {
    const struct {
        const char* document;
        const char* handedOut;
    } cases[] = {
        {"<r/>", "0"},
        {"<r><HealthState>critical</HealthState></r>", "0 state=0"},
        {"<r><HealthState>HIGH</HealthState><HealthState>low</HealthState></r>", "0 state=3"},
        {"<r><healthstate>low</healthstate></r>", "0"},
        {"<r><AutoInstall>TRUE</AutoInstall><Enabled>yEs</Enabled></r>", "0 auto=1 enabled=1"},
        {"<r><AutoInstall>1</AutoInstall><Enabled>on</Enabled></r>", "0 auto=0 enabled=0"},
        {"<r><Enabled>true </Enabled><DisplayHealthIcon>\n true\n</DisplayHealthIcon></r>",
         "0 enabled=0 icon=1"},
        {"<r><Message/></r>", "0 message=''"},
        {"<r><Message popup='no'>a</Message><Message popup='yes'>b</Message></r>",
         "0 message='a' popup=0"},
        {"<r><Browser popup='yes'>text<Message>in</Message></Browser></r>",
         "0 message='in' open=1"},
        {"<Browser url=''/>", "0 url=''"},
        {"<r><RestrictIP>10.1.1.1</RestrictIP></r>", "0 count=2 0.0.0.0 0.0.0.0"},
        {"<r><RestrictIP>10.1.1.1-banana</RestrictIP></r>", "0 count=2 10.1.1.1 255.255.255.255"},
        {"<r><RestrictIP>--1.2.3.4--5.6.7.8-9</RestrictIP></r>", "0 count=2 1.2.3.4 5.6.7.8"},
        {"<r><RestrictIP/><RESTRICTIP>1.1.1.1-2.2.2.2</RESTRICTIP><x/><RestrictIP/></r>",
         "0 count=4 0.0.0.0 0.0.0.0 1.1.1.1 2.2.2.2"},
        {"<r><RESTRICTIP/></r>", "0"},
        {"<r><RestrictIP>1.1.1.1-<b/>2.2.2.2</RestrictIP><RestrictIP/></r>",
         "0 count=2 0.0.0.0 0.0.0.0"},
        {"<HLXHealthResultSummary></HLXHealthResultSummary>", "0"},
        {"<r><HLXHealthResultX/><HLXHealthResult></HLXHealthResult></r>",
         "0 raw='<HLXHealthResultX/><HLXHealthResult></HLXHealthResult>'"},
        {"<!--</HLXHealthResult>--><HLXHealthResult></HLXHealthResult>", "0"},
        {"", "8"},
        {"<r><Enabled>true</Enabled>", "8"},
        {"<r><Enabled>true</Enabled></r><r/>", "8"},
        {"<r>\xFF</r>", "8"},
        {"\xFF\xFE<", "8"},
    };
    for (const auto& each : cases) EXPECT_EQ(Read(each.document), each.handedOut) << each.document;
}

TEST(Reader, TakesNullForWhatIsNotWanted) {
    constexpr char kAll[] =
        "<HLXHealthResult><Enabled>1</Enabled><Message popup='1'>m</Message>"
        "<Browser popup='1' url='u'/><RestrictIP/></HLXHealthResult>";
    EXPECT_EQ(hlx_parseHealthResult(kAll, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr, nullptr, nullptr, nullptr, nullptr),
              HLX_DONE);
}

TEST(Reader, OutlivesHostileDocuments) {
    std::string deep;
    for (int i = 0; i < 100'000; ++i) deep += "<d>";
    EXPECT_EQ(Read(deep), "8");
    for (int i = 0; i < 100'000; ++i) deep += "</d>";
    EXPECT_EQ(Read(deep), "0");

    const std::string large(10'000'000, 'x');
    EXPECT_EQ(Read("<Message>" + large + "</Message>"), "0 message='" + large + "'");

    std::string bomb = "<!DOCTYPE b [<!ENTITY e0 'billion'>";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY e" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) bomb += "&e" + std::to_string(i - 1) + ";";
        bomb += "'>";
    }
    EXPECT_EQ(Read(bomb + "]><b>&e11;</b>"), "8");

    const std::string utf16("<\0r\0/\0>\0", 8);
    EXPECT_EQ(Read(utf16), "8");
}

}  // namespace
