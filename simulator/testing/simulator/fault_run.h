// A run of a story with one fault that the story does not expect. Its expectations are then
// ignored; only the requirements after any fault are tested, at its end. An environment variable
// names the fault, for the sweep and to repeat one of its runs:
//
//   STORY_FAULT="CreateFileA 3"    the third call of CreateFileA
//   STORY_FAULT="allocation 17"    the 17th allocation of the applet's code
//   STORY_FAULT="nothing 0"        prints at the end how often each kind occurred, one a line
#pragma once

#include <string>

class FaultRun {
public:
    // Null in ordinary runs.
    static const FaultRun* Current();

    const std::string& Kind() const { return m_kind; }
    void Begin() const;
    // Whether the call that is to fail has been made.
    bool HasFailed() const;
    // No call fails from now on.
    void End() const;
    // Ends the process if the requirement is not met.
    static void Require(bool isMet, const char* requirement);

private:
    std::string m_kind;
    int m_number = 0;
};
