#include "controller/RegisteredMessages.h"

#include "frame/AppModule.h"

// The names are part of the interface, do not correct.
constinit CRegisteredMessage g_msgHealthResults("HLX_GetVHealth_Results");
constinit CRegisteredMessage g_msgSWUpdates("HLX_GotSWUpdates");
constinit CRegisteredMessage g_msgQueuedInstalls("HLX_GotQueuedInstalls");
constinit CRegisteredMessage g_msgDownloadResults("HLX_GotDownloadResults");

UINT CRegisteredMessage::Number() {
    if (m_number == 0) {
        const CCriticalSectionLock guard(_Module.Lock());
        if (m_number == 0) m_number = RegisterWindowMessageA(m_name);
    }
    return m_number;
}
