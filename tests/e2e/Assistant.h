// Someone in front of the screen who does what a program cannot do for itself: takes pictures of
// it, and clicks with the real pointer. The environment variable VH_E2E_ASSISTANT names the folder
// through which it is asked; without one there is nobody.
#pragma once

#include <string>

bool AssistantIsThere();

// Asks and waits until it is done; false when it was not, or nobody is there. The requests:
//   picture NAME          keeps a picture of the screen under that name
//   click BUTTON [COUNT]  clicks the leftmost icon of the applet's in the notification area, BUTTON
//   as
//                         the pointer's buttons are numbered (1 left, 3 right)
bool AskAssistant(const std::string& request);

// A picture for the documentation, if someone can take it.
inline void TakePicture(const std::string& name) { AskAssistant("picture " + name); }
