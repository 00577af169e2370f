// Counts of live objects: what programs have obtained from the API and not yet released.
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace simulator {

// The number of live objects by kind, once every thread is idle; kinds of which there is none are
// missing. A program releases everything before it ends, so equal results before its start and
// after its end are what a test expects.
//
// Kinds: event, event source, file, mutex, registry key, thread, token (open handles); window,
// menu, icon (not the shared ones of LoadIconA), bitmap, pen, device context; library (references),
// socket, socket startup, COM startup, local memory.
std::map<std::string, std::size_t> LiveObjects();

}  // namespace simulator
