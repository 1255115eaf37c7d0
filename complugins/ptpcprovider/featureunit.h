// What the feature units of the provider share: the end of a unit that fails, and making room for what a unit writes.
#pragma once

#include <mvutil/morvaneexception.h>

// Runs the unit; a MorvaneComException ends it and becomes its result. Any other exception passes to the conversion.
template <class Unit>
HRESULT RunFeatureUnit(Unit unit) {
    try {
        return unit();
    } catch (const MorvaneComException& failure) {
        return failure.GetHresult();
    }
}

// Runs a deletion until it finds nothing more: a document may come in with an element doubled, and leaves with one.
template <class Deletion>
void DeleteEvery(Deletion deleteOne) {
    while (deleteOne() == S_OK) {
    }
}
