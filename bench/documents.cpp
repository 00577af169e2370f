// An XML document read into a tree, and a health result read from it, against the parser alone and
// against other trees.

#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "comparison.h"
#include "health_document.h"
#include "hlxHealthReport.h"
#include "hlxParseConf.h"

namespace {

class Parser {
public:
    // All handlers empty.
    Parser() {
        m_expat.SetStartElementHandler(m_parser.get(), [](void*, const char*, const char**) {});
        m_expat.SetEndElementHandler(m_parser.get(), [](void*, const char*) {});
        m_expat.SetCharacterDataHandler(m_parser.get(), [](void*, const char*, int) {});
        m_expat.SetDefaultHandlerExpand(m_parser.get(), [](void*, const char*, int) {});
        m_expat.SetCommentHandler(m_parser.get(), [](void*, const char*) {});
    }

    void Parse(const std::string& document) {
        m_expat.Parse(m_parser.get(), document.c_str(), static_cast<int>(document.size()), true);
    }

protected:
    const ExpatFunctions& m_expat = *hlx_expatFunctions();
    const std::unique_ptr<XML_ParserStruct, decltype(ExpatFunctions::ParserFree)> m_parser{
        m_expat.ParserCreate_MM("UTF-8", nullptr, nullptr), m_expat.ParserFree};
};

// What one writes by hand to keep what the tree keeps.
class VectorOfElements : public Parser {
public:
    VectorOfElements() {
        m_expat.SetUserData(m_parser.get(), this);
        m_expat.SetStartElementHandler(
            m_parser.get(), [](void* user, const char* tag, const char** attributes) {
                auto& self = *static_cast<VectorOfElements*>(user);
                Element& element = self.m_elements.emplace_back();
                element.tag = tag;
                element.depth = ++self.m_depth;
                for (; *attributes; attributes += 2)
                    element.attributes.emplace_back(attributes[0], attributes[1]);
            });
        m_expat.SetEndElementHandler(m_parser.get(), [](void* user, const char*) {
            --static_cast<VectorOfElements*>(user)->m_depth;
        });
        m_expat.SetCharacterDataHandler(
            m_parser.get(), [](void* user, const char* data, int length) {
                const char* const end = data + length;
                while (data < end && std::isspace(static_cast<unsigned char>(*data))) ++data;
                static_cast<VectorOfElements*>(user)->m_elements.back().text.append(data, end);
            });
    }

private:
    struct Element {
        std::string tag, text;
        std::vector<std::pair<std::string, std::string>> attributes;
        int depth = 0;
    };
    std::vector<Element> m_elements;
    int m_depth = 0;
};

void ReadTree(const std::string& document) {
    hlxParseConf tree;
    tree.Create("UTF-8", nullptr);
    tree.Parse(document.c_str(), static_cast<int>(document.size()), true);
}

void RegisterDocument(const std::string& document, double toBare, double resultToBare) {
    const std::string size = std::to_string(document.size()) + " bytes";
    const auto bare = Repeat([document] { Parser().Parse(document); });

    const std::string tree = "tree of " + size;
    Compare(tree, "ours", 0, Repeat([document] { ReadTree(document); }));
    Compare(tree, "expat with empty handlers", toBare, bare);
    Compare(tree, "expat into a vector", 1.05,
            Repeat([document] { VectorOfElements().Parse(document); }));
    Compare(tree, "pugixml", 0, Repeat([document] {
                pugi::xml_document other;
                other.load_buffer(document.data(), document.size());
            }));

    const std::string result = "health result of " + size;
    Compare(result, "ours", 0, Repeat([document] { HealthReport().Read(document.c_str()); }));
    Compare(result, "expat with empty handlers", resultToBare, bare);
}

}  // namespace

void RegisterDocuments() {
    hlx_expatFunctions();  // loads the parser's library
    RegisterDocument(HealthDocument(0), 1.2, 1.4);
    RegisterDocument(HealthDocument(5), 1.2, 1.4);
    RegisterDocument(HealthDocument(11'000), 1.6, 1.8);
}
