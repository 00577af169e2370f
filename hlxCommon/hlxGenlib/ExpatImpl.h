// The XML parser as a base class, and a class that unloads the parser library.
#pragma once

#include <climits>
#include <cstring>
#include <exception>
#include <utility>

#include "ExpatLibrary.h"

// Owns one parser and routes its events to the members of the derived class T:
//
//     void OnStartElement(const char* tag, const char** attributes);  // name, value, ..., null
//     void OnEndElement();
//     void OnCharacterData(const char* data, int length);             // not NUL-terminated
//     void OnComment(const char* text);
//     void OnDefault(const char* data, int length);
//
// All strings are UTF-8. The handlers run inside Parse, on its thread, and may throw: the exception
// does not pass through the frames of the parser, no further handler is called, and Parse throws it
// again. An object serves one thread at a time. The line numbers given to hlx_guardParser are part
// of the interface, do not correct.
template <class T>
class CExpatImpl {
public:
    CExpatImpl() = default;
    CExpatImpl(const CExpatImpl&) = delete;
    CExpatImpl& operator=(const CExpatImpl&) = delete;
    virtual ~CExpatImpl() { Destroy(); }

    // Creates the parser with all handlers set, and frees an earlier one. A null or empty encoding
    // means that of the document, a null or empty separator no namespace processing. Returns false
    // if the parser or its library is not available; throws std::bad_alloc. After a failure only
    // Create and Destroy may be called.
    bool Create(const char* encoding, const char* separator) {
        Destroy();
        m_expat = hlx_expatFunctions();
        if (!m_expat) return false;
        m_p = m_expat->ParserCreate_MM(NullIfEmpty(encoding), nullptr, NullIfEmpty(separator));
        if (!m_p) return false;
        EnableHandlers();
        m_expat->SetUserData(m_p, this);
        return true;
    }

    // Parses a piece of `length` bytes; a negative length means up to the terminating NUL. False
    // if the parser rejected it.
    bool Parse(const char* text, int length, bool isFinal) {
        hlx_guardParser(m_p, 156);
        if (length < 0) {
            const std::size_t measured = std::strlen(text);
            if (measured > INT_MAX) return false;
            length = static_cast<int>(measured);
        }
        const XML_Status status = m_expat->Parse(m_p, text, length, isFinal);
        if (m_thrown) std::rethrow_exception(std::exchange(m_thrown, nullptr));
        return status != XML_STATUS_ERROR;
    }

    // Frees the parser, if there is one.
    void Destroy() {
        if (m_p) m_expat->ParserFree(m_p);
        m_p = nullptr;
    }

    void EnableHandlers() {
        EnableStartElementHandler(true);
        EnableEndElementHandler(true);
        EnableCharacterDataHandler(true);
        EnableDefaultHandler(true, true);
        EnableCommentHandler(true);
    }

    void EnableStartElementHandler(bool on) {
        hlx_guardParser(m_p, 222);
        m_expat->SetStartElementHandler(m_p, on ? &StartElement : nullptr);
    }

    void EnableEndElementHandler(bool on) {
        hlx_guardParser(m_p, 230);
        m_expat->SetEndElementHandler(m_p, on ? &EndElement : nullptr);
    }

    void EnableCharacterDataHandler(bool on) {
        hlx_guardParser(m_p, 247);
        m_expat->SetCharacterDataHandler(m_p, on ? &CharacterData : nullptr);
    }

    void EnableCommentHandler(bool on) {
        hlx_guardParser(m_p, 265);
        m_expat->SetCommentHandler(m_p, on ? &Comment : nullptr);
    }

    // `expand`: references to internal entities go to the character data handler instead.
    void EnableDefaultHandler(bool on, bool expand) {
        hlx_guardParser(m_p, 300);
        (expand ? m_expat->SetDefaultHandlerExpand : m_expat->SetDefaultHandler)(
            m_p, on ? &Default : nullptr);
    }

protected:
    XML_Parser m_p = nullptr;

private:
    static const char* NullIfEmpty(const char* text) { return text && *text ? text : nullptr; }

    // Calls a handler of the derived class, and stores its exception.
    template <class Handler>
    static void Route(void* user, Handler handler) {
        auto* const self = static_cast<CExpatImpl*>(user);
        if (self->m_thrown) return;
        try {
            handler(static_cast<T&>(*self));
        } catch (...) {
            self->m_thrown = std::current_exception();
        }
    }

    static void XMLCALL StartElement(void* user, const char* tag, const char** attributes) {
        Route(user, [=](T& target) { target.OnStartElement(tag, attributes); });
    }
    static void XMLCALL EndElement(void* user, const char*) {
        Route(user, [](T& target) { target.OnEndElement(); });
    }
    static void XMLCALL CharacterData(void* user, const char* data, int length) {
        Route(user, [=](T& target) { target.OnCharacterData(data, length); });
    }
    static void XMLCALL Comment(void* user, const char* text) {
        Route(user, [=](T& target) { target.OnComment(text); });
    }
    static void XMLCALL Default(void* user, const char* data, int length) {
        Route(user, [=](T& target) { target.OnDefault(data, length); });
    }

    const ExpatFunctions* m_expat = nullptr;  // the library of m_p
    std::exception_ptr m_thrown;              // thrown by a handler; Parse throws it again
};

// Unloads the parser library, which the first parser loads, when it is destroyed. All parsers must
// have been destroyed before.
class CHlxExpatWrapper {
public:
    CHlxExpatWrapper() = default;
    CHlxExpatWrapper(const CHlxExpatWrapper&) = delete;
    CHlxExpatWrapper& operator=(const CHlxExpatWrapper&) = delete;
    virtual ~CHlxExpatWrapper() { hlx_unloadExpat(); }
};
