// A script outside the tests that takes screenshots and clicks with the pointer of the screen. The
// environment variable VH_E2E_ASSISTANT names the folder for requests to it; without the variable
// there is no assistant.
#pragma once

#include <string>

bool AssistantIsThere();

// Sends a request and waits for it. False: it failed, or there is no assistant. The requests:
//   picture NAME [DELAY]  keeps a picture of the screen under that name, taken after DELAY seconds
//   click BUTTON [COUNT]  clicks the applet's leftmost icon in the notification area; the pointer's
//                         buttons are 1 for left and 3 for right
bool AskAssistant(const std::string& request);

// Takes a screenshot for the documents, if there is an assistant.
inline void TakePicture(const std::string& name) { AskAssistant("picture " + name); }
