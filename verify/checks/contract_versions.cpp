// The versions of the interface that a provider supports.
#include <objbase.h>

#include <algorithm>
#include <memory>

#include <verify/check.h>
#include <verify/testbench.h>

namespace {

constexpr INT kMostVersions = 16;

void ListsVersions(TestBench& bench) {
    const auto provider = bench.MakeProvider();
    INT* list = nullptr;
    INT count = -1;
    bench.Step("GetSupportedVersions of an unbound provider");
    const HRESULT result = provider->GetSupportedVersions(nullptr, &list, &count);
    const std::unique_ptr<INT, decltype(&CoTaskMemFree)> owner(list, CoTaskMemFree);
    bench.RequireResult("GetSupportedVersions", result, S_OK);
    bench.Require(count > 0 && count <= kMostVersions,
                  "GetSupportedVersions reports " + std::to_string(count) + " versions");
    bench.Require(list != nullptr, "GetSupportedVersions hands out no array");
    const std::vector<INT> versions(list, list + count);
    bench.Require(std::find(versions.begin(), versions.end(), 1) != versions.end(),
                  "version 1 is not among the versions");
    for (const INT version : versions) {
        bench.Require(version > 0, "GetSupportedVersions lists version " + std::to_string(version));
        bench.Require(std::count(versions.begin(), versions.end(), version) == 1,
                      "GetSupportedVersions lists version " + std::to_string(version) + " twice");
    }
}

const CheckRegistration versions({CheckGroup::Contract, "versions",
                                  "GetSupportedVersions lists version 1, and no odd ones, in an array of the caller's",
                                  ListsVersions});

}  // namespace
