// Health documents: the tree after a parse and its cursors, the parser class with handlers that
// throw, and the results of the reader for documents of all forms, including malicious ones.

#include "hlxHealthReport.h"
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
        const char *document, *dump;
        const char* version = "0.0";
    } cases[] = {
        {"<Message>Hello <b>big</b> world</Message>", "1 Message [Hello ]\n2 b [bigworld]\n"},
        {"<m>one\n   two \r\n\tthree</m>", "1 m [onetwo three]\n"},
        {"<m>a &amp; b</m>", "1 m [a &b]\n"},
        {"<!DOCTYPE m [<!ENTITY e \"in\">]><m>&e;<!-- no --><?pi no?></m>", "1 m [in]\n"},
        {"<r a='1' b=''><e version='2'/>  </r>", "1 r a=1 b= []\n2 e version=2 []\n"},
        {"<n:r xmlns:n='u'>\xC3\xA4</n:r>", "1 n:r xmlns:n=u [\xC3\xA4]\n"},
        {"<r Version='2' VERSION='3'><a version='4'/></r>",
         "1 r Version=2 VERSION=3 []\n2 a version=4 []\n", "2"},
    };
    for (const auto& each : cases) {
        hlxParseConf tree;
        EXPECT_TRUE(ParseInto(tree, each.document)) << each.document;
        EXPECT_EQ(Dump(tree), each.dump) << each.document;
        EXPECT_EQ(tree.m_version, each.version) << each.document;
        EXPECT_EQ(tree.m_depth, 0) << each.document;
    }
}

TEST(Tree, SharesOneCursorAmongItsLookups) {
    hlxParseConf tree;
    hlxConfElement element("untouched");
    hlxConfAttribute attribute("untouched");
    EXPECT_FALSE(tree.GetFirstElement(element));
    ASSERT_TRUE(ParseInto(tree, "<r><a>1</a><b None=''/><a>2</a></r>"));
    EXPECT_FALSE(tree.GetNextElement(element)) << "nothing has moved the cursor yet";
    EXPECT_EQ(element.m_tag, "untouched");
    for (int again = 0; again < 2; ++again) {
        ASSERT_TRUE(tree.FindElement("a", element));
        EXPECT_EQ(element.m_text, "1") << "a search starts anew";
    }
    ASSERT_TRUE(tree.GetNextElement(element));
    EXPECT_EQ(element.m_tag, "b");
    EXPECT_FALSE(element.FindAttribute("none", attribute));
    EXPECT_EQ(attribute.m_name, "untouched");
    EXPECT_FALSE(tree.FindElement("A", element));
    EXPECT_FALSE(tree.GetNextElement(element)) << "a failed search leaves the cursor at the end";
}

TEST(Element, IsCopiedWithoutTheCursor) {
    hlxConfElement original("tag", nullptr), assigned;
    hlxConfAttribute attribute;
    for (const char* name : {"a", "b"}) original.AddAttribute(hlxConfAttribute(name, nullptr));
    ASSERT_TRUE(original.FindAttribute("a", attribute));
    original.m_attributes.front().SetValue("1");
    assigned = original;
    for (hlxConfElement copy : {hlxConfElement(original), assigned}) {
        EXPECT_FALSE(copy.GetNextAttribute(attribute));
        EXPECT_TRUE(copy.FindAttribute("a", attribute) && attribute.m_value == "1");
    }
}

// Records its calls, and throws at a tag "bad".
class Recorder : public CExpatImpl<Recorder> {
public:
    void OnStartElement(const char* tag, const char**) {
        m_events += std::string("<") + tag;
        if (std::string(tag) == "bad") throw std::runtime_error("refused");
    }
    void OnEndElement() { m_events += ">"; }
    void OnCharacterData(const char* data, int length) { m_events += Text(data, length); }
    void OnComment(const char* text) { m_events += std::string("!") + text; }
    void OnDefault(const char* data, int length) { m_events += "?" + Text(data, length); }
    std::string m_events;

private:
    static std::string Text(const char* data, int length) {
        return {data, static_cast<std::size_t>(length)};
    }
};

TEST(Glue, OwnsOneParserAtATime) {
    Recorder recorder;
    recorder.Destroy();
    ASSERT_TRUE(recorder.Create("", ""));
    ASSERT_TRUE(recorder.Create("UTF-8", nullptr));
    EXPECT_TRUE(recorder.Parse("<a>xy", 4, false));
    EXPECT_TRUE(recorder.Parse("</a><!--c-->", -1, true));
    EXPECT_EQ(recorder.m_events, "<ax>!c");
    ASSERT_TRUE(recorder.Create(nullptr, nullptr));
    EXPECT_THROW(recorder.Parse("<a><bad/>later<b/></a>", -1, true), std::runtime_error);
    EXPECT_EQ(recorder.m_events, "<ax>!c<a<bad") << "no handler runs behind the one that threw";
    ASSERT_TRUE(recorder.Create("UTF-8", nullptr));
    EXPECT_TRUE(recorder.Parse("<c/>", -1, true));
}

TEST(Glue, SwitchesHandlersOff) {
    constexpr char kDocument[] = "<!DOCTYPE a [<!ENTITY e 'in'>]><a>&e;<!--c-->t</a>";
    Recorder recorder;
    ASSERT_TRUE(recorder.Create("UTF-8", nullptr));
    recorder.EnableStartElementHandler(false);
    recorder.EnableEndElementHandler(false);
    recorder.EnableCharacterDataHandler(false);
    recorder.EnableCommentHandler(false);
    recorder.EnableDefaultHandler(false, true);
    EXPECT_TRUE(recorder.Parse(kDocument, -1, true));
    EXPECT_EQ(recorder.m_events, "");
    ASSERT_TRUE(recorder.Create("UTF-8", nullptr));
    recorder.EnableDefaultHandler(true, false);
    EXPECT_TRUE(recorder.Parse(kDocument, -1, true));
    EXPECT_NE(recorder.m_events.find("?&e;"), std::string::npos) << "not expanded";
}

// The result code of the reader and all its results: numbers, texts, addresses.
std::string Read(const std::string& document) {
    constexpr std::uint32_t kUntouched = 77;
    const std::int32_t outstanding = g_mf_sem;
    std::ostringstream text;
    {
        HealthReport read;
        const std::pair<const char*, std::uint32_t*> numbers[] = {
            {" auto=", &read.autoInstall},   {" enabled=", &read.enabled},
            {" state=", &read.state},        {" icon=", &read.displayIcon},
            {" popup=", &read.messagePopup}, {" open=", &read.urlPopup}};
        for (const auto& [name, value] : numbers) *value = kUntouched;
        text << read.Read(document.c_str());
        for (const auto& [name, value] : numbers)
            if (*value != kUntouched) text << name << *value;
        const std::pair<const char*, const char*> texts[] = {
            {" raw='", read.rawResult}, {" message='", read.message}, {" url='", read.url}};
        for (const auto& [name, value] : texts)
            if (value) text << name << value << "'";
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(read.restrictAddresses);
        for (std::uint32_t i = 0; i < 4 * read.restrictCount; ++i)
            text << (i % 4 ? "." : " ") << int{bytes[i]};
    }
    EXPECT_EQ(g_mf_sem, outstanding);
    return text.str();
}

TEST(Reader, ReturnsAllValuesOfADocument) {
    const std::string span =
        "<HLXHealthResult version=\"1.0\">\n"
        "<AutoInstall>yes</AutoInstall>\n<Enabled>true</Enabled>\n"
        "<HealthState>medium</HealthState>\n<DisplayHealthIcon>true</DisplayHealthIcon>\n"
        "<Message popup=\"true\">\xC3\x84ndern Sie nichts.</Message>\n"
        "<Browser popup=\"false\" url=\"C:\\Agent\\howto.html\"/>\n"
        "<RestrictIP>10.0.0.1-10.0.0.254</RestrictIP>\n"
        "<RestrictIP>192.168.4.10 - 192.168.4.20</RestrictIP>\n</HLXHealthResult>";
    EXPECT_EQ(Read("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n" + span + "\n"),
              "0 auto=1 enabled=1 state=2 icon=1 popup=1 open=0 raw='" + span +
                  "' message='\xC3\x84ndern Sie nichts.' url='C:\\Agent\\howto.html'"
                  " 10.0.0.1 10.0.0.254 192.168.4.10 192.168.4.20");
    EXPECT_EQ(hlx_parseHealthResult(span.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              HLX_DONE);
}

TEST(Reader, ReadsDocumentsOfEveryForm) {
    const std::pair<const char*, const char*> cases[] = {
        {"<r/>", "0"},
        {"<r><HealthState>HIGH</HealthState><HealthState>low</HealthState></r>", "0 state=3"},
        {"<r><HealthState>critical</HealthState></r>", "0 state=0"},
        {"<r><healthstate>low</healthstate></r>", "0"},
        {"<r><AutoInstall>TRUE</AutoInstall><Enabled>yEs</Enabled></r>", "0 auto=1 enabled=1"},
        {"<r><AutoInstall>1</AutoInstall><Enabled>on</Enabled></r>", "0 auto=0 enabled=0"},
        {"<r><Enabled>true </Enabled><DisplayHealthIcon>\n true\n</DisplayHealthIcon></r>",
         "0 enabled=0 icon=1"},
        {"<r><Message/></r>", "0 message=''"},
        {"<r><Message popup='no'>a</Message><Message popup='yes'>b</Message></r>",
         "0 popup=0 message='a'"},
        {"<r><Browser popup='yes'>text<Message>in</Message></Browser></r>",
         "0 open=1 message='in'"},
        {"<Browser url=''/>", "0 url=''"},
        {"<r><RestrictIP>10.1.1.1</RestrictIP></r>", "0 0.0.0.0 0.0.0.0"},
        {"<r><RestrictIP>10.1.1.1-banana</RestrictIP></r>", "0 10.1.1.1 255.255.255.255"},
        {"<r><RestrictIP>--1.2.3.4--5.6.7.8-9</RestrictIP></r>", "0 1.2.3.4 5.6.7.8"},
        {"<r><RestrictIP/><RESTRICTIP>1.1.1.1-2.2.2.2</RESTRICTIP><x/><RestrictIP/></r>",
         "0 0.0.0.0 0.0.0.0 1.1.1.1 2.2.2.2"},
        {"<r><RESTRICTIP/></r>", "0"},
        {"<r><RestrictIP>1.1.1.1-<b/>2.2.2.2</RestrictIP><RestrictIP/></r>", "0 0.0.0.0 0.0.0.0"},
        {"<HLXHealthResultSummary></HLXHealthResultSummary>", "0"},
        {"<r><HLXHealthResultX/><HLXHealthResult></HLXHealthResult></r>",
         "0 raw='<HLXHealthResultX/><HLXHealthResult></HLXHealthResult>'"},
        {"<!--</HLXHealthResult>--><HLXHealthResult></HLXHealthResult>", "0"},
        {"", "8"},
        {"<r><Enabled>true</Enabled></r><r/>", "8"},
        {"<r>\xFF</r>", "8"},
    };
    for (const auto& [document, handedOut] : cases)
        EXPECT_EQ(Read(document), handedOut) << document;
}

TEST(Reader, ReadsDeepAndLargeDocuments) {
    std::string deep;
    for (int i = 0; i < 100'000; ++i) deep += "<d>";
    EXPECT_EQ(Read(deep), "8");
    for (int i = 0; i < 100'000; ++i) deep += "</d>";
    EXPECT_EQ(Read(deep), "0");
    const std::string large(10'000'000, 'x');
    EXPECT_EQ(Read("<Message>" + large + "</Message>"), "0 message='" + large + "'");
}

}  // namespace
