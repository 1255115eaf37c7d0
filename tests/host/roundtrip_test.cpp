// Every paper and media type of every product, from a DEVMODE to a ticket and back, and from each option of the
// capabilities to a DEVMODE.
#include "sounddocument.h"

#include <bstr.h>
#include <capabilitycaches.h>
#include <mscacheddevicecapabilities.h>
#include <products/reader/productdescription.h>
#include <subsystem/devmodemaker.h>
#include <subsystem/hosttext.h>
#include <subsystem/schemacheck/schematree.h>
#include <subsystem/xmlfile.h>
#include <support/printerfixture.h>
#include <support/userpapers.h>
#include <xdevmode.h>

#include <cstdlib>
#include <map>

namespace {

constexpr WORD kTabloid = 3, kElevenBySeventeen = 17;
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
    // Without the driver's own data, which would bring the media type back by itself.
    PrintSession::Document MakeBareTicket(DevmodeBuffer& devmode) const {
        PrintSession::Document ticket = session->MakeTicket(devmode);
        ComPtr<IXMLDOMNode> data, root, removed;
        EXPECT_EQ(ticket->selectSingleNode(Bstr(W("//*[contains(@name,':JobMorvaneDriverData')]")).Get(), data.Put()),
                  S_OK);
        if (data && data->get_parentNode(root.Put()) == S_OK) {
            EXPECT_EQ(root->removeChild(data.Get(), removed.Put()), S_OK);
        }
        return ticket;
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
void ExpectPaper(const _tag_FormsInfoRec& record, DevmodeBuffer devmode) {
    const DEVMODEW got = devmode.CopyPublicPart();
    const std::string account = ToUtf8(record.name) + ", type " + std::to_string(record.pageSizeType);
    EXPECT_EQ(static_cast<WORD>(got.dmPaperSize), IsListed(record) ? record.msPaperId : DMPAPER_USER) << account;
    EXPECT_EQ(got.dmPaperWidth, record.width) << account;
    EXPECT_EQ(got.dmPaperLength, record.length) << account;
}

struct MediaType {
    DWORD value = 5001;  // the automatic one, unless the settings tell another
    CXString text;
    bool operator==(const MediaType& other) const { return value == other.value && text == other.text; }
};

MediaType ReadMediaType(DevmodeBuffer& devmode) {
    XDevmode settings(devmode.Get());
    AttributeBytesIndexedList outer, inner;
    MediaType media;
    settings.GetDocPropAttributeBytesIndexedList()->GetCollection(AttributeBytesFeatureId(477), outer);
    outer.GetCollection(AttributeBytesFeatureId(210), inner);
    inner.GetOptionValueOrNewId(AttributeBytesFeatureId(175), media.value, media.text);
    return media;
}

// An option of the capabilities, and a ticket that selects it.
struct Offer {
    std::string name, displayName;
    LONG width = 0, length = 0;  // tenths of a millimetre; 0 when the option has none
    PrintSession::Document ticket;
};

LONG GetSize(const SchemaElement& option, std::string_view keyword) {
    for (const auto& child : option.children)
        if (child->Name().Is(kKeywordsUri, keyword))
            if (const SchemaElement* value = child->FindChild(SchemaKind::Value))
                return static_cast<LONG>(std::strtol(value->text.c_str(), nullptr, 10) / 100);
    return 0;
}

// The options of a feature whose values the option itself tells.
std::vector<Offer> GetOffers(const Subject& subject, const char* keyword) {
    const SchemaDocument capabilities = ReadSchemaDocument(ExpectSound(subject.session->MakeCapabilities().Get()));
    std::vector<Offer> offers;
    for (const auto& feature : capabilities.root->children) {
        if (feature->kind != SchemaKind::Feature || !feature->Name().Is(kKeywordsUri, keyword)) continue;
        for (const auto& option : feature->children) {
            if (option->kind != SchemaKind::Option) continue;
            Offer offer{*option->FindAttribute("name"), "", GetSize(*option, "MediaSizeWidth"),
                        GetSize(*option, "MediaSizeHeight"), nullptr};
            if (const SchemaElement* display = option->FindProperty(kKeywordsUri, "DisplayName"))
                offer.displayName = display->FindChild(SchemaKind::Value)->text;
            std::string text = "<psf:PrintTicket version=\"1\"";
            for (const auto& [prefix, uri] : capabilities.root->declarations)
                text += " xmlns:" + prefix + "=\"" + uri + "\"";
            text += "><psf:Feature name=\"psk:" + std::string(keyword) + "\"><psf:Option name=\"" + offer.name + "\">";
            for (const auto& [size, tenths] :
                 {std::pair("MediaSizeWidth", offer.width), std::pair("MediaSizeHeight", offer.length)})
                if (tenths > 0)
                    text += "<psf:ScoredProperty name=\"psk:" + std::string(size) +
                            "\"><psf:Value xsi:type=\"xsd:integer\">" + std::to_string(tenths * 100) +
                            "</psf:Value></psf:ScoredProperty>";
            text += "</psf:Option></psf:Feature></psf:PrintTicket>";
            offer.ticket = ReadDocumentBytes(text, "ticket");
            offers.push_back(std::move(offer));
        }
    }
    return offers;
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
        // The driver family reads tabloid as the 11 x 17 inches that it is, where the printer has that paper.
        _tag_FormsInfoRec expected = record;
        if (expected.msPaperId == kTabloid && subject.product->FindPaper(kElevenBySeventeen))
            expected.msPaperId = kElevenBySeventeen;
        ExpectPaper(expected, subject.Apply(ticket.Get()));
    }
    EXPECT_GT(types[25001], 0);
    EXPECT_GT(types[25004], 0);
    EXPECT_GE(types[25003], 2) << "the user's form, which the caches keep under this type, and the custom size";

    // A size of no record travels in the ticket's parameters.
    _tag_FormsInfoRec custom{};
    custom.width = 1000;
    custom.length = 1500;
    DevmodeBuffer devmode = subject.Fresh(SelectPaper(DMPAPER_USER, custom.width, custom.length));
    ExpectPaper(custom, subject.Apply(subject.session->MakeTicket(devmode).Get()));
}

TEST_P(RoundTrip, EachOfferedPaperSelectsItsRecord) {
    const Subject subject(GetParam());
    std::size_t selected = 0;
    for (const Offer& offer : GetOffers(subject, "PageMediaSize")) {
        if (offer.width == 0) continue;  // the custom size, whose parameters the ticket would set
        bool hasRecord = false;
        for (const _tag_FormsInfoRec& record : subject.records) {
            if (ToUtf8(record.name) != offer.displayName || record.width != offer.width ||
                record.length != offer.length)
                continue;
            hasRecord = true;
            ExpectPaper(record, subject.Apply(offer.ticket.Get()));
            break;
        }
        EXPECT_TRUE(hasRecord) << offer.name;
        ++selected;
    }
    EXPECT_GE(selected, 10u);
}

TEST_P(RoundTrip, EachOfferedMediaTypeSelectsItsOwnAndComesBack) {
    const Subject subject(GetParam());
    std::map<std::string, DWORD> numbers;  // by display name
    const CXString& name = subject.printer.GetName();
    const int count = DeviceCapabilitiesW(name, nullptr, DC_MEDIATYPES, nullptr, nullptr);
    ASSERT_GT(count, 0);
    std::vector<DWORD> types(static_cast<std::size_t>(count));
    std::vector<WCHAR> names(types.size() * 64);
    ASSERT_EQ(DeviceCapabilitiesW(name, nullptr, DC_MEDIATYPES, reinterpret_cast<LPWSTR>(types.data()), nullptr),
              count);
    ASSERT_EQ(DeviceCapabilitiesW(name, nullptr, DC_MEDIATYPENAMES, names.data(), nullptr), count);
    for (std::size_t index = 0; index < types.size(); ++index) {
        const WideString text(names.data() + index * 64);
        // The media cache gives these three their numbers in the public list.
        const DWORD known[] = {types[index], 6800, 6801, 6820};
        numbers[ToUtf8(text)] = types[index] >= 1 && types[index] <= 3 ? known[types[index]] : types[index];
    }

    const std::vector<Offer> offers = GetOffers(subject, "PageMediaType");
    EXPECT_EQ(offers.size(), types.size());
    for (const Offer& offer : offers) {
        DevmodeBuffer devmode = subject.Apply(offer.ticket.Get());
        const MediaType media = ReadMediaType(devmode);
        const DWORD number = numbers[offer.displayName];
        if (number >= 9636) {
            EXPECT_EQ(media.text.ToUtf8(), offer.displayName);
        } else {
            EXPECT_EQ(media.value, number) << offer.name;
        }
        const PrintSession::Document ticket = subject.MakeBareTicket(devmode);
        EXPECT_NE(ExpectSound(ticket.Get()).find("<psf:Option name=\"" + offer.name + "\""), std::string::npos);
        DevmodeBuffer back = subject.Apply(ticket.Get());
        EXPECT_TRUE(ReadMediaType(back) == media) << offer.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Products, RoundTrip, testing::Values(kPress, kOffice, kScript));

}  // namespace
