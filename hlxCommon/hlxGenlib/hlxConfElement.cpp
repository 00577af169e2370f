#include "hlxConfElement.h"

#include "hlxListCursor.h"

hlxConfElement::hlxConfElement(const char* tag, const char* text)
    : m_tag(tag ? tag : ""), m_text(text ? text : ""), m_attrCursor(m_attributes.end()) {}

hlxConfElement::hlxConfElement(const hlxConfElement& other)
    : m_tag(other.m_tag),
      m_text(other.m_text),
      m_attributes(other.m_attributes),
      m_attrCursor(m_attributes.end()),
      m_depth(other.m_depth) {}

hlxConfElement& hlxConfElement::operator=(const hlxConfElement& other) {
    m_attrCursor = m_attributes.end();  // before anything that can throw
    m_tag = other.m_tag;
    m_text = other.m_text;
    m_attributes = other.m_attributes;
    m_attrCursor = m_attributes.end();
    m_depth = other.m_depth;
    return *this;
}

bool hlxConfElement::GetFirstAttribute(hlxConfAttribute& attribute) {
    return hlx_getFirst(m_attributes, m_attrCursor, attribute);
}

bool hlxConfElement::GetNextAttribute(hlxConfAttribute& attribute) {
    return hlx_getNext(m_attributes, m_attrCursor, attribute);
}

bool hlxConfElement::FindAttribute(const char* name, hlxConfAttribute& attribute) {
    const auto isNamed = [name](const hlxConfAttribute& each) { return each.m_name == name; };
    return hlx_find(m_attributes, m_attrCursor, isNamed, attribute);
}
