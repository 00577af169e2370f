#include "shared/AutomationDate.h"

#include <oleauto.h>

std::optional<double> ToAutomationDate(const SYSTEMTIME& time) {
    SYSTEMTIME copy = time;
    double date = 0;
    if (!SystemTimeToVariantTime(&copy, &date)) return std::nullopt;
    return date;
}

std::optional<double> ToAutomationDate(const FILETIME& time) {
    SYSTEMTIME brokenDown{};
    if (!FileTimeToSystemTime(&time, &brokenDown)) return std::nullopt;
    return ToAutomationDate(brokenDown);
}
