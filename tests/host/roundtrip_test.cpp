// Every paper of every product, the user's own among them, from a DEVMODE to a ticket and back.
#include "sounddocument.h"

#include <capabilitycaches.h>
#include <mscacheddevicecapabilities.h>
#include <products/reader/productdescription.h>
#include <subsystem/devmodemaker.h>
#include <subsystem/hosttext.h>
#include <subsystem/xmlfile.h>
#include <support/printerfixture.h>
#include <support/userpapers.h>

#include <map>

namespace {

constexpr LONG kFormWidth = 1234, kFormLength = 2345;  // tenths of a millimetre: sizes of no product
constexpr LONG kCustomWidth = 1357, kCustomLength = 2468;

// A printer of one product with a form and a custom size of the user's.
struct Subject {
    explicit Subject(const char* name) : product(LoadProduct(ProductFile(name))), printer(name) {
        AddForm(printer.GetHandle(), W("Round Trip Form"), kFormWidth * 100, kFormLength * 100);
        AddCustomSize(W("Round Trip Custom Size"), kCustomWidth * 100, kCustomLength * 100, 0);
        RebuildCapabilityCaches(printer.GetHandle());
        session = std::make_unique<PrintSession>(printer.GetName());
        records =
            MsCachedDeviceCapabilities(nullptr).GetPaperDatabaseCachedDeviceCapabilitiesVector(printer.GetHandle());
    }

    DevmodeBuffer Fresh(const DevmodeSettings& settings = {}) const {
        return MakeDevmode(*product, printer.GetName().AsWideString(), settings);
    }
    // To a DEVMODE that carries the printer's capability caches beside its settings.
    DevmodeBuffer Apply(IXMLDOMDocument2* ticket) const {
        DevmodeBuffer devmode = Fresh();
        ExportCapabilityCaches(printer.GetHandle(), devmode);
        session->ApplyTicket(ticket, devmode);
        return devmode;
    }

    std::shared_ptr<const ProductDescription> product;
    TestStore store;
    TestPrinter printer;
    std::unique_ptr<PrintSession> session;
    std::vector<_tag_FormsInfoRec> records;
};

DevmodeSettings SelectPaper(LONG number, LONG width, LONG length) {
    return {{{"dmPaperSize", std::to_string(number)},
             {"dmPaperWidth", std::to_string(width)},
             {"dmPaperLength", std::to_string(length)}},
            {}};
}

bool IsListed(const _tag_FormsInfoRec& record) {
    const auto type = record.pageSizeType;
    return type == 25001 || type == 25002 || type == 25004;
}

// The DEVMODE has the record's paper; records of one size do not merge, as the ticket names the size as well.
void ExpectPaper(const _tag_FormsInfoRec& record, const DevmodeBuffer& devmode) {
    const DEVMODEW got = devmode.CopyPublicPart();
    const std::string account = ToUtf8(record.name) + ", type " + std::to_string(record.pageSizeType);
    EXPECT_EQ(static_cast<WORD>(got.dmPaperSize), IsListed(record) ? record.msPaperId : DMPAPER_USER) << account;
    EXPECT_EQ(got.dmPaperWidth, record.width) << account;
    EXPECT_EQ(got.dmPaperLength, record.length) << account;
}

class RoundTrip : public testing::TestWithParam<const char*> {};

TEST_P(RoundTrip, PaperComesBack) {
    const Subject subject(GetParam());
    std::map<DWORD, int> types;
    for (const _tag_FormsInfoRec& record : subject.records) {
        if (record.pageSizeType == 25007 || record.pageSizeType == 25008) continue;  // no size of their own
        ++types[record.pageSizeType];
        DevmodeBuffer devmode =
            subject.Fresh(SelectPaper(IsListed(record) ? record.msPaperId : DMPAPER_USER, record.width, record.length));
        const PrintSession::Document ticket = subject.session->MakeTicket(devmode);
        ExpectSound(ticket.Get());
        ExpectPaper(record, subject.Apply(ticket.Get()));
    }
    EXPECT_GT(types[25001], 0);
    EXPECT_GT(types[25004], 0);
    EXPECT_GE(types[25003], 2) << "the user's form, which the caches keep under this type, and the custom size";

    // A size of no record travels in the ticket's parameters; the driver family reads number 3, tabloid, as 17.
    _tag_FormsInfoRec custom{}, tabloid{};
    custom.width = 1000;
    custom.length = 1500;
    DevmodeBuffer devmode = subject.Fresh(SelectPaper(DMPAPER_USER, custom.width, custom.length));
    ExpectPaper(custom, subject.Apply(subject.session->MakeTicket(devmode).Get()));
    tabloid.msPaperId = DMPAPER_11X17;
    tabloid.pageSizeType = 25001;
    tabloid.width = 2794;
    tabloid.length = 4318;
    devmode = subject.Fresh(SelectPaper(DMPAPER_TABLOID, 2159, 2794));
    ExpectPaper(tabloid, subject.Apply(subject.session->MakeTicket(devmode).Get()));
}

INSTANTIATE_TEST_SUITE_P(Products, RoundTrip, testing::Values(kPress, kOffice, kScript));

}  // namespace
