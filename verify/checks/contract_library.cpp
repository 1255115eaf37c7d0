// The plug-in DLL: its class factory, when it may be unloaded, and threads.
#include <objbase.h>
#include <subsystem/hresultnames.h>

#include <thread>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/testbench.h>

namespace {

constexpr CLSID kNobodysClass = {0x6d1b2f3e, 0x1c55, 0x4a0b, {0x93, 0x7e, 0x20, 0x5a, 0x4f, 0x61, 0x0c, 0xd3}};

void HandsOutItsClass(TestBench& bench) {
    const ProviderLibrary& library = bench.GetLibrary();
    void* object = &object;
    bench.Step("DllGetClassObject for an unknown class");
    bench.RequireResult("DllGetClassObject for an unknown class",
                        library.CallGetClassObject(kNobodysClass, IID_IClassFactory, &object),
                        CLASS_E_CLASSNOTAVAILABLE);
    bench.Require(object == nullptr, "DllGetClassObject for an unknown class leaves a pointer");
    const auto factory = library.GetClassFactory();
    bench.Step("CreateInstance with an outer object");
    object = &object;
    bench.RequireResult("CreateInstance with an outer object",
                        factory->CreateInstance(factory.Get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    bench.Step("CreateInstance for an unknown interface");
    object = &object;
    bench.RequireResult("CreateInstance for an unknown interface",
                        factory->CreateInstance(nullptr, kNobodysClass, &object), E_NOINTERFACE);
    bench.Require(object == nullptr, "CreateInstance for an unknown interface leaves a pointer");
    bench.Step("CreateInstance without a place for the object");
    bench.Require(FAILED(factory->CreateInstance(nullptr, IID_IUnknown, nullptr)),
                  "CreateInstance without a place for the object succeeds");
}

void StaysLoadedWhileInUse(TestBench& bench) {
    const ProviderLibrary& library = bench.GetLibrary();
    if (library.CallCanUnloadNow() == E_NOTIMPL)
        throw CheckNotApplicable("the library does not export DllCanUnloadNow");
    const auto require = [&](const char* when, HRESULT expected) {
        bench.Step(std::string("DllCanUnloadNow ") + when);
        const HRESULT result = library.CallCanUnloadNow();
        bench.Require(result == expected,
                      std::string("DllCanUnloadNow ") + when + " answers " + DescribeHresult(result));
    };
    require("with nothing alive", S_OK);
    auto provider = bench.MakeProvider();
    require("while a provider lives", S_FALSE);
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    BindProvider(*provider.Get(), printer.Get());
    provider.Reset();
    require("after the provider's end", S_OK);
    const auto factory = library.GetClassFactory();
    factory->LockServer(TRUE);
    require("while a lock is held", S_FALSE);
    factory->LockServer(FALSE);
}

void LoadsAgain(TestBench& bench) {
    const std::filesystem::path file = bench.DropLibrary();
    for (int round = 0; round < 3; ++round) {
        bench.Step("loading the library, round " + std::to_string(round));
        const auto library = std::make_shared<ProviderLibrary>(file);
        const PrintSession session(bench.GetPrinterName(), {library, bench.GetSource().coreProduct});
        DevmodeBuffer devmode = bench.MakeDevmode(session);
        session.MakeTicket(devmode);
    }
}

// One call after the other, on three threads: made on the first, used on the second, released on the third.
void ChangesThreads(TestBench& bench) {
    std::exception_ptr failure;
    const auto onThread = [&](auto run) {
        std::thread([&] {
            try {
                run();
            } catch (...) {
                failure = std::current_exception();
            }
        }).join();
        if (failure) std::rethrow_exception(failure);
    };
    std::unique_ptr<PrintSession> session;
    bench.Step("making and binding a provider on one thread");
    onThread([&] { session = bench.OpenSession(); });
    bench.Step("converting on a second thread");
    onThread([&] {
        DevmodeBuffer devmode = bench.MakeDevmode(*session);
        const auto ticket = session->MakeTicket(devmode);
        session->ApplyTicket(ticket.Get(), devmode);
        session->MakeCapabilities(ticket.Get());
    });
    bench.Step("releasing on a third thread");
    onThread([&] { session.reset(); });
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Contract, "class-factory", "the class factory refuses aggregation, unknown classes and interfaces",
      HandsOutItsClass}},
    {{CheckGroup::Contract, "unloading", "DllCanUnloadNow says no while an object or a lock lives, and yes after",
      StaysLoadedWhileInUse}},
    {{CheckGroup::Contract, "loading-again", "the library is loaded, used and freed several times", LoadsAgain}},
    {{CheckGroup::Contract, "threads", "a provider is made on one thread, used on another and released on a third",
      ChangesThreads}},
};

}  // namespace
