// The COM object: identity, counting, binding, and what it answers before and after.
#include "boundprovider.h"

namespace {

using Provider = ComPtr<MorvanePtProvider>;

Provider MakeProvider() { return Provider::Adopt(new MorvanePtProvider); }

TEST(Provider, AnswersForItsTwoInterfacesAndNoOther) {
    const Provider provider = MakeProvider();
    for (const IID& iid : {IID_IUnknown, IID_IPrintOemPrintTicketProvider}) {
        void* object = nullptr;
        EXPECT_EQ(provider->QueryInterface(iid, &object), S_OK);
        EXPECT_EQ(object, static_cast<IPrintOemPrintTicketProvider*>(provider.Get()));
        EXPECT_EQ(provider->Release(), 1u);
    }
    void* object = &object;
    EXPECT_EQ(provider->QueryInterface(IID_IPrintCoreHelper, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(provider->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

// The print subsystem calls through the table of slots.
TEST(Provider, HasThePublishedOperationsInItsFirstTwelveSlots) {
    const Provider provider = MakeProvider();
    void* self = static_cast<IPrintOemPrintTicketProvider*>(provider.Get());
    void** slots = *static_cast<void***>(self);
    const auto slot = [&]<class... Arguments>(int index, Arguments... arguments) {
        return reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(void*, Arguments...)>(slots[index])(self, arguments...);
    };
    EXPECT_EQ(slot(1), 2);  // AddRef
    EXPECT_EQ(slot(2), 1);  // Release
    INT* versions = nullptr;
    INT count = 0;
    EXPECT_EQ(slot(3, HANDLE{}, &versions, &count), S_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(*versions, 1);
    CoTaskMemFree(versions);
    OEMPTOPTS options = OEMPT_NOSNAPSHOT;
    BSTR* namespaces = nullptr;
    EXPECT_EQ(slot(4, &options, INT{2}, &options, &count, &namespaces), E_VERSION_NOT_SUPPORTED);
    EXPECT_EQ(slot(5, static_cast<IUnknown*>(nullptr)), E_INVALIDARG);
    BSTR uri = nullptr;
    EXPECT_EQ(slot(6, &uri), E_NOTIMPL);  // not bound yet
    EXPECT_EQ(slot(7, nullptr, ULONG{0}, nullptr, ULONG{0}, nullptr), E_INVALIDARG);
    EXPECT_EQ(slot(8, ULONG{0}, nullptr, ULONG{0}, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(slot(9, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(slot(10, nullptr), E_INVALIDARG);
    const auto ticket = LoadUsual("PrintTicket", "");
    EXPECT_EQ(slot(10, ticket.Get()), S_OK);
    EXPECT_EQ(slot(11, ticket.Get()), S_NO_CONFLICT);
}

using Binding = ProviderTest;

TEST_F(Binding, GivesTheNamespacesThatTheCapabilityWordAsksFor) {
    for (const auto& [printer, hasNamespace] : {std::pair{press.GetPrinter(), true}, {office.GetPrinter(), false}}) {
        SCOPED_TRACE(hasNamespace);
        const Provider provider = MakeProvider();
        OEMPTOPTS options = OEMPT_NOSNAPSHOT;
        INT count = 7;
        BSTR* namespaces = nullptr;
        EXPECT_EQ(provider->BindPrinter(nullptr, 1, &options, &count, &namespaces), E_INVALIDARG);
        EXPECT_EQ(count, 7) << "a refused call touches nothing";
        for (const INT version : {0, 2}) {
            count = 7;
            namespaces = reinterpret_cast<BSTR*>(&count);
            EXPECT_EQ(provider->BindPrinter(printer, version, &options, &count, &namespaces), E_VERSION_NOT_SUPPORTED);
            EXPECT_EQ(count, 0);
            EXPECT_EQ(namespaces, nullptr);
            EXPECT_EQ(options, OEMPT_NOSNAPSHOT);
        }
        ASSERT_EQ(provider->BindPrinter(printer, 1, &options, &count, &namespaces), S_OK);
        EXPECT_EQ(options, OEMPT_DEFAULT);
        Bstr uri;
        EXPECT_EQ(provider->QueryDeviceDefaultNamespace(uri.Put()), hasNamespace ? S_OK : E_NOTIMPL);
        ASSERT_EQ(count, hasNamespace ? 1 : 0);
        if (!hasNamespace) continue;
        Bstr bound;
        *bound.Put() = namespaces[0];
        CoTaskMemFree(namespaces);
        EXPECT_EQ(bound.View(), kPrivateKeywordsNamespace);
        EXPECT_EQ(uri.View(), kPrivateKeywordsNamespace);
    }
}

// Has every interface and counts what is asked of it.
struct FakeHelper final : IPrintCoreHelper {
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        EXPECT_EQ(iid, IID_IPrintCoreHelper);
        if (trouble) throw trouble;
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    ULONG references = 1;
    const char* trouble = nullptr;
};

TEST(Provider, TakesOneCoreHelperAndReleasesItAtItsEnd) {
    FakeHelper helper, second;
    Provider provider = MakeProvider();
    EXPECT_EQ(provider->PublishPrintTicketHelperInterface(LoadUsual("PrintTicket", "").Get()), S_OK) << "has none";
    helper.trouble = "throws";
    EXPECT_EQ(provider->PublishPrintTicketHelperInterface(&helper), E_FAIL);
    helper.trouble = nullptr;
    EXPECT_EQ(provider->PublishPrintTicketHelperInterface(&helper), S_OK);
    EXPECT_EQ(provider->PublishPrintTicketHelperInterface(&second), S_OK);
    EXPECT_EQ(second.references, 1u);
    EXPECT_EQ(helper.references, 2u);
    provider.Reset();
    EXPECT_EQ(helper.references, 1u);
}

}  // namespace
