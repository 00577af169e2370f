// A log context of a test's own that ends with it, with a file sink or without one.
#pragma once

#include "hlxLog.h"
#include "temp_path.h"

class ScopedLog {
public:
    explicit ScopedLog(const TempPath* path = nullptr, std::uint32_t flags = 0,
                       const char* progname = nullptr) {
        EXPECT_EQ(hlx_logCreate(&m_context, progname, 0, flags), HLX_DONE);
        if (!path) return;
        EXPECT_EQ(hlx_logAddSink(m_context, HLX_SINK_FILE, path->c_str()), HLX_DONE);
    }
    ~ScopedLog() {
        if (hlx_logGetDefault() == m_context) hlx_logSetDefault(nullptr);
        hlx_logDestroy(m_context);
    }
    ScopedLog(const ScopedLog&) = delete;
    ScopedLog& operator=(const ScopedLog&) = delete;

    operator HlxLogContext*() { return m_context; }
    HlxLogContext* operator->() { return m_context; }

private:
    HlxLogContext* m_context = nullptr;
};
