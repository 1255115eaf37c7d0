// Binding a provider by hand: what BindPrinter answers, read and freed as the print subsystem does.
#pragma once

#include <printsubsystem/printticketprovider.h>
#include <widetext.h>

#include <functional>
#include <string>
#include <vector>

struct BindAnswer {
    HRESULT result = E_FAIL;
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;  // of namespaces, as reported
    bool hasArray = false;
    std::vector<WideString> namespaces;  // of a success; an empty text for a null or empty one
};

// Runs a call of a provider, and nothing else.
using CallSurroundings = std::function<HRESULT(const std::function<HRESULT()>& call)>;

BindAnswer BindProvider(IPrintOemPrintTicketProvider& provider, HANDLE printer, INT version = 1,
                        const CallSurroundings& surroundings = {});

// The references that the object has now; 0 for null.
ULONG CountReferences(IUnknown* object);
