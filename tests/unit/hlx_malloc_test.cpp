// The guarded allocator: padding, counters, damage found or not, and what it tells the log.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "hlxLog.h"
#include "hlxMalloc.h"
#include "temp_path.h"

namespace {

class Allocator : public testing::Test {
protected:
    Allocator() {
        g_mf_sem = 0;
        for (auto* counter : {&g_mf_total_malloc, &g_mf_total_free, &g_mf_failed_malloc,
                              &g_mf_zero_malloc, &g_mf_zero_free})
            *counter = 0;
        hlx_logCreate(&m_log, nullptr, 0, 0);
        hlx_logAddSink(m_log, HLX_SINK_FILE, m_path.c_str());
        hlx_logSetMask(m_log, 0);
        hlx_logSetDefault(m_log);
    }
    ~Allocator() override {
        hlx_logSetDefault(nullptr);
        hlx_logDestroy(m_log);
    }

    void ListenTo(std::int32_t level, std::uint32_t mask) {
        hlx_logSetLevel(m_log, level);
        hlx_logSetMask(m_log, mask);
    }

    std::string Counters() {
        std::string text = std::to_string(g_mf_sem);
        for (const auto* counter : {&g_mf_total_malloc, &g_mf_total_free, &g_mf_failed_malloc,
                                    &g_mf_zero_malloc, &g_mf_zero_free})
            text += " " + std::to_string(*counter);
        return text;
    }

    std::string Logged() { return m_path.Text(); }

private:
    const TempPath m_path{"malloc"};
    HlxLogContext* m_log = nullptr;
};

std::uint32_t Word(const void* at) {
    std::uint32_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

TEST_F(Allocator, PadsAndGuardsABlock) {
    for (const auto& [size, padded] : {std::pair{1u, 4u}, {3u, 4u}, {4u, 4u}, {5u, 8u}}) {
        auto* const user = static_cast<char*>(hlxmalloc(size));
        ASSERT_NE(user, nullptr);
        EXPECT_EQ(Word(user - 8), 0x1300FF13u);
        EXPECT_EQ(Word(user - 4), padded);
        EXPECT_EQ(Word(user + padded), 0xDEADBEEFu);
        std::memset(user, 0xFF, padded);
        hlxfree(user);
    }
    EXPECT_EQ(Counters(), "0 4 4 0 0 0");
}

TEST_F(Allocator, CountsEverySortOfCall) {
    EXPECT_EQ(hlxmalloc(0), nullptr);
    EXPECT_EQ(Counters(), "0 0 0 0 1 0");
    hlxfree(nullptr);
    EXPECT_EQ(Counters(), "0 0 0 0 1 1");
    for (const std::uint32_t size : {0xFFFFFFFFu, 0xFFFFFFFDu, 0xFFFFFFF1u})
        EXPECT_EQ(hlxmalloc(size), nullptr) << "its size and the zones do not fit 32 bits";
    EXPECT_EQ(Counters(), "0 0 0 3 1 1");
    char* const text = hlxstrdup("");
    EXPECT_EQ(Word(text - 4), 4u);
    EXPECT_STREQ(text, "");
    g_mf_sem = 0;
    ListenTo(1, HLX_AREA_INTEGRITY);
    hlxfree(text);
    EXPECT_EQ(Counters(), "0 1 1 3 1 1");
    EXPECT_EQ(Logged().find("hlxfree called more times than malloc. ptr: 0x"), 0u);
}

TEST_F(Allocator, KeepsADamagedBlock) {
    const struct {
        int offset;
        const char* complaint;
    } cases[] = {
        {-8, "hlxfree pre zone doesn't match for 0x"},
        {8, "hlxfree post zone doesn't match for 0x"},
        {5, nullptr},
    };
    for (const auto& each : cases) {
        auto* const user = static_cast<unsigned char*>(hlxmalloc(5));
        const std::int32_t outstanding = g_mf_sem;
        user[each.offset] ^= 1;
        ListenTo(1, HLX_AREA_INTEGRITY);
        hlxfree(user);
        ListenTo(1, 0);
        EXPECT_EQ(g_mf_sem, each.complaint ? outstanding : outstanding - 1);
        if (!each.complaint) continue;
        EXPECT_NE(Logged().find(each.complaint), std::string::npos);
        user[each.offset] ^= 1;
        hlxfree(user);
    }
    EXPECT_NE(Logged().find("  Exptected 0x1300ff13, got 0x1300ff12\n"), std::string::npos);
    EXPECT_NE(Logged().find("  Exptected 0xdeadbeef, got 0xdeadbeee\n"), std::string::npos);
}

TEST_F(Allocator, ReportsItsCounters) {
    ListenTo(3, HLX_AREA_ALLOCATION);
    hlxfree(hlxmalloc(1));
    hlxmalloc_report();
    const std::string counters =
        "    g_mf_sem           =    %\n"
        "    g_mf_total_malloc  =    1\n"
        "    g_mf_total_free    =    1\n"
        "    g_mf_failed_malloc =    0\n"
        "    g_mf_zero_malloc   =    0\n"
        "    g_mf_zero_free     =    0\n";
    const auto withSem = [&](char sem) {
        std::string text = counters;
        text[text.find('%')] = sem;
        return text;
    };
    EXPECT_EQ(Logged(), "hlxmalloc_report: \n" + withSem('0'));
    g_mf_sem = 2;
    hlxmalloc_report();
    EXPECT_EQ(Logged(),
              "hlxmalloc_report: \n" + withSem('0') +
                  "hlxmalloc_report: \n    Error in counting.  diff between allocs and frees is 0 "
                  "and sem is 2\n" +
                  withSem('2'));
}

}  // namespace
