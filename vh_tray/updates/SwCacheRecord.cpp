#include "updates/SwCacheRecord.h"

#include <cstdint>
#include <new>

#include "hlxSwCache.h"
#include "shared/AgentPaths.h"

namespace {
constexpr std::uint32_t kFieldCapacity = 8192;
}

bool CSwCacheRecord::Read() {
    for (auto* field : {&m_name, &m_version, &m_third, &m_fourth})
        field->reset(new (std::nothrow) char[kFieldCapacity]);
    // The reader rejects a null buffer.
    return hlx_getSwCache(GetSwCachePath(), m_name.get(), kFieldCapacity, m_version.get(),
                          kFieldCapacity, m_third.get(), kFieldCapacity, m_fourth.get(),
                          kFieldCapacity) == 0;
}
