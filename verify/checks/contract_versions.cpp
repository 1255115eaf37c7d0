// The versions of the interface that a provider supports.
#include <objbase.h>

#include <algorithm>
#include <memory>

#include <verify/check.h>
#include <verify/testbench.h>

namespace {

void ListsVersions(TestBench& bench) {
    const auto provider = bench.MakeProvider();
    INT* versions = nullptr;
    INT count = -1;
    bench.Step("GetSupportedVersions of an unbound provider");
    const HRESULT result = provider->GetSupportedVersions(nullptr, &versions, &count);
    const std::unique_ptr<INT, decltype(&CoTaskMemFree)> owner(versions, CoTaskMemFree);
    bench.RequireResult("GetSupportedVersions", result, S_OK);
    bench.Require(count > 0, "GetSupportedVersions reports " + std::to_string(count) + " versions");
    bench.Require(versions != nullptr, "GetSupportedVersions hands out no array");
    bench.Require(std::find(versions, versions + count, 1) != versions + count, "version 1 is not among the versions");
}

const CheckRegistration versions({CheckGroup::Contract, "versions",
                                  "GetSupportedVersions lists version 1 in an array of the caller's", ListsVersions});

}  // namespace
