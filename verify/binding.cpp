// Binding a provider by hand.
#include "binding.h"

#include <objbase.h>

BindAnswer BindProvider(IPrintOemPrintTicketProvider& provider, HANDLE printer, INT version,
                        const CallSurroundings& surroundings) {
    BindAnswer answer;
    BSTR* namespaces = nullptr;
    answer.options = static_cast<OEMPTOPTS>(-1);
    const std::function<HRESULT()> bind = [&] {
        return provider.BindPrinter(printer, version, &answer.options, &answer.count, &namespaces);
    };
    answer.result = surroundings ? surroundings(bind) : bind();
    answer.hasArray = namespaces != nullptr;
    for (INT index = 0; SUCCEEDED(answer.result) && namespaces && index < answer.count; ++index) {
        const BSTR text = namespaces[index];
        answer.namespaces.emplace_back(text ? WideString(text, SysStringLen(text)) : WideString());
        SysFreeString(text);
    }
    CoTaskMemFree(namespaces);
    return answer;
}

ULONG CountReferences(IUnknown* object) {
    if (!object) return 0;
    object->AddRef();
    return object->Release();
}
