#include "hlxParseConf.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "hlxLog.h"
#include "hlxText.h"

hlxParseConf::hlxParseConf(const char* source) : m_source(source ? source : "") {
    constexpr std::size_t kUsualCount = 16;
    m_elements.reserve(kUsualCount);
}

bool hlxParseConf::GetFirstElement(hlxConfElement& element) {
    return hlx_getFirst(m_elements, m_cursor, element);
}

bool hlxParseConf::GetNextElement(hlxConfElement& element) {
    return hlx_getNext(m_elements, m_cursor, element);
}

bool hlxParseConf::FindElement(const char* tag, hlxConfElement& element) {
    const auto isTagged = [tag](const hlxConfElement& each) { return each.m_tag == tag; };
    return hlx_findFrom(m_elements, 0, isTagged, m_cursor, element);
}

void hlxParseConf::OnStartElement(const char* tag, const char** attributes) {
    ++m_depth;
    hlx_log(hlx_logGetDefault(), 6, HLX_AREA_XML, "hlxParseConf::OnStartElement depth: %d tag:%s",
            m_depth, tag);
    if (m_depth == 0) {
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_XML,
                "hlxParseConf::OnStartElement BAD DEPTH depth: %d tag:%s", 0, tag);
        return;
    }
    if (m_depth == 1) TakeRoot(tag, attributes);

    hlxConfElement element(tag, nullptr);
    element.m_depth = m_depth;
    for (; *attributes; attributes += 2) {
        element.m_attributes.emplace_back(attributes[0], attributes[1]);
        hlx_log(hlx_logGetDefault(), 6, HLX_AREA_XML,
                "hlxParseConf::OnStartElement     attr %s = %s", attributes[0], attributes[1]);
    }
    m_elements.push_back(std::move(element));
}

void hlxParseConf::TakeRoot(const char* tag, const char** attributes) {
    m_rootTag = tag;
    for (; *attributes; attributes += 2) {
        if (!hlx_sameIgnoringCase(attributes[0], "version")) continue;
        m_version = attributes[1];
        return;
    }
}

void hlxParseConf::OnEndElement() { --m_depth; }

void hlxParseConf::OnCharacterData(const char* data, int length) {
    const char* const end = data + length;
    const char* const text = std::ranges::find_if_not(
        data, end, [](char c) { return std::isspace(static_cast<unsigned char>(c)); });
    if (text == end) return;
    // "Characcter": part of the interface, do not correct.
    hlx_log(hlx_logGetDefault(), 6, HLX_AREA_XML,
            "hlxParseConf::OnCharaccterData depth: %d data:%*.*s", m_depth, length, length, data);
    if (!m_elements.empty()) m_elements.back().m_text.append(text, end);
}

void hlxParseConf::OnComment(const char* text) {
    hlx_log(hlx_logGetDefault(), 5, HLX_AREA_XML_OTHER, "hlxParseConf::OnComment depth: %d: %s",
            m_depth, text);
}

void hlxParseConf::OnDefault(const char* data, int length) {
    hlx_log(hlx_logGetDefault(), 5, HLX_AREA_XML_OTHER, "hlxParseConf::OnDefault: depth:%d %*.*s",
            m_depth, length, length, data);
}
