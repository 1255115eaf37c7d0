// What a PrintTicket's wrapper reads and sweeps.
#include <ptpcprovider/printticketxmldocument.h>

#include <support/documents.h>

namespace {

TEST(PrintTicketDocument, ReadsTheChosenOption) {
    const std::pair<const char*, const char*> cases[] = {
        {"<psf:Feature name='psk:F'><psf:Option name='psk:O'/></psf:Feature>", "S_OK psk: O"},
        {"<psf:Feature name='psk:F'><psf:Option name='mk:O:P'/></psf:Feature>", "S_OK mk: O:P"},
        {"<psf:Feature name='psk:F'><psf:Option name='psk:A'/><psf:Option name='psk:B'/></psf:Feature>", "S_OK psk: A"},
        {"<psf:Feature name='psk:F'><psf:Option><psf:ScoredProperty><psf:Value>psk:T</psf:Value>"
         "</psf:ScoredProperty></psf:Option></psf:Feature>",
         "S_OK psk: T"},
        {"<psf:Feature name='psk:F'><psf:ScoredProperty name='psk:OptionName'><psf:Value>psk:N</psf:Value>"
         "</psf:ScoredProperty><psf:Option name='psk:O'/></psf:Feature>",
         "S_OK psk: N"},
        {"<psf:Feature name='psk:F'><psf:Option name='O'/></psf:Feature>", "throws E_FAIL  "},
        {"<psf:Feature name='psk:F'/>", "0x80070490  "},
    };
    for (const auto& [xml, expected] : cases) {
        const auto dom = LoadUsual("PrintTicket", xml);
        for (const auto& dress : {dom, LoadIndented(dom)}) {
            PrintTicketXmlDocument ticket(dress.Get());
            Bstr name, prefix;
            const std::string outcome = Outcome([&] { return ticket.GetFeatureOption(W("F"), &name, &prefix); });
            EXPECT_EQ(outcome + " " + Utf8(prefix) + " " + Utf8(name), expected) << xml;
        }
    }
}

TEST(PrintTicketDocument, ReadsScoredProperties) {
    const std::pair<std::string, const char*> cases[] = {
        {"<psf:Value>215900</psf:Value>", "S_OK 215900"},
        {"<psf:Value> +7 mm</psf:Value>", "S_OK 7"},
        {"<psf:Value>wide</psf:Value>", "S_OK 0"},
        {"<psf:Value/>", "S_OK 0"},
        {"<psf:Value>99999999999999999999999</psf:Value>", "S_OK 2147483647"},
        {"<psf:ParameterRef name='psk:P'/>", "S_OK 9"},
        {"<psf:ParameterRef name='psk:p'/>", "0x80070490 77"},
        {"", "0x80070490 77"},
    };
    for (const auto& [content, expected] : cases) {
        const auto dom = LoadUsual("PrintTicket",
                                   "<psf:Feature name='psk:F'><psf:Option><psf:ScoredProperty name='psk:S'>" + content +
                                       "</psf:ScoredProperty></psf:Option></psf:Feature>"
                                       "<psf:ParameterInit name='psk:P'><psf:Value>9</psf:Value></psf:ParameterInit>");
        PrintTicketXmlDocument ticket(dom.Get());
        LONG value = 77;
        const std::string outcome = Outcome([&] { return ticket.GetScoredPropertyValue(W("F"), W("S"), &value); });
        EXPECT_EQ(outcome + " " + std::to_string(value), expected) << content;
    }
}

TEST(PrintTicketDocument, SweepsParametersThatNoReferenceNames) {
    const auto feature = [](const std::string& name, const std::string& parameter) {
        return "<psf:Feature name=\"psk:" + name + "\"><psf:Option><psf:ScoredProperty name=\"psk:S\">" +
               "<psf:ParameterRef name=\"psk:" + parameter + "\"/></psf:ScoredProperty></psf:Option></psf:Feature>";
    };
    const std::string p = "<psf:ParameterInit name=\"psk:P\"/>", q = "<psf:ParameterInit name=\"psk:Q\"/>";
    const std::string lower = "<psf:ParameterInit name=\"psk:q\"/>", unnamed = "<psf:ParameterInit/>";
    const struct {
        const char* what;
        std::string before, after;
    } cases[] = {
        {"the only reference goes", feature("F", "P") + feature("G", "Q") + p + q, feature("G", "Q") + q},
        {"another feature refers to it", feature("F", "P") + feature("G", "P") + p, feature("G", "P") + p},
        {"unrelated ones go, another case is another name, an unnamed one stays",
         feature("F", "P") + feature("G", "Q") + unnamed + lower + q, feature("G", "Q") + unnamed + q},
        {"no reference left", feature("F", "P") + p + q + unnamed, ""},
        {"every duplicate, nested ones too",
         feature("F", "P") + p + feature("F", "Q") + q + "<psf:Feature>" + feature("F", "P") + "</psf:Feature>",
         "<psf:Feature/>"},
        {"feature absent", feature("G", "Q") + p + q, feature("G", "Q") + p + q},
    };
    for (const auto& test : cases) {
        const auto dom = LoadUsual("PrintTicket", test.before);
        PrintTicketXmlDocument ticket(dom.Get());
        EXPECT_EQ(ticket.DeleteFeatureAndOrphanParameterInitsIfExists(W("psk:"), W("F")), S_FALSE) << test.what;
        EXPECT_EQ(ContentOf(dom), test.after) << test.what;
    }
}

}  // namespace
