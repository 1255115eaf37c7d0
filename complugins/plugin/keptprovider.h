// KeptProvider: a MorvanePtProvider that keeps the plug-in loaded for as long as it lives.
#pragma once

#include <comptr.h>
#include <printsubsystem/printticketprovider.h>

// A new provider behind an object of the plug-in's own; the two have one identity, the plug-in's. Throws
// std::bad_alloc.
ComPtr<IPrintOemPrintTicketProvider> MakeKeptProvider();
