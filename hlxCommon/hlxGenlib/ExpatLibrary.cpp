#include "ExpatLibrary.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>

#include "hlxAgentKey.h"
#include "hlxLog.h"
#include "hlxOwned.h"

namespace {

constexpr char kFileName[] = "LIBEXPAT.dll";

// Not std::mutex, whose errors bring 9 KB of the C++ library into vh_tray.exe. Never deleted:
// static objects of others may still hold a parser.
struct Lock {
    Lock() { InitializeCriticalSection(&section); }
    void lock() { EnterCriticalSection(&section); }
    void unlock() { LeaveCriticalSection(&section); }

    CRITICAL_SECTION section;
};

// Guards the two below.
Lock& TheLock() {
    static Lock lock;
    return lock;
}
HMODULE g_library;
ExpatFunctions g_functions;

HMODULE FindLibrary() {
    if (const HMODULE found = LoadLibraryA(kFileName)) return found;
    return LoadLibraryA(hlx_agentFile(kFileName).c_str());
}

template <class Function>
bool Bind(HMODULE library, const char* name, Function& function) {
    using AnyFunction = void (*)();  // a cast from this type gives no warning
    function =
        reinterpret_cast<Function>(reinterpret_cast<AnyFunction>(GetProcAddress(library, name)));
    return function != nullptr;
}

bool BindAll(HMODULE library, ExpatFunctions& to) {
    return Bind(library, "XML_ParserCreate_MM", to.ParserCreate_MM) &&
           Bind(library, "XML_ParserFree", to.ParserFree) && Bind(library, "XML_Parse", to.Parse) &&
           Bind(library, "XML_SetUserData", to.SetUserData) &&
           Bind(library, "XML_SetStartElementHandler", to.SetStartElementHandler) &&
           Bind(library, "XML_SetEndElementHandler", to.SetEndElementHandler) &&
           Bind(library, "XML_SetCharacterDataHandler", to.SetCharacterDataHandler) &&
           Bind(library, "XML_SetCommentHandler", to.SetCommentHandler) &&
           Bind(library, "XML_SetDefaultHandler", to.SetDefaultHandler) &&
           Bind(library, "XML_SetDefaultHandlerExpand", to.SetDefaultHandlerExpand);
}

}  // namespace

const ExpatFunctions* hlx_expatFunctions() {
    const std::lock_guard guard(TheLock());
    if (g_library) return &g_functions;
    HlxModule library(FindLibrary());
    if (!library || !BindAll(library.get(), g_functions)) {
        hlx_log(hlx_logGetDefault(), 1, HLX_AREA_XML, "hlx_expatFunctions: unable to load %s",
                kFileName);
        return nullptr;
    }
    g_library = library.release();
    return &g_functions;
}

void hlx_unloadExpat() {
    const std::lock_guard guard(TheLock());
    if (!g_library) return;
    FreeLibrary(g_library);
    g_library = nullptr;
    g_functions = {};
}

// The file name and the lines in the message are part of the interface, do not correct.
void hlx_guardParser(XML_Parser parser, int line) {
    if (parser) return;
    std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", "m_p != NULL",
                 "hlxCommon\\hlxGenlib\\ExpatImpl", line);
    std::abort();
}
