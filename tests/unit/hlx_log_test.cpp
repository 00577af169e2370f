// The log's filters, slots and line format, its three kinds of sink, the rotation at 200 MiB with
// sparse files, and its settings in the environment; and the cache file, whose errors go there.

#include <climits>

#include "hlxSwCache.h"
#include "scoped_log.h"

namespace {

constexpr std::uintmax_t kRotationSize = 209'715'200;

void Grow(const TempPath& path, std::uintmax_t size) {
    std::filesystem::resize_file(path.c_str(), size);
}

TEST(Log, PassesByLevelAndMask) {
    const struct {
        std::int32_t contextLevel, level;
        std::uint32_t mask, lines;
    } cases[] = {
        {1, 1, 0x10, 1}, {1, 2, 0x10, 0},       {1, 1, 0x08, 0},  {1, 1, 0x18, 1},
        {0, 0, 0x10, 1}, {0, INT_MIN, 0x10, 1}, {-1, 0, 0x10, 0}, {7, 7, 0, 0},
    };
    for (const auto& each : cases) {
        ScopedLog log;
        hlx_logSetLevel(log, each.contextLevel);
        hlx_log(log, each.level, each.mask, "text");
        EXPECT_EQ(log->line_count, each.lines) << each.contextLevel << " " << each.level;
    }
    hlx_log(nullptr, 0, UINT32_MAX, "no context");
    EXPECT_EQ(hlx_logGetMask(nullptr), 0u);
}

TEST(Log, PrefixesLinesByTheOptionsAndCutsLongOnes) {
    const std::string longText(1000, 'x');
    const struct {
        std::uint32_t flags;
        const char *progname, *text;
        std::string line;
    } cases[] = {
        {0, "vh_tray", "a", "a"},
        {HLX_LOG_PROGNAME, "", "a", "progname_not_set a"},
        {HLX_LOG_LINE_NUMBER, nullptr, "a", "     0 a"},
        {HLX_LOG_PROGNAME, "p", longText.c_str(), "p " + longText.substr(0, 509)},
        {HLX_LOG_PROGNAME | HLX_LOG_PID, longText.c_str(), "a", longText.substr(0, 511)},
    };
    for (const auto& each : cases) {
        const TempPath path("lines");
        ScopedLog log(&path, each.flags, each.progname);
        hlx_log(log, 1, HLX_AREA_INTEGRITY, "%s", each.text);
        EXPECT_EQ(path.Text(), each.line + "\n");
    }
}

TEST(Log, HasThreeSlotsAtLeast) {
    const TempPath path("slots");
    EXPECT_EQ(hlx_logCreate(nullptr, nullptr, 3, 0), HLX_REFUSED);
    for (const std::int32_t asked : {INT_MIN, 0, 3, 4}) {
        HlxLogContext* log = nullptr;
        ASSERT_EQ(hlx_logCreate(&log, "p", asked, 0), HLX_DONE);
        EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_FILE, nullptr), HLX_REFUSED);
        EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_FILE, "no/such/folder/log"), HLX_NOT_OPENED);
        EXPECT_EQ(hlx_logAddSink(log, 3, nullptr), HLX_REFUSED);
        for (int i = 0; i < std::max(asked, 3); ++i)
            EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_FILE, path.c_str()), HLX_DONE);
        EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_FILE, path.c_str()), HLX_NO_MEMORY);
        hlx_logDestroy(log);
    }
    HlxLogContext bare{};
    EXPECT_EQ(hlx_logAddSink(&bare, HLX_SINK_CONSOLE, nullptr), HLX_NO_SLOTS);
    EXPECT_EQ(hlx_logRotate(&bare, "x"), 0);
    EXPECT_EQ(hlx_logAddSink(nullptr, HLX_SINK_CONSOLE, nullptr), HLX_REFUSED);
    EXPECT_EQ(hlx_logRotate(nullptr, "x"), 0);
    hlx_logDestroy(nullptr);
}

TEST(Log, WritesToTheStandardStreamsAndTheEventLog) {
    const std::int32_t one = 1, zero = 0;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    {
        ScopedLog log(nullptr, 0, "hlx_log_test");
        EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_CONSOLE, &one), HLX_DONE);
        EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_CONSOLE, &zero), HLX_DONE);
        EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_EVENT_LOG, nullptr), HLX_DONE);
        hlx_log(log, 1, HLX_AREA_INTEGRITY, "100%% %s", "%s");
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "100% %s\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "100% %s\n");
    EXPECT_EQ(std::printf("%s", ""), 0) << "the stream is still open";
}

TEST(Rotation, ComesAtOpeningFromTheLimitOn) {
    for (const std::uintmax_t size : {kRotationSize - 1, kRotationSize}) {
        const TempPath path("opened");
        const TempPath older("opened.rotate");
        path.Write("old");
        older.Write("older");
        Grow(path, size);
        ScopedLog log(&path);
        hlx_log(log, 1, HLX_AREA_INTEGRITY, "new");
        const bool rotates = size == kRotationSize;
        EXPECT_EQ(std::filesystem::file_size(older.c_str()), rotates ? size : 5);
        EXPECT_EQ(std::filesystem::file_size(path.c_str()) > size, !rotates);
    }
}

TEST(Rotation, OfARunningLogComesBeyondTheLimit) {
    const TempPath path("running");
    const TempPath older("running.rotate");
    path.Write("old");
    ScopedLog log(&path, HLX_LOG_TRUNCATE);
    EXPECT_EQ(path.Text(), "");
    Grow(path, kRotationSize);
    EXPECT_EQ(hlx_logRotate(log, path.c_str()), 0);
    Grow(path, kRotationSize + 1);
    EXPECT_EQ(hlx_logRotate(log, path.c_str()), 1);
    EXPECT_EQ(std::filesystem::file_size(older.c_str()), kRotationSize + 1);
    path.Write("added by another writer\n");
    hlx_log(log, 1, HLX_AREA_INTEGRITY, "new");
    EXPECT_EQ(path.Text(), "added by another writer\nnew\n") << "opened anew for appending";
    EXPECT_EQ(hlx_logRotate(log, path.c_str()), 0);

    Grow(path, kRotationSize + 1);
    EXPECT_EQ(hlx_logRotate(log, "no/such/folder/log"), 1);
    hlx_log(log, 1, HLX_AREA_INTEGRITY, "nowhere");
    EXPECT_EQ(std::filesystem::file_size(path.c_str()), kRotationSize + 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(hlx_logAddSink(log, HLX_SINK_CONSOLE, nullptr), HLX_DONE) << "no slot is lost";
}

void SetVariable(const std::string& name, const char* value) {
#ifdef _WIN32
    _putenv_s(name.c_str(), value);
#else
    setenv(name.c_str(), value, 1);
#endif
}

TEST(Environment, SetsWhatIsNotEmpty) {
    const struct {
        const char *prefix, *level, *mask;
        std::int32_t readLevel;
        std::uint32_t readMask;
    } cases[] = {
        {nullptr, "", "", 3, 0x30},
        {"", "5", "0x200", 5, 0x200},
        {"OTHER", "0x10", "010", 7, 8},
        {"OTHER", "012", "99999999999999999999", 7, UINT32_MAX},
        {"OTHER", "-4294967295", "-4294967296", 1, UINT32_MAX},
        {"OTHER", "none", "x", 0, 0},
        {"OTHER", "-1", "-16", 7, 0xFFFFFFF0},
    };
    for (const auto& each : cases) {
        const std::string name = each.prefix && *each.prefix ? each.prefix : "HLX_DAEMON";
        SetVariable(name + "_TRACE_LEVEL", each.level);
        SetVariable(name + "_TRACE_MASK", each.mask);
        SetVariable(name + "_TRACE_PATH", each.level);
        std::int32_t level = 3;
        std::uint32_t mask = 0x30;
        std::string path = "kept";
        hlx_logReadEnv(each.prefix, &level, &mask, path);
        hlx_logReadEnv(each.prefix, nullptr, nullptr, path);
        EXPECT_EQ(level, each.readLevel) << each.level;
        EXPECT_EQ(mask, each.readMask) << each.mask;
        EXPECT_EQ(path, *each.level ? each.level : "kept");
    }
}

TEST(SwCache, ReadsFourFieldsByTheirDelimiters) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "|||"},
        {"a:b:c:d\n", "a|b|c|d"},
        {"a:b:c:d", "a|b|c|d"},
        {"a:b:c:d:e\nrest\n", "a|b|c|d:e"},
        {"a\n", "a|||"},
        {"a:b\nc:d\n", "a|b|c|d"},
        {"::\n", "|||"},
        {"1234567:b:c:d\n", "1234567|b|c|d"},
        {"12345678:b:c:d\n", "1234567||b|c:d"},
        {"123456789:b:c:d\n", "1234567|9|b|c:d"},
    };
    const TempPath path("swcache");
    for (const auto& [text, fields] : cases) {
        path.Write(text);
        char name[8], version[8], third[8], fourth[8];
        ASSERT_EQ(hlx_getSwCache(path.c_str(), name, 8, version, 8, third, 8, fourth, 8), 0u);
        EXPECT_EQ(std::string(name) + "|" + version + "|" + third + "|" + fourth, fields) << text;
    }
    for (const std::uint32_t length : {4095u, 4096u, 4097u, 8191u, 8192u}) {  // blocks of 4096
        const std::string longName(length, 'n');
        path.Write(longName + ":v::f\n");
        char name[8192], version[8], third[8], fourth[8];
        EXPECT_EQ(hlx_getSwCache(path.c_str(), name, 8192, version, 8, third, 8, fourth, 8), 0u);
        EXPECT_EQ(name, longName.substr(0, 8191));
        EXPECT_STREQ(version, length < 8192 ? "v" : "");
        EXPECT_STREQ(fourth, length < 8192 ? "f" : ":f");
    }
    char field[8];
    EXPECT_EQ(hlx_getSwCache(path.c_str(), field, 8, nullptr, 8, field, 8, field, 8), 1u);
    EXPECT_EQ(hlx_getSwCache(path.c_str(), field, 8, field, 8, field, 8, field, 0), 1u);
}

TEST(SwCache, IsWrittenInPlaceOfAnOlderAndRemoved) {
    const TempPath path("written");
    path.Write("a longer text from before");
    EXPECT_EQ(hlx_setSwCache(path.c_str(), "Agent", "4.2.7-2", "", "x:y"), 0u);
    EXPECT_EQ(path.Text(), "Agent:4.2.7-2::x:y\n");
    EXPECT_EQ(hlx_removeSwCache(path.c_str()), 0u);

    const TempPath logged("logged");
    ScopedLog log(&logged);
    hlx_logSetMask(log, HLX_AREA_SWCACHE);
    hlx_logSetDefault(log);
    char field[8];
    EXPECT_EQ(hlx_removeSwCache(path.c_str()), 10u);
    EXPECT_EQ(hlx_getSwCache("no/file", field, 8, field, 8, field, 8, field, 8), 10u);
    EXPECT_EQ(hlx_setSwCache("no/file", "", "", "", ""), 10u);
    EXPECT_EQ(logged.Text(), std::string("hlx_getSwCache: Could not remove cache file ") +
                                 path.c_str() +
                                 "\nhlx_getSwCache: unable to open no/file\n"
                                 "hlx_setSwCache: unable to open no/file\n");
}

}  // namespace
