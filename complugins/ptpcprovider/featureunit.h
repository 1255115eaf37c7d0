// What the feature units of the provider share: the end of a unit that fails, and making room for what a unit writes.
#pragma once

#include <mvutil/morvaneexception.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>

// Runs the unit; a MorvaneComException ends it and becomes its result. Any other exception passes to the conversion.
template <class Unit>
HRESULT RunFeatureUnit(Unit unit) {
    try {
        return unit();
    } catch (const MorvaneComException& failure) {
        return failure.GetHresult();
    }
}

// A document may come in with an element doubled, and leaves with one: of what there is behind the first, the root's
// own children go, too.
inline void DeleteEveryFeature(PrintSchemaXmlDocument& document, const Bstr& prefix, const WCHAR* name) {
    if (document.DeleteFeatureNodeIfExists(prefix.Get(), name) == S_OK)
        document.DeleteEvery(W("Feature"), prefix.Get(), name);
}
inline void DeleteEveryParameterInit(PrintTicketXmlDocument& ticket, const Bstr& prefix, const WCHAR* name) {
    if (ticket.DeleteParameterInitNodeIfExists(prefix.Get(), name) == S_OK)
        ticket.DeleteEvery(W("ParameterInit"), prefix.Get(), name);
}
inline void DeleteEveryParameterDef(PrintCapabilitiesXmlDocument& capabilities, const Bstr& prefix, const WCHAR* name) {
    if (capabilities.DeleteParameterDefNodeIfExists(prefix.Get(), name) == S_OK)
        capabilities.DeleteEvery(W("ParameterDef"), prefix.Get(), name);
}
