#include "hlxHealthResult.h"

#include <winsock2.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "hlxMalloc.h"
#include "hlxParseConf.h"
#include "hlxText.h"

namespace {

constexpr char kRestrictTag[] = "RestrictIP";

std::uint32_t FlagOf(const std::string& text) {
    return hlx_sameIgnoringCase(text, "true") || hlx_sameIgnoringCase(text, "yes");
}

std::uint32_t StateOf(const std::string& text) {
    if (hlx_sameIgnoringCase(text, "high")) return HLX_HEALTH_HIGH;
    if (hlx_sameIgnoringCase(text, "medium")) return HLX_HEALTH_MEDIUM;
    if (hlx_sameIgnoringCase(text, "low")) return HLX_HEALTH_LOW;
    return HLX_HEALTH_UNKNOWN;
}

// Hands out what `valueOf` makes of the text of the element with this tag.
void ReadValue(hlxParseConf& tree, const char* tag, std::uint32_t (*valueOf)(const std::string&),
               std::uint32_t* value) {
    hlxConfElement element;
    if (value && tree.FindElement(tag, element)) *value = valueOf(element.m_text);
}

void ReadPopup(hlxConfElement& element, std::uint32_t* popup) {
    hlxConfAttribute attribute;
    if (popup && element.FindAttribute("popup", attribute)) *popup = FlagOf(attribute.m_value);
}

void ReadMessage(hlxParseConf& tree, char** message, std::uint32_t* popup) {
    hlxConfElement element;
    if (!tree.FindElement("Message", element)) return;
    ReadPopup(element, popup);
    if (message) *message = hlxstrdup(element.m_text.c_str());
}

void ReadBrowser(hlxParseConf& tree, char** url, std::uint32_t* popup) {
    hlxConfElement element;
    if (!tree.FindElement("Browser", element)) return;
    ReadPopup(element, popup);
    hlxConfAttribute attribute;
    if (url && element.FindAttribute("url", attribute)) *url = hlxstrdup(attribute.m_value.c_str());
}

// Cuts the next token between hyphens off `rest`, without white space at its start; null if there
// is none left.
char* NextAddress(char*& rest) {
    rest += std::strspn(rest, "-");
    if (!*rest) return nullptr;
    char* token = rest;
    rest += std::strcspn(rest, "-");
    if (*rest) *rest++ = 0;
    while (std::isspace(static_cast<unsigned char>(*token))) ++token;
    return token;
}

void ReadRange(const std::string& text, std::uint32_t* pair) {
    const std::unique_ptr<char, decltype(&std::free)> copy(
        static_cast<char*>(std::malloc(text.size() + 1)), &std::free);
    if (!copy) return;
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    char* rest = copy.get();
    const char* const first = NextAddress(rest);
    const char* const last = NextAddress(rest);
    if (!first || !last) return;
    pair[0] = inet_addr(first);
    pair[1] = inet_addr(last);
}

// The ranges are the elements that follow each other directly from the first RestrictIP on.
void ReadRanges(hlxParseConf& tree, std::uint32_t* count, std::uint32_t** addresses) {
    const auto inRun = [](const hlxConfElement& element) {
        return hlx_sameIgnoringCase(element.m_tag, kRestrictTag);
    };
    hlxConfElement element;
    if (!tree.FindElement(kRestrictTag, element)) return;
    std::uint32_t slots = 0;
    do {
        slots += 2;
    } while (tree.GetNextElement(element) && inRun(element));

    tree.FindElement(kRestrictTag, element);
    if (count) *count = slots;
    if (!addresses) return;
    const auto size = static_cast<std::uint32_t>(slots * sizeof(std::uint32_t));
    auto* const array = static_cast<std::uint32_t*>(hlxmalloc(size));
    *addresses = array;
    if (!array) return;
    std::memset(array, 0, size);
    for (std::uint32_t slot = 0; slot < slots; slot += 2) {
        ReadRange(element.m_text, array + slot);
        tree.GetNextElement(element);
    }
}

// The exact text of the result element, found by searching for its tags.
HlxResult ReadRawResult(const std::string& document, char** rawResult) {
    constexpr std::string_view kOpening = "<HLXHealthResult";
    constexpr std::string_view kClosing = "</HLXHealthResult>";
    const std::size_t start = document.find(kOpening);
    const std::size_t end = document.find(kClosing);
    if (!rawResult || start == std::string::npos || end == std::string::npos || end < start)
        return HLX_DONE;
    const std::size_t length = end + kClosing.size() - start;
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
        const std::string document(text);
        hlxParseConf tree;
        if (!tree.Create("UTF-8", nullptr) || !tree.Parse(document.c_str(), -1, true))
            return HLX_NOT_PARSED;
        ReadValue(tree, "AutoInstall", FlagOf, autoInstall);
        ReadValue(tree, "Enabled", FlagOf, enabled);
        ReadValue(tree, "HealthState", StateOf, healthState);
        ReadValue(tree, "DisplayHealthIcon", FlagOf, displayHealthIcon);
        ReadMessage(tree, message, messagePopup);
        ReadBrowser(tree, browserUrl, browserPopup);
        ReadRanges(tree, restrictCount, restrictAddresses);
        return ReadRawResult(document, rawResult);
    } catch (...) {
        return HLX_EXCEPTION;
    }
}
