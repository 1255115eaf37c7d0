// Providers that break the contract of the interface.
#include "referenceprovider.h"

namespace {

struct NoVersions : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE, INT** versions, INT* count) override {
        *versions = nullptr;
        *count = 0;
        return S_OK;
    }
};
const FaultRegistration noVersions("supports no version", "versions", MakeFaulty<NoVersions>());

struct Crashing : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE, INT** versions, INT*) override {
        return **versions;  // the caller's is null
    }
};
const FaultRegistration crashing("crashes", "versions", MakeFaulty<Crashing>());

struct Hanging : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE, INT**, INT*) override {
        for (volatile bool forever = true; forever;) continue;
        return S_OK;
    }
};
const FaultRegistration hanging("hangs", "versions", MakeFaulty<Hanging>());

}  // namespace
