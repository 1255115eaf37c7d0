// libmvconvert against what the command's own functions give, and against callers that do wrong.
#include <convert/converter.h>
#include <convert/throwawayprinter.h>
#include <mvconvert.h>
#include <subsystem/devmodemaker.h>
#include <subsystem/inputs/ticketinput.h>
#include <support/printerfixture.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

// What a call came to, as a text to compare and to read.
struct Outcome {
    int status = -1;
    std::string bytes, text;
    HRESULT hresult = S_OK;

    bool operator==(const Outcome&) const = default;
};

Outcome Take(int status, mvconvert_result& result) {
    Outcome outcome{status, std::string(static_cast<const char*>(result.data), result.size),
                    result.text ? result.text : "", result.hresult};
    mvconvert_free(&result);
    mvconvert_free(&result);  // harmless
    return outcome;
}

class Product {
public:
    explicit Product(const std::string& name) {
        mvconvert_result result;
        const Outcome outcome = Take(mvconvert_open(name.c_str(), &product_, &result), result);
        EXPECT_EQ(outcome.status, MVCONVERT_OK) << outcome.text;
    }
    ~Product() { mvconvert_close(product_); }
    Product(const Product&) = delete;
    Product& operator=(const Product&) = delete;

    Outcome ToTicket(std::string_view devmode) const {
        mvconvert_result result;
        return Take(mvconvert_devmode_to_ticket(product_, devmode.data(), devmode.size(), &result), result);
    }
    Outcome ToDevmode(std::string_view ticket, std::string_view base = {}) const {
        mvconvert_result result;
        return Take(
            mvconvert_ticket_to_devmode(product_, ticket.data(), ticket.size(), base.data(), base.size(), &result),
            result);
    }
    Outcome ToCapabilities(std::string_view ticket = {}) const {
        mvconvert_result result;
        return Take(mvconvert_capabilities(product_, ticket.data(), ticket.size(), &result), result);
    }
    Outcome GetDefault() const {
        mvconvert_result result;
        return Take(mvconvert_default_devmode(product_, &result), result);
    }

private:
    mvconvert_product* product_ = nullptr;
};

Outcome Success(const Converted& converted) {
    Outcome outcome{MVCONVERT_OK, converted.bytes, "", S_OK};
    for (const std::string& loss : converted.losses) outcome.text += loss + "\n";
    return outcome;
}

// A job of the product with a setting that is lost, and all that the command makes of it.
struct Expected {
    explicit Expected(const std::string& product) {
        const TestStore store;
        Converters converters(InstallThrowawayPrinter(ProductFile(product)));
        converters.Use([&](Converter& converter) {
            const DevmodeBuffer job = MakeDevmode(*LoadProduct(ProductFile(product)), W("Hall"),
                                                  {{{"dmScale", "50"}, {"dmCopies", "7"}}, {{"43", "7"}}});
            devmode = job.GetBytesView();
            ticket = Success(converter.ToTicket(job));
            defaults = converter.MakeDefaultDevmode().GetBytesView();
            const auto document = [&] { return ReadTicketBytes(ticket.bytes, "ticket"); };
            fromDefaults = Success(converter.ToDevmode(document().Get(), converter.MakeDefaultDevmode()));
            fromJob = Success(converter.ToDevmode(document().Get(), job));
            capabilities = Success(converter.ToCapabilities(document().Get()));
            ownCapabilities = Success(converter.ToCapabilities(nullptr));
            return 0;
        });
    }

    void Compare(const Product& product) const {
        EXPECT_EQ(product.GetDefault(), Success({defaults, {}}));
        EXPECT_EQ(product.ToTicket(devmode), ticket) << product.ToTicket(devmode).text;
        EXPECT_EQ(product.ToDevmode(ticket.bytes), fromDefaults);
        EXPECT_EQ(product.ToDevmode(ticket.bytes, devmode), fromJob);
        EXPECT_EQ(product.ToCapabilities(ticket.bytes), capabilities);
        EXPECT_EQ(product.ToCapabilities(), ownCapabilities);
    }

    std::string devmode, defaults;
    Outcome ticket, fromDefaults, fromJob, capabilities, ownCapabilities;
};

class ConvertLibrary : public testing::TestWithParam<const char*> {};

TEST_P(ConvertLibrary, GivesWhatTheCommandGives) {
    const Expected expected(GetParam());
    EXPECT_NE(expected.ticket.text.find("lost: Scale: 50 % -> 100 %"), std::string::npos) << expected.ticket.text;
    const Product first(GetParam());
    expected.Compare(first);
    expected.Compare(Product(ProductFile(GetParam()).string()));  // by its path, and closed before the first
    expected.Compare(first);
}

INSTANTIATE_TEST_SUITE_P(Of, ConvertLibrary, testing::Values(kPress, kOffice, kScript));

TEST(ConvertLibrary, ThreadsShareProducts) {
    const Expected press(kPress), script(kScript);
    const Product first(kPress), second(kScript);
    std::vector<std::thread> threads;
    for (int number = 0; number < 3; ++number) {
        threads.emplace_back([&] { press.Compare(first); });
        threads.emplace_back([&] { script.Compare(second); });
        threads.emplace_back([&] { press.Compare(Product(kPress)); });  // printers come and go beside the others
    }
    for (std::thread& thread : threads) thread.join();
}

// Two files of one model, as an edited copy is.
TEST(ConvertLibrary, ProductsOfOneModelDoNotMeet) {
    const ChangedProduct changed(
        kPress, {{"dmCopies = 1", "dmCopies = 2"}, {"{ size = \"NorthAmericaNumber11Envelope\" },", ""}});
    const Expected own(kPress);
    auto first = std::make_unique<Product>(kPress);
    const auto second = std::make_unique<Product>(changed.GetFile().string());
    own.Compare(*first);
    EXPECT_NE(second->ToCapabilities().bytes, own.ownCapabilities.bytes);
    const Outcome before = second->GetDefault();
    EXPECT_NE(before.bytes, own.defaults);
    first.reset();
    EXPECT_EQ(second->GetDefault(), before);
    own.Compare(Product(kPress));
}

struct BadCall {
    const char* name;
    std::function<int(mvconvert_product*, mvconvert_result*)> call;
    int status;
    const char* text;  // that the sentence holds
    HRESULT hresult = S_OK;
};

const std::string kBareTicket =
    "<PrintTicket xmlns=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\" version=\"1\"/>";

auto Devmode(const char* bytes, std::size_t size) {
    return [=](mvconvert_product* product, mvconvert_result* result) {
        return mvconvert_devmode_to_ticket(product, bytes, size, result);
    };
}
auto Ticket(const std::string& ticket, const char* base = nullptr, std::size_t baseSize = 0) {
    return [=](mvconvert_product* product, mvconvert_result* result) {
        return mvconvert_ticket_to_devmode(product, ticket.data(), ticket.size(), base, baseSize, result);
    };
}
auto Open(const char* name) {
    return [=](mvconvert_product*, mvconvert_result* result) {
        mvconvert_product* opened = reinterpret_cast<mvconvert_product*>(result);
        const int status = mvconvert_open(name, &opened, result);
        EXPECT_EQ(opened, nullptr);
        return status;
    };
}

const BadCall kBadCalls[] = {
    {"no devmode", Devmode(nullptr, 0), MVCONVERT_BAD_ARGUMENT, "'devmode' is NULL"},
    {"no devmode of a size", Devmode(nullptr, 9), MVCONVERT_BAD_ARGUMENT, "'devmode' is NULL"},
    {"empty", Devmode("", 0), MVCONVERT_BAD_INPUT, "'devmode' is an empty file"},
    {"garbage", Devmode("\x01\x02\xFF\xFE\x00", 5), MVCONVERT_BAD_INPUT, "too few for a DEVMODE"},
    {"picture", Devmode("\x89PNG", 4), MVCONVERT_BAD_INPUT, "'devmode' is a picture"},
    {"too large", Devmode("", (std::size_t{64} << 20) + 1), MVCONVERT_BAD_INPUT, "'devmode' is too large"},
    {"other XML", Ticket("<a/>"), MVCONVERT_BAD_INPUT, "ticket"},
    {"cut XML", Ticket("<psf:PrintTicket"), MVCONVERT_BAD_INPUT, "ticket: "},
    {"base of garbage", Ticket(kBareTicket, "%PDF-", 5), MVCONVERT_BAD_INPUT, "'base' is a PDF file"},
    {"base of nothing", Ticket(kBareTicket, nullptr, 5), MVCONVERT_BAD_ARGUMENT, "'base' is NULL"},
    {"no prefix", Ticket(kBareTicket), MVCONVERT_FAILED,
     "answered E_FAIL (0x80004005)\n  reported: MorvanePtProvider::ConvertPrintTicketToDevMode", E_FAIL},
    {"no product",
     [](mvconvert_product*, mvconvert_result* result) { return mvconvert_default_devmode(nullptr, result); },
     MVCONVERT_BAD_ARGUMENT, "'product' is NULL"},
    {"unknown product", Open("pres8434"), MVCONVERT_NO_PRODUCT, "there is no product 'pres8434'"},
    {"product without a name", Open(nullptr), MVCONVERT_BAD_ARGUMENT, "'product' is NULL"},
    {"product that is none", Open("/proc/self/exe"), MVCONVERT_BAD_INPUT, "a product file is bad: "},
};

TEST(ConvertLibrary, AnswersBadCalls) {
    mvconvert_product* product = nullptr;
    mvconvert_result result;
    ASSERT_EQ(mvconvert_open(kPress, &product, &result), MVCONVERT_OK);
    for (const BadCall& bad : kBadCalls) {
        const Outcome outcome = Take(bad.call(product, &result), result);
        EXPECT_EQ(outcome.status, bad.status) << bad.name;
        EXPECT_NE(outcome.text.find(bad.text), std::string::npos) << bad.name << ": " << outcome.text;
        EXPECT_TRUE(outcome.text.ends_with('\n')) << bad.name;
        EXPECT_EQ(outcome.bytes, "") << bad.name;
        EXPECT_EQ(outcome.hresult, bad.hresult) << bad.name;
    }
    EXPECT_EQ(mvconvert_default_devmode(product, nullptr), MVCONVERT_BAD_ARGUMENT);
    EXPECT_EQ(mvconvert_open(kPress, nullptr, &result), MVCONVERT_BAD_ARGUMENT);
    mvconvert_free(&result);
    mvconvert_free(nullptr);
    mvconvert_close(product);
    mvconvert_close(nullptr);
}

}  // namespace
