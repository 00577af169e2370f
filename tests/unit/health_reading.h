// The results of the health reader for one document, released by the destructor.
#pragma once

#include <algorithm>
#include <cstdint>

#include "hlxHealthResult.h"
#include "hlxMalloc.h"

struct HealthReading {
    static constexpr std::uint32_t kUntouched = 77;
    std::uint32_t autoInstall = kUntouched, enabled = kUntouched, state = kUntouched,
                  icon = kUntouched, messagePopup = kUntouched, browserPopup = kUntouched,
                  restrictCount = kUntouched;
    char *raw = nullptr, *message = nullptr, *url = nullptr;
    std::uint32_t* ranges = nullptr;
    const HlxResult result;

    explicit HealthReading(const char* document)
        : result(hlx_parseHealthResult(document, &autoInstall, &enabled, &state, &icon, &raw,
                                       &message, &messagePopup, &url, &browserPopup, &restrictCount,
                                       &ranges)) {}
    HealthReading(const HealthReading&) = delete;
    ~HealthReading() {
        for (void* const block : {static_cast<void*>(raw), static_cast<void*>(message),
                                  static_cast<void*>(url), static_cast<void*>(ranges)})
            if (block) hlxfree(block);
    }
};
