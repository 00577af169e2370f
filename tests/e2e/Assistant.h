// Someone in front of the screen who does what a program cannot do for itself: takes pictures of
// it, and clicks with the real pointer. The environment variable VH_E2E_ASSISTANT names the folder
// through which it is asked; without one there is nobody.
#pragma once

#include <string>

bool AssistantIsThere();

// Asks and waits until it is done; false when it was not, or nobody is there. The requests:
//   picture NAME [DELAY]  keeps a picture of the screen under that name, taken after DELAY seconds
//   click BUTTON [COUNT]  clicks the applet's leftmost icon in the notification area; the pointer's
//                         buttons are 1 for left and 3 for right
bool AskAssistant(const std::string& request);

// A picture for the documentation, if someone can take it.
inline void TakePicture(const std::string& name) { AskAssistant("picture " + name); }
