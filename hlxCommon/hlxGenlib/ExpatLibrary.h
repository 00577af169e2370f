// Loads and unloads the library of the XML parser.
//
// All functions are bound at the first use after the start or an unload. LIBEXPAT.dll is searched
// for by LoadLibrary, then in the agent's directory. Any thread may call.
#pragma once

#include <expat.h>

struct ExpatFunctions {
    decltype(&XML_ParserCreate_MM) ParserCreate_MM;
    decltype(&XML_ParserFree) ParserFree;
    decltype(&XML_Parse) Parse;
    decltype(&XML_SetUserData) SetUserData;
    decltype(&XML_SetStartElementHandler) SetStartElementHandler;
    decltype(&XML_SetEndElementHandler) SetEndElementHandler;
    decltype(&XML_SetCharacterDataHandler) SetCharacterDataHandler;
    decltype(&XML_SetCommentHandler) SetCommentHandler;
    decltype(&XML_SetDefaultHandler) SetDefaultHandler;
    decltype(&XML_SetDefaultHandlerExpand) SetDefaultHandlerExpand;
};

// Returns the functions, valid until the next unload; null, and a line in the default log, if the
// library or one of them is missing. Throws std::bad_alloc if it would have to bind them and has no
// memory for a path.
const ExpatFunctions* hlx_expatFunctions();

// Unloads the library, if it is loaded. No parser may be left.
void hlx_unloadExpat();

// Ends the process with a message if `parser` is null: a null parser must never reach the library.
void hlx_guardParser(XML_Parser parser, int line);
