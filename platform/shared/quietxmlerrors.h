// QuietXmlErrors: keeps libxml2 from printing what it cannot report to a parser's own handlers.
#pragma once

#include <libxml/xmlerror.h>

// For its lifetime and this thread. Failed conversions of an encoding are such errors; the parser that meets one fails,
// and reports that in its own way.
class QuietXmlErrors {
public:
    QuietXmlErrors() noexcept : report_(xmlGenericError), context_(xmlGenericErrorContext) {
        xmlSetGenericErrorFunc(nullptr, Ignore);
    }
    QuietXmlErrors(const QuietXmlErrors&) = delete;
    QuietXmlErrors& operator=(const QuietXmlErrors&) = delete;
    ~QuietXmlErrors() { xmlSetGenericErrorFunc(context_, report_); }

private:
    static void Ignore(void*, const char*, ...) {}

    xmlGenericErrorFunc report_;
    void* context_;
};
