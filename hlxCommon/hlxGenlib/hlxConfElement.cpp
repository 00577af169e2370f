#include "hlxConfElement.h"

hlxConfElement::hlxConfElement(const char* tag, const char* text)
    : m_tag(tag ? tag : ""), m_text(text ? text : "") {}

hlxConfElement::hlxConfElement(const hlxConfElement& other)
    : m_tag(other.m_tag),
      m_text(other.m_text),
      m_attributes(other.m_attributes),
      m_depth(other.m_depth) {}

hlxConfElement& hlxConfElement::operator=(const hlxConfElement& other) {
    return *this = hlxConfElement(other);
}

bool hlxConfElement::GetFirstAttribute(hlxConfAttribute& attribute) {
    return hlx_getFirst(m_attributes, m_attrCursor, attribute);
}

bool hlxConfElement::GetNextAttribute(hlxConfAttribute& attribute) {
    return hlx_getNext(m_attributes, m_attrCursor, attribute);
}

bool hlxConfElement::FindAttribute(const char* name, hlxConfAttribute& attribute) {
    const auto isNamed = [name](const hlxConfAttribute& each) { return each.m_name == name; };
    return hlx_findFrom(m_attributes, 0, isNamed, m_attrCursor, attribute);
}
