// The result codes that the operations of the agent's common library share.
#pragma once

#include <cstdint>

enum HlxResult : std::int32_t {
    HLX_DONE = 0,
    HLX_REFUSED = 1,        // an argument that must be given is missing or out of range
    HLX_NO_MEMORY = 2,      // out of memory, or no free slot in a log context
    HLX_NULL_SINK = 5,      // a log sink's operation was called without a sink
    HLX_NO_SLOTS = 6,       // a log context without a table of sinks
    HLX_NOT_PARSED = 8,     // the XML parser rejected the text or is not available
    HLX_SOCKET_FAILED = 9,  // a socket call failed
    HLX_NO_FILE = 10,       // a file could not be opened or removed
    HLX_EXCEPTION = 11,     // an exception was caught
    HLX_NOT_OPENED = -1     // the log file or the event source could not be opened
};
