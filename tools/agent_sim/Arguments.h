// The words of one request, from the command line or from a line of standard input: a verb, further
// words, and options, which begin with "--" and may be anywhere.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace agent_sim {

// The request is not valid; what() says why.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Splits a line at spaces. A word in double quotes may contain spaces. A backslash is an ordinary
// character, as in paths.
std::vector<std::string> SplitLine(std::string_view line);

struct NumberRange {
    std::int64_t least, most;
};
// All numbers of 32 bits, signed or unsigned.
constexpr NumberRange kAnyCode{INT32_MIN, UINT32_MAX};

// A number in decimal or 0x hexadecimal, with or without a sign.
std::int64_t ParseNumber(const std::string& text, NumberRange range);

// Each Take function removes what it returns. ExpectNoMore throws if words are left.
class Arguments {
public:
    explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

    // Whether the first remaining word is `word`.
    bool NextIs(std::string_view word) const { return !words_.empty() && words_.front() == word; }

    // Whether the option was given.
    bool TakeFlag(std::string_view option);
    // The word after the option; of several occurrences the last one.
    std::optional<std::string> TakeValue(std::string_view option);
    // The words after each occurrence of the option.
    std::vector<std::string> TakeValues(std::string_view option);
    // As TakeValue, for a number in the form of ParseNumber.
    std::optional<std::int64_t> TakeNumber(std::string_view option, NumberRange range);
    // The first remaining word. Take the options first.
    std::optional<std::string> TakeWord();
    // The same for a required word; `meaning` names it in the error message.
    std::string RequireWord(std::string_view meaning);

    void ExpectNoMore() const;

private:
    std::vector<std::string> words_;
};

}  // namespace agent_sim
