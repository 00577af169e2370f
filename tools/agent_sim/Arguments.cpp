#include "Arguments.h"

#include <algorithm>

namespace agent_sim {

std::vector<std::string> SplitLine(std::string_view line) {
    std::vector<std::string> words;
    bool quoted = false;
    bool inWord = false;
    for (const char c : line) {
        if (!quoted && (c == ' ' || c == '\t' || c == '\r')) {
            inWord = false;
            continue;
        }
        if (!inWord) words.emplace_back();
        inWord = true;
        if (c == '"')
            quoted = !quoted;
        else
            words.back() += c;
    }
    if (quoted) throw UsageError("a closing quote is missing");
    return words;
}

std::int64_t ParseNumber(const std::string& text, NumberRange range) {
    try {
        std::size_t used = 0;
        const std::int64_t number = std::stoll(text, &used, 0);
        if (used == text.size() && number >= range.least && number <= range.most) return number;
    } catch (const std::logic_error&) {
    }
    throw UsageError("'" + text + "' is not a number from " + std::to_string(range.least) + " to " +
                     std::to_string(range.most));
}

bool Arguments::TakeFlag(std::string_view option) { return std::erase(words_, option) > 0; }

std::vector<std::string> Arguments::TakeValues(std::string_view option) {
    std::vector<std::string> values;
    for (;;) {
        const auto found = std::find(words_.begin(), words_.end(), option);
        if (found == words_.end()) return values;
        if (found + 1 == words_.end()) throw UsageError(*found + " needs a value");
        values.push_back(*(found + 1));
        words_.erase(found, found + 2);
    }
}

std::optional<std::string> Arguments::TakeValue(std::string_view option) {
    auto values = TakeValues(option);
    if (values.empty()) return std::nullopt;
    return std::move(values.back());
}

std::optional<std::int64_t> Arguments::TakeNumber(std::string_view option, NumberRange range) {
    const auto text = TakeValue(option);
    if (!text) return std::nullopt;
    return ParseNumber(*text, range);
}

std::optional<std::string> Arguments::TakeWord() {
    if (words_.empty()) return std::nullopt;
    std::string word = std::move(words_.front());
    words_.erase(words_.begin());
    return word;
}

std::string Arguments::RequireWord(std::string_view meaning) {
    auto word = TakeWord();
    if (!word) throw UsageError(std::string(meaning) + " is missing");
    return *word;
}

void Arguments::ExpectNoMore() const {
    if (!words_.empty()) throw UsageError("'" + words_.front() + "' is not expected here");
}

}  // namespace agent_sim
