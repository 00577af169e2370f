// An XML text held in memory as one flat list of elements, in the order of their start tags.
//
// There are no links between parents and children: an element has its depth, and text is appended
// to the element that began last. White space at the start of each piece of text that the parser
// delivers is dropped; it delivers a piece at least for each line and each entity reference.
//
//     hlxParseConf tree;
//     hlxConfElement element;
//     if (tree.Create("UTF-8", nullptr) && tree.Parse(text, -1, true) &&
//         tree.FindElement("Enabled", element)) ...
//
// One thread at a time may use an object. Throws std::bad_alloc.
#pragma once

#include <vector>

#include "ExpatImpl.h"
#include "hlxConfElement.h"

class hlxParseConf : public CExpatImpl<hlxParseConf> {
public:
    // Creates no parser; see CExpatImpl::Create. `source` may be null.
    explicit hlxParseConf(const char* source = nullptr);
    ~hlxParseConf() override = default;

    // The lookups copy into `element` and return true, or return false and do not change it. They
    // share the cursor: Next continues after the last item found. Tags are case-sensitive.
    bool GetFirstElement(hlxConfElement& element);
    bool GetNextElement(hlxConfElement& element);
    bool FindElement(const char* tag, hlxConfElement& element);

    void OnStartElement(const char* tag, const char** attributes);
    void OnEndElement();
    void OnCharacterData(const char* data, int length);
    void OnComment(const char* text);
    void OnDefault(const char* data, int length);

    std::string m_source;
    std::string m_version = "0.0";  // of the root element's attribute, if it has one
    std::string m_rootTag;
    std::int32_t m_depth = 0;
    std::vector<hlxConfElement> m_elements;
    std::size_t m_cursor = HLX_CURSOR_AT_END;

private:
    void TakeRoot(const char* tag, const char** attributes);
};
