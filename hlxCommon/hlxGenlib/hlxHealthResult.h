// The reader of the health document: an XML document in UTF-8 becomes plain values.
//
// For programs that write the document (healthnotif.txt): the applet compares the last-write time
// of the file, in whole seconds, with its clock reading five seconds earlier, and skips a file that
// is open for writing. So write a new file, set its last-write time one second ahead, and rename it
// into place. A document with the state that is shown already shows nothing.
#pragma once

#include <cstdint>

#include "hlxResult.h"

// Health states.
enum HlxHealthState : std::uint32_t {
    HLX_HEALTH_UNKNOWN = 0,
    HLX_HEALTH_LOW = 1,
    HLX_HEALTH_MEDIUM = 2,
    HLX_HEALTH_HIGH = 3
};

// Parses the document `text`, NUL-terminated and never null, and returns its values.
//
// Any out-parameter may be null. The out-parameter of a missing element is not changed, so the
// caller sets all of them to zero first. Only the first element of each name counts, wherever it
// is; adjacent `RestrictIP` elements all count.
//
//     autoInstall, enabled, displayHealthIcon    0 or 1
//     healthState                                an HlxHealthState
//     rawResult                                  the text of the element HLXHealthResult
//     message, messagePopup                      the text of Message; whether to show it in a box
//     browserUrl, browserPopup                   the page of Browser; whether to open it
//     restrictCount, restrictAddresses           the count of addresses, twice that of the ranges;
//                                                first and last address of each range in turn, in
//                                                network byte order, both 0 for an unusable range
//
// The texts and the array are new guarded blocks, which the caller owns whatever the result is and
// releases with hlxfree. If there is not enough memory for the message, the url or the addresses,
// null is returned.
//
// Codes: 0, also for a document without these elements; HLX_NO_MEMORY if there is not enough memory
// for the raw result; HLX_NOT_PARSED with nothing returned, also if the parser is not available;
// HLX_EXCEPTION, with some values possibly returned. Throws nothing. Any thread may call as long as
// no other one unloads the parser's library, which all share (CHlxExpatWrapper in ExpatImpl.h).
HlxResult hlx_parseHealthResult(const char* text, std::uint32_t* autoInstall,
                                std::uint32_t* enabled, std::uint32_t* healthState,
                                std::uint32_t* displayHealthIcon, char** rawResult, char** message,
                                std::uint32_t* messagePopup, char** browserUrl,
                                std::uint32_t* browserPopup, std::uint32_t* restrictCount,
                                std::uint32_t** restrictAddresses);
