// The same document as different programs write it: prefixes, order, white space, comments, encoding. It means the
// same.
#include <textcodec.h>

#include <algorithm>
#include <functional>
#include <regex>

#include <verify/check.h>
#include <verify/documentset.h>
#include <verify/meaning.h>
#include <verify/xmloutline.h>

namespace {

std::string ReplaceAll(std::string text, const std::string& part, const std::string& by) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size()))
        text.replace(at, part.size(), by);
    return text;
}

// Of elements, attributes and names in attributes and values alike.
std::string RenamePrefixes(std::string text) {
    for (const auto& [prefix, other] : {std::pair{"psf", "a"}, {"psk", "key.words"}, {"xsi", "x-i"}, {"xsd", "_d"}}) {
        text = ReplaceAll(text, std::string("xmlns:") + prefix + "=", std::string("xmlns:") + other + "=");
        text = ReplaceAll(text, std::string(prefix) + ":", std::string(other) + ":");
    }
    return text;
}

// Between all elements, but for what is within a Value.
std::string AddBetweenElements(const std::string& text, const std::string& what) {
    return std::regex_replace(text, std::regex("><(?!/[^>:]*:?Value)"), ">" + what + "<");
}

std::string WrapValues(const std::string& text) {
    return std::regex_replace(text, std::regex("(<psf:Value[^>/]*>)([^<&]+)(</psf:Value>)"), "$1<![CDATA[$2]]>$3");
}

std::string ReverseRoot(const std::string& text) {
    const std::vector<XmlElementPlace> elements = OutlineXml(text);
    std::vector<std::string> children;
    std::size_t end = elements.front().tagEnd;
    for (const XmlElementPlace& element : elements) {
        if (element.begin < end) continue;
        children.push_back(text.substr(element.begin, element.end - element.begin));
        end = element.end;
    }
    std::string reversed = text.substr(0, elements.front().tagEnd);
    for (auto child = children.rbegin(); child != children.rend(); ++child) reversed += *child;
    return reversed + text.substr(elements.front().contentEnd);
}

// A tag's first two attributes change their places.
std::string SwapAttributes(const std::string& text) {
    return std::regex_replace(text, std::regex("(<[^<>? ]+)( [^ =<>]+=\"[^\"]*\")( [^ =<>]+=\"[^\"]*\")"), "$1$3$2");
}

std::string EncodeAsUtf16(const std::string& text) {
    std::string bytes = "\xFF\xFE";
    for (const WCHAR unit :
         WideFromUtf8(ReplaceAll(text, "encoding=\"UTF-8\"", "encoding=\"UTF-16\""), BadText::Refuse)) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

struct Dress {
    const char* name;
    std::function<std::string(const std::string&)> put;
};

std::vector<Dress> ListDresses() {
    return {
        {"other prefixes", RenamePrefixes},
        {"indentation", [](const std::string& text) { return AddBetweenElements(text, "\n\t "); }},
        {"comments", [](const std::string& text) { return AddBetweenElements(text, "<!-- by hand: psk:A4 -->"); }},
        {"processing instructions", [](const std::string& text) { return AddBetweenElements(text, "<?note x?>"); }},
        {"CDATA", WrapValues},
        {"its parts in reverse order", ReverseRoot},
        {"attributes in another order", SwapAttributes},
        {"declarations that nobody uses",
         [](const std::string& text) {
             return ReplaceAll(text, " version=\"1\"", " xmlns:p1=\"urn:one\" xmlns:p2=\"urn:two\" version=\"1\"");
         }},
        {"single quotes",
         [](const std::string& text) { return std::regex_replace(text, std::regex("=\"([^\"']*)\""), "='$1'"); }},
        {"UTF-16", EncodeAsUtf16},
        {"all at once", [](const std::string& text) {
             return EncodeAsUtf16(RenamePrefixes(AddBetweenElements(WrapValues(ReverseRoot(text)), "<!-- x -->\n ")));
         }}};
}

void ReadsEveryDress(TestBench& bench) {
    DocumentSet documents(bench);
    const std::string ticket = documents.MakeTicket(documents.GetCoreTicket());
    const DevmodeSettings& settings = documents.GetSettings()[1];
    const std::string other = documents.MakeTicket(documents.WriteCoreTicket(settings), settings);
    const std::string devmode = documents.ApplyTicket(other);
    for (const Dress& dress : ListDresses()) {
        const std::string in = std::string(" in ") + dress.name;
        bench.Require(documents.ApplyTicket(dress.put(other)) == devmode,
                      "a ticket" + in + " is applied to another DEVMODE than as it was");
        const auto require = [&](const std::string& what, const std::string& plain, const std::string& dressed) {
            const std::string expected = DescribeMeaning(plain), got = DescribeMeaning(dressed);
            bench.Require(expected == got,
                          what + in + " comes to mean another thing: " + FindDifference(expected, got));
        };
        require("a core driver's ticket", ticket, documents.MakeTicket(dress.put(documents.GetCoreTicket())));
        require("a core driver's capabilities", documents.MakeCapabilities(documents.GetCoreCapabilities()),
                documents.MakeCapabilities(dress.put(documents.GetCoreCapabilities())));
        require("what is completed for a ticket", documents.MakeCapabilities(documents.GetCoreCapabilities(), other),
                documents.MakeCapabilities(documents.GetCoreCapabilities(), dress.put(other)));
        require("a validated ticket", documents.Validate(other), documents.Validate(dress.put(other)));
    }
}

const CheckRegistration dresses(
    {CheckGroup::Documents, "dress",
     "documents with other prefixes, order, white space, comments, quotes, CDATA and encoding "
     "mean the same",
     ReadsEveryDress});

}  // namespace
