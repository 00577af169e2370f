#include "hlxHealthReport.h"

#include "hlxHealthResult.h"
#include "hlxMalloc.h"

HealthReport::~HealthReport() {
    for (void* block : {static_cast<void*>(url), static_cast<void*>(message),
                        static_cast<void*>(rawResult), static_cast<void*>(restrictAddresses)})
        if (block) hlxfree(block);
}

HlxResult HealthReport::Read(const char* text) {
    return hlx_parseHealthResult(text, &autoInstall, &enabled, &state, &displayIcon, &rawResult,
                                 &message, &messagePopup, &url, &urlPopup, &restrictCount,
                                 &restrictAddresses);
}
