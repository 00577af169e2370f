// The words of one request, from the command line or from a line of standard input: a verb, further
// words, and options that begin with "--" and may stand anywhere.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace agent_sim {

// The request cannot be understood; what() tells the user why.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Splits a line at blanks. Double quotes hold a word with blanks together; a backslash is nothing
// special, for paths have them.
std::vector<std::string> SplitLine(std::string_view line);

struct NumberRange {
    std::int64_t least, most;
};
// What 32 bits can hold, with or without a sign.
constexpr NumberRange kAnyCode{INT32_MIN, UINT32_MAX};

// A number in decimal or 0x hexadecimal, with or without a sign.
std::int64_t ParseNumber(const std::string& text, NumberRange range);

// Each Take removes what it gives, so that ExpectNoMore finds what nobody knew.
class Arguments {
public:
    explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

    // Whether the first word that is left is this one.
    bool NextIs(std::string_view word) const { return !words_.empty() && words_.front() == word; }

    // Whether the option was given.
    bool TakeFlag(std::string_view option);
    // The word behind the option; the last one counts if it was given more than once.
    std::optional<std::string> TakeValue(std::string_view option);
    // The words behind each occurrence of the option.
    std::vector<std::string> TakeValues(std::string_view option);
    // As TakeValue, for a number as ParseNumber reads it.
    std::optional<std::int64_t> TakeNumber(std::string_view option, NumberRange range);
    // The first word that is left. Take the options before it.
    std::optional<std::string> TakeWord();
    // The same for a word that must be there; `meaning` names it in the complaint.
    std::string RequireWord(std::string_view meaning);

    void ExpectNoMore() const;

private:
    std::vector<std::string> words_;
};

}  // namespace agent_sim
