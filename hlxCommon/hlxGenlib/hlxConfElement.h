// An XML element: its tag, the text that was gathered for it, and its attributes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hlxConfAttribute.h"
#include "hlxListCursor.h"

class hlxConfElement {
public:
    // A null leaves that string empty.
    explicit hlxConfElement(const char* tag = nullptr, const char* text = nullptr);

    // Copies are deep. A copy's cursor is at its own end.
    hlxConfElement(const hlxConfElement& other);
    hlxConfElement& operator=(const hlxConfElement& other);
    hlxConfElement(hlxConfElement&&) = default;
    hlxConfElement& operator=(hlxConfElement&&) = default;
    virtual ~hlxConfElement() = default;

    void AddAttribute(const hlxConfAttribute& attribute) { m_attributes.push_back(attribute); }
    void AppendText(char c) { m_text += c; }

    // The lookups copy into `attribute` and return true, or leave it alone and return false. They
    // share the cursor: Next goes on from what any of them found last. Names compare with case.
    bool GetFirstAttribute(hlxConfAttribute& attribute);
    bool GetNextAttribute(hlxConfAttribute& attribute);
    bool FindAttribute(const char* name, hlxConfAttribute& attribute);

    std::string m_tag;
    std::string m_text;
    std::vector<hlxConfAttribute> m_attributes;  // in the order of the document
    std::size_t m_attrCursor = HLX_CURSOR_AT_END;
    std::int32_t m_depth = 0;  // 1 for the root element
};
