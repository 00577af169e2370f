// The guarded allocator: padding, counters, detected damage, and its log lines.

#include "hlxMalloc.h"
#include "scoped_log.h"

namespace {

std::atomic<std::uint32_t>* const kCounters[] = {
    &g_mf_total_malloc, &g_mf_total_free, &g_mf_failed_malloc, &g_mf_zero_malloc, &g_mf_zero_free};

class Allocator : public testing::Test {
protected:
    Allocator() {
        g_mf_sem = 0;
        for (auto* counter : kCounters) *counter = 0;
        hlx_logSetLevel(m_log, 3);
        hlx_logSetDefault(m_log);
    }

    std::string Counters() {
        std::string text = std::to_string(g_mf_sem);
        for (const auto* counter : kCounters) text += " " + std::to_string(*counter);
        return text;
    }

    const TempPath m_path{"malloc"};
    ScopedLog m_log{&m_path};
};

std::uint32_t Word(const void* at) {
    std::uint32_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

TEST_F(Allocator, PadsAndGuardsABlock) {
    hlx_logSetMask(m_log, 0);
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
    hlxfree(text);
    EXPECT_EQ(Counters(), "0 1 1 3 1 1");
    EXPECT_NE(m_path.Text().find("hlxfree called more times than malloc. ptr: 0x"),
              std::string::npos);
}

TEST_F(Allocator, KeepsADamagedBlock) {
    auto* const user = static_cast<unsigned char*>(hlxmalloc(5));
    for (const int offset : {-8, 8}) {
        user[offset] ^= 1;
        hlxfree(user);
        EXPECT_EQ(g_mf_sem, 1);
        user[offset] ^= 1;
    }
    user[5] ^= 1;  // of the padding
    hlxfree(user);
    EXPECT_EQ(g_mf_sem, 0);
    for (const char* const complaint :
         {"hlxfree pre zone doesn't match for 0x", "  Exptected 0x1300ff13, got 0x1300ff12\n",
          "hlxfree post zone doesn't match for 0x", "  Exptected 0xdeadbeef, got 0xdeadbeee\n"})
        EXPECT_NE(m_path.Text().find(complaint), std::string::npos) << complaint;
}

TEST_F(Allocator, ReportsItsCounters) {
    hlx_logSetMask(m_log, HLX_AREA_ALLOCATION);
    hlxfree(hlxmalloc(1));
    hlxmalloc_report();
    EXPECT_EQ(m_path.Text(),
              "hlxmalloc_report: \n"
              "    g_mf_sem           =    0\n"
              "    g_mf_total_malloc  =    1\n"
              "    g_mf_total_free    =    1\n"
              "    g_mf_failed_malloc =    0\n"
              "    g_mf_zero_malloc   =    0\n"
              "    g_mf_zero_free     =    0\n");
    g_mf_sem = 2;
    hlxmalloc_report();
    EXPECT_NE(
        m_path.Text().find("\nhlxmalloc_report: \n    Error in counting.  diff between allocs "
                           "and frees is 0 and sem is 2\n    g_mf_sem           =    2\n"),
        std::string::npos);
}

}  // namespace
