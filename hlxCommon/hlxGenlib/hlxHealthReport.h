// A health notification as an object that owns what the reader returns.
#pragma once

#include <cstdint>

#include "hlxResult.h"

struct HealthReport {
    HealthReport() = default;
    // Releases the blocks, which the reader may have returned even if it failed.
    virtual ~HealthReport();
    HealthReport(const HealthReport&) = delete;
    HealthReport& operator=(const HealthReport&) = delete;

    // Reads the document `text`, NUL-terminated and never null; to be called once. The result is
    // that of hlx_parseHealthResult (hlxHealthResult.h), which describes the fields too. Fields
    // that the document does not have stay zero.
    HlxResult Read(const char* text);

    std::uint32_t autoInstall = 0;
    std::uint32_t enabled = 0;
    std::uint32_t state = 0;  // HlxHealthState
    std::uint32_t displayIcon = 0;
    char* rawResult = nullptr;
    char* message = nullptr;
    std::uint32_t messagePopup = 0;
    char* url = nullptr;
    std::uint32_t urlPopup = 0;
    std::uint32_t restrictCount = 0;
    std::uint32_t* restrictAddresses = nullptr;
};
