// An XML element: its tag, its text and its attributes.
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

    // Copies are deep. The cursor of a copy is at its end.
    hlxConfElement(const hlxConfElement& other);
    hlxConfElement& operator=(const hlxConfElement& other);
    hlxConfElement(hlxConfElement&&) = default;
    hlxConfElement& operator=(hlxConfElement&&) = default;
    virtual ~hlxConfElement() = default;

    void AddAttribute(const hlxConfAttribute& attribute) { m_attributes.push_back(attribute); }
    void AppendText(char c) { m_text += c; }

    // The lookups copy into `attribute` and return true, or return false and do not change it. They
    // share the cursor: Next continues after the last item found. Names are case-sensitive.
    bool GetFirstAttribute(hlxConfAttribute& attribute);
    bool GetNextAttribute(hlxConfAttribute& attribute);
    bool FindAttribute(const char* name, hlxConfAttribute& attribute);

    std::string m_tag;
    std::string m_text;
    std::vector<hlxConfAttribute> m_attributes;  // in the order of the document
    std::size_t m_attrCursor = HLX_CURSOR_AT_END;
    std::int32_t m_depth = 0;  // 1 for the root element
};
