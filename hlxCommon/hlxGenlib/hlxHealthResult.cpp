#include "hlxHealthResult.h"

#include <winsock2.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "hlxInterface.h"
#include "hlxMalloc.h"
#include "hlxParseConf.h"
#include "hlxText.h"

namespace {

std::uint32_t FlagOf(const std::string& text) {
    return hlx_sameIgnoringCase(text, "true") || hlx_sameIgnoringCase(text, "yes");
}

std::uint32_t StateOf(const std::string& text) {
    if (hlx_sameIgnoringCase(text, "high")) return HLX_HEALTH_HIGH;
    if (hlx_sameIgnoringCase(text, "medium")) return HLX_HEALTH_MEDIUM;
    if (hlx_sameIgnoringCase(text, "low")) return HLX_HEALTH_LOW;
    return HLX_HEALTH_UNKNOWN;
}

// The same lookups as those of the tree and its elements, but without a copy. Null: not found.
const hlxConfElement* Find(const hlxParseConf& tree, const char* tag) {
    const auto found = std::ranges::find(tree.m_elements, tag, &hlxConfElement::m_tag);
    return found == tree.m_elements.end() ? nullptr : &*found;
}

const std::string* Find(const hlxConfElement& element, const char* name) {
    const auto found = std::ranges::find(element.m_attributes, name, &hlxConfAttribute::m_name);
    return found == element.m_attributes.end() ? nullptr : &found->m_value;
}

// Stores `valueOf` of the text of the element with this tag.
void ReadValue(const hlxParseConf& tree, const char* tag,
               std::uint32_t (*valueOf)(const std::string&), std::uint32_t* value) {
    const hlxConfElement* const element = Find(tree, tag);
    if (value && element) *value = valueOf(element->m_text);
}

void ReadPopup(const hlxConfElement& element, std::uint32_t* popup) {
    const std::string* const value = Find(element, HLX_POPUP_ATTRIBUTE);
    if (popup && value) *popup = FlagOf(*value);
}

void ReadMessage(const hlxParseConf& tree, char** message, std::uint32_t* popup) {
    const hlxConfElement* const element = Find(tree, HLX_MESSAGE_TAG);
    if (!element) return;
    ReadPopup(*element, popup);
    if (message) *message = hlxstrdup(element->m_text.c_str());
}

void ReadBrowser(const hlxParseConf& tree, char** url, std::uint32_t* popup) {
    const hlxConfElement* const element = Find(tree, HLX_BROWSER_TAG);
    if (!element) return;
    ReadPopup(*element, popup);
    const std::string* const value = Find(*element, HLX_URL_ATTRIBUTE);
    if (url && value) *url = hlxstrdup(value->c_str());
}

// Removes the next token between hyphens from `rest` and returns it without leading white space;
// null if there is none.
char* NextAddress(char*& rest) {
    rest += std::strspn(rest, "-");
    if (!*rest) return nullptr;
    char* token = rest;
    rest += std::strcspn(rest, "-");
    if (*rest) *rest++ = 0;
    while (std::isspace(static_cast<unsigned char>(*token))) ++token;
    return token;
}

// Modifies `text`.
void ReadRange(std::string& text, std::uint32_t* pair) {
    char* rest = text.data();
    const char* const first = NextAddress(rest);
    const char* const last = NextAddress(rest);
    if (!first || !last) return;
    pair[0] = inet_addr(first);
    pair[1] = inet_addr(last);
}

// The ranges are the elements that follow each other directly from the first RestrictIP on.
void ReadRanges(hlxParseConf& tree, std::uint32_t* count, std::uint32_t** addresses) {
    const auto end = tree.m_elements.end();
    const auto first = std::ranges::find(tree.m_elements, HLX_RESTRICT_TAG, &hlxConfElement::m_tag);
    if (first == end) return;
    const auto last = std::ranges::find_if_not(first, end, [](const hlxConfElement& each) {
        return hlx_sameIgnoringCase(each.m_tag, HLX_RESTRICT_TAG);
    });
    const auto slots = static_cast<std::uint32_t>(2 * std::distance(first, last));
    if (count) *count = slots;
    if (!addresses) return;
    const auto size = static_cast<std::uint32_t>(slots * sizeof(std::uint32_t));
    auto* pair = static_cast<std::uint32_t*>(hlxmalloc(size));
    *addresses = pair;
    if (!pair) return;
    std::memset(pair, 0, size);
    for (auto each = first; each != last; ++each, pair += 2) ReadRange(each->m_text, pair);
}

// The exact text of the result element, found by searching for its tags.
HlxResult ReadRawResult(std::string_view document, char** rawResult) {
    constexpr std::string_view kEnd = HLX_RESULT_END;
    const std::size_t start = document.find(HLX_RESULT_START);
    const std::size_t end = document.find(kEnd);
    if (!rawResult || start == document.npos || end == document.npos || end < start)
        return HLX_DONE;
    const std::size_t length = end + kEnd.size() - start;
    *rawResult = static_cast<char*>(hlxmalloc(static_cast<std::uint32_t>(length + 1)));
    if (!*rawResult) return HLX_NO_MEMORY;
    std::memcpy(*rawResult, document.data() + start, length);
    (*rawResult)[length] = 0;
    return HLX_DONE;
}

}  // namespace

HlxResult hlx_parseHealthResult(const char* text, std::uint32_t* autoInstall,
                                std::uint32_t* enabled, std::uint32_t* healthState,
                                std::uint32_t* displayHealthIcon, char** rawResult, char** message,
                                std::uint32_t* messagePopup, char** browserUrl,
                                std::uint32_t* browserPopup, std::uint32_t* restrictCount,
                                std::uint32_t** restrictAddresses) {
    try {
        hlxParseConf tree;
        if (!tree.Create("UTF-8", nullptr) || !tree.Parse(text, -1, true)) return HLX_NOT_PARSED;
        ReadValue(tree, HLX_AUTO_INSTALL_TAG, FlagOf, autoInstall);
        ReadValue(tree, HLX_ENABLED_TAG, FlagOf, enabled);
        ReadValue(tree, HLX_HEALTH_STATE_TAG, StateOf, healthState);
        ReadValue(tree, HLX_DISPLAY_ICON_TAG, FlagOf, displayHealthIcon);
        ReadMessage(tree, message, messagePopup);
        ReadBrowser(tree, browserUrl, browserPopup);
        ReadRanges(tree, restrictCount, restrictAddresses);
        return ReadRawResult(text, rawResult);
    } catch (...) {
        return HLX_EXCEPTION;
    }
}
