// What the libraries take from a printer's product: texts, device settings, and the workflow object's answers.
#include <support/printerfixture.h>

#include <mvutil/datacache.h>
#include <mvutil/devicesettings.h>
#include <mvutil/persistentattributes.h>
#include <mvutil/textresources.h>
#include <workflow/workflowlibrary.h>

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace {

class ProductTest : public testing::Test {
protected:
    ~ProductTest() override { TextResourceLoader::Initialize(nullptr, false); }

    TestStore store_;
    TestPrinter office_{kOffice, W("Office")};
    TestPrinter script_{kScript, W("Script")};
};

// The absence of a value is distinguished from false and 0.
std::optional<bool> BooleanOf(DeviceSettingsManager& settings, DWORD feature) {
    bool value = false;
    if (!settings.GetBooleanValueFromAttributeBytes(feature, value)) return std::nullopt;
    return value;
}

TEST_F(ProductTest, EachThreadHasTheTextsOfItsOwnProduct) {
    const TestPrinter press(kPress, W("Press"));
    const ProductStringLoader loader(8430);
    EXPECT_TRUE(loader.LoadStringW(264).IsEmpty()) << "no product was given yet";
    std::thread other([&] {
        for (int round = 0; round < 100; ++round) {
            TextResourceLoader::Initialize(round % 2 ? script_.GetHandle() : press.GetHandle(), false);
            EXPECT_EQ(loader.LoadStringW(264), round % 2 ? W("Automatic") : W("Press Automatic"));
        }
    });
    for (int round = 0; round < 100; ++round) {
        TextResourceLoader::Initialize(office_.GetHandle(), round % 2 != 0);
        EXPECT_EQ(loader.LoadStringW(264), W("Automatic"));
    }
    other.join();
    EXPECT_TRUE(loader.LoadStringW(1).IsEmpty());
    TextResourceLoader::Initialize(INVALID_HANDLE_VALUE, false);
    EXPECT_TRUE(loader.LoadStringW(264).IsEmpty());
}

TEST_F(ProductTest, StoredSettingsGoOverTheProducts) {
    DeviceSettingsManager office{Printer(office_.GetHandle())};
    DeviceSettingsManager script{Printer(script_.GetHandle())};
    EXPECT_EQ(BooleanOf(office, 720), true);
    EXPECT_EQ(BooleanOf(script, 720), false);
    EXPECT_EQ(BooleanOf(script, 546), std::nullopt);
    ByteBuffer data;
    DWORD check = 0, checkAgain = 0;
    ASSERT_TRUE(office.GetDeviceSettingsDataFromStorage(data, check));

    AttributeBytesRawList list;
    list.Append(AttributeBytesFeatureId(720), AttributeBytesBooleanValue(false));
    DataCache cache(office_.GetHandle(), office_.GetCacheKey(), 0, true);
    const auto store = [&](const ByteBuffer& image) { cache.SetCachedValue(W("XDeviceSettings"), image, false); };
    store(PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list));
    DeviceSettingsManager overlaid{Printer(office_.GetHandle())};
    EXPECT_EQ(BooleanOf(overlaid, 720), false);
    ASSERT_TRUE(overlaid.GetDeviceSettingsDataFromStorage(data, checkAgain));
    EXPECT_NE(check, checkAgain);
    const ByteBuffer once = data;
    ASSERT_TRUE(overlaid.GetDeviceSettingsDataFromStorage(data, check));
    EXPECT_EQ(data, once);
    EXPECT_EQ(check, checkAgain);

    ByteBuffer image = PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
    image.appendLpbyte("", 1);
    store(image);
    EXPECT_EQ(BooleanOf(*std::make_unique<DeviceSettingsManager>(Printer(office_.GetHandle())), 720), true)
        << "nor are bytes behind one";
    store(ByteBuffer("damaged", 7));
    DeviceSettingsManager damaged{Printer(office_.GetHandle())};
    EXPECT_EQ(BooleanOf(damaged, 720), true) << "bytes that are no image count as none";
    EXPECT_FALSE(DeviceSettingsManager{Printer(INVALID_HANDLE_VALUE)}.GetDeviceSettingsDataFromStorage(data, check));
}

TEST_F(ProductTest, EachWorkflowLibraryTellsTheProductOfItsPrinter) {
    for (const char* file : {"mvwftuC0.dll", "mvwfwuC0.dll", "mvwfuvC0.dll"}) {
        SCOPED_TRACE(file);
        const UniqueModule library(LoadLibraryExW((ProgramFolder() / file).make_preferred().string<WCHAR>().c_str(),
                                                  nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
        ASSERT_TRUE(library);
        const auto find = [&](const char* name) {
            return reinterpret_cast<void (*)()>(GetProcAddress(library.Get(), name));
        };
        const auto get = reinterpret_cast<GetWorkflowObjectFunction>(find(kGetWorkflowObjectExport));
        const auto release = reinterpret_cast<ReleaseWorkflowObjectFunction>(find(kReleaseWorkflowObjectExport));
        ASSERT_TRUE(get && release);
        MvWorkflow* const workflow = get(nullptr);
        ASSERT_NE(workflow, nullptr);
        const ProductData& product = *workflow->GetWorkflowProductData();
        EXPECT_EQ(product.GetControllerFamily(), 5001u);
        workflow->SetPrinterHandle(script_.GetHandle());
        EXPECT_EQ(product.GetControllerFamily(), 8432u);
        workflow->SetPrinterHandle(INVALID_HANDLE_VALUE);
        EXPECT_EQ(product.GetControllerFamily(), 5001u);
        release(workflow);
    }
}

}  // namespace
