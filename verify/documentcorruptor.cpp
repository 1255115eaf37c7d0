// Damage to a document: the edits, and the odd values that stand in the place of good ones.
#include "documentcorruptor.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::size_t kMostRandomEdits = 6;
constexpr std::size_t kMostShown = 40;  // characters of a value in a report

// As they stand in XML text.
const std::string kOddTexts[] = {"",
                                 " ",
                                 "\n\t ",
                                 "0",
                                 "-1",
                                 "32768",
                                 "2147483648",
                                 "-2147483649",
                                 "4294967296",
                                 "99999999999999999999999999",
                                 "1e9",
                                 "0x7F",
                                 "+5",
                                 "NaN",
                                 "1 2",
                                 "psk:",
                                 ":",
                                 ":System",
                                 "psk:psk:System",
                                 "nobody:System",
                                 "System",
                                 "psk:\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xA8",
                                 "&#x10FFFF;",
                                 "&lt;&amp;&quot;&apos;",
                                 "%s%n%d",
                                 "QUJD=QUJD",
                                 "AAAA",
                                 "!AAA",
                                 "=",
                                 std::string(20000, 'A'),
                                 std::string(20001, '/')};
constexpr std::string_view kOddNames[] = {"psf:Feature",        "psf:Option",       "psf:Value",
                                          "psf:ScoredProperty", "psf:ParameterRef", "psf:ParameterInit",
                                          "psf:Property",       "psk:Feature",      "Feature"};

std::string Shorten(const std::string& text) {
    if (text.size() <= kMostShown) return "'" + text + "'";
    return "'" + text.substr(0, kMostShown) + "...' of " + std::to_string(text.size()) + " characters";
}

}  // namespace

std::string MakeDamaged(std::string_view document, const DocumentEdits& edits) {
    std::vector<DocumentSplice> splices;
    for (const DocumentEdit& edit : edits) splices.insert(splices.end(), edit.splices.begin(), edit.splices.end());
    std::stable_sort(splices.begin(), splices.end(), [](const auto& a, const auto& b) { return a.at < b.at; });
    std::string damaged;
    std::size_t done = 0;
    for (const DocumentSplice& splice : splices) {
        if (splice.at < done) continue;
        damaged.append(document.substr(done, splice.at - done)).append(splice.inserted);
        done = splice.at + splice.removed;
    }
    return damaged.append(document.substr(done));
}

DocumentCorruptor::DocumentCorruptor(std::string document, std::mt19937_64& random)
    : document_(std::move(document)), elements_(OutlineXml(document_)), random_(random) {}

std::string DocumentCorruptor::TextOf(const XmlElementPlace& element) const {
    return document_.substr(element.begin, element.end - element.begin);
}

std::string DocumentCorruptor::Describe(const XmlElementPlace& element) const {
    std::string text = document_.substr(element.begin + 1, element.nameEnd - element.begin - 1);
    for (const XmlAttributePlace& attribute : element.attributes) {
        if (document_.compare(attribute.begin, 5, "name=") != 0) continue;
        text += " " + document_.substr(attribute.valueBegin, attribute.valueEnd - attribute.valueBegin);
    }
    return text + " at byte " + std::to_string(element.begin);
}

std::vector<DocumentEdits> DocumentCorruptor::ListEditsOf(std::size_t number) const {
    const XmlElementPlace& element = elements_.at(number);
    std::vector<DocumentEdits> list = {{MakeDoubled(element)},
                                       {MakeDropped(element)},
                                       {MakeMoved(element, elements_[0])},
                                       {MakeMoved(element, elements_[Choose(elements_.size())])},
                                       {MakeHollow(element)},
                                       {MakeRenamed(element, kOddNames[Choose(std::size(kOddNames))])}};
    for (const XmlAttributePlace& attribute : element.attributes) {
        list.push_back({MakeWithout(element, attribute)});
        list.push_back({MakeValue(element, attribute, kOddTexts[Choose(std::size(kOddTexts))])});
    }
    if (document_.compare(element.begin, element.nameEnd - element.begin, "<psf:Value") == 0)
        for (const std::string& text : kOddTexts) list.push_back({MakeText(element, text)});
    return list;
}

DocumentEdits DocumentCorruptor::MakeRandom() const {
    DocumentEdits edits;
    if (elements_.size() < 2) return edits;
    for (std::size_t left = 1 + Choose(kMostRandomEdits); left > 0; --left) edits.push_back(MakeRandomEdit());
    return edits;
}

DocumentEdit DocumentCorruptor::MakeRandomEdit() const {
    const XmlElementPlace& element = elements_[1 + Choose(elements_.size() - 1)];
    const XmlElementPlace& other = elements_[Choose(elements_.size())];
    const std::string& text = kOddTexts[Choose(std::size(kOddTexts))];
    const std::size_t attributes = element.attributes.size();
    switch (Choose(8)) {
        case 0:
            return MakeDoubled(element);
        case 1:
            return MakeDropped(element);
        case 2:
            return MakeMoved(element, other);
        case 3:
            return MakeHollow(element);
        case 4:
            return MakeRenamed(element, kOddNames[Choose(std::size(kOddNames))]);
        case 5:
            if (attributes) return MakeWithout(element, element.attributes[Choose(attributes)]);
            break;
        case 6:
            if (attributes) return MakeValue(element, element.attributes[Choose(attributes)], text);
            break;
        default:
            break;
    }
    return MakeText(element, text);
}

std::vector<const XmlElementPlace*> DocumentCorruptor::ListOfKind(std::string_view kind, std::size_t most) const {
    std::vector<const XmlElementPlace*> list;
    for (const XmlElementPlace& element : elements_) {
        const std::string_view name =
            std::string_view(document_).substr(element.begin + 1, element.nameEnd - element.begin - 1);
        if (name == kind && element.contentEnd > element.tagEnd && list.size() < most) list.push_back(&element);
    }
    return list;
}

DocumentEdit DocumentCorruptor::MakeInsertion(std::string_view kind, std::size_t mostPlaces, const std::string& text,
                                              const std::string& what) const {
    DocumentEdit edit{what, {}};
    for (const XmlElementPlace* element : ListOfKind(kind, mostPlaces))
        edit.splices.push_back({element->tagEnd, 0, text});
    return edit;
}

DocumentEdit DocumentCorruptor::MakeContent(std::string_view kind, std::size_t mostPlaces, const std::string& text,
                                            const std::string& what) const {
    DocumentEdit edit{what, {}};
    for (const XmlElementPlace* element : ListOfKind(kind, mostPlaces))
        edit.splices.push_back({element->tagEnd, element->contentEnd - element->tagEnd, text});
    return edit;
}

DocumentEdit DocumentCorruptor::MakeCut(std::size_t place) const {
    return {"is cut at byte " + std::to_string(place), {{0, document_.size(), CloseXml(document_, place)}}};
}

DocumentEdit DocumentCorruptor::MakeDoubled(const XmlElementPlace& element) const {
    return {Describe(element) + " is doubled", {{element.end, 0, TextOf(element)}}};
}

DocumentEdit DocumentCorruptor::MakeDropped(const XmlElementPlace& element) const {
    return {Describe(element) + " is dropped", {{element.begin, element.end - element.begin, ""}}};
}

DocumentEdit DocumentCorruptor::MakeMoved(const XmlElementPlace& element, const XmlElementPlace& into) const {
    // Into itself it cannot, and an element of one tag has no inside.
    const bool isInside = into.tagEnd > element.begin && into.begin < element.end;
    if (isInside || into.contentEnd == into.end) return MakeDoubled(element);
    return {Describe(element) + " is moved into " + Describe(into),
            {{element.begin, element.end - element.begin, ""}, {into.tagEnd, 0, TextOf(element)}}};
}

DocumentEdit DocumentCorruptor::MakeHollow(const XmlElementPlace& element) const {
    return {Describe(element) + " loses all that it holds",
            {{element.tagEnd, element.contentEnd - element.tagEnd, ""}}};
}

DocumentEdit DocumentCorruptor::MakeRenamed(const XmlElementPlace& element, std::string_view name) const {
    const std::size_t length = element.nameEnd - element.begin - 1;
    DocumentEdit edit{Describe(element) + " becomes a " + std::string(name),
                      {{element.begin + 1, length, std::string(name)}}};
    if (element.contentEnd != element.end) edit.splices.push_back({element.contentEnd + 2, length, std::string(name)});
    return edit;
}

DocumentEdit DocumentCorruptor::MakeWithout(const XmlElementPlace& element, const XmlAttributePlace& attribute) const {
    return {Describe(element) + " loses " + Shorten(document_.substr(attribute.begin, attribute.end - attribute.begin)),
            {{attribute.begin, attribute.end - attribute.begin, ""}}};
}

DocumentEdit DocumentCorruptor::MakeValue(const XmlElementPlace& element, const XmlAttributePlace& attribute,
                                          const std::string& value) const {
    return {"the value " + Shorten(document_.substr(attribute.valueBegin, attribute.valueEnd - attribute.valueBegin)) +
                " of " + Describe(element) + " becomes " + Shorten(value),
            {{attribute.valueBegin, attribute.valueEnd - attribute.valueBegin, value}}};
}

DocumentEdit DocumentCorruptor::MakeText(const XmlElementPlace& element, const std::string& text) const {
    DocumentEdit edit{"what " + Describe(element) + " holds becomes " + Shorten(text), {}};
    if (element.contentEnd != element.end)
        edit.splices.push_back({element.tagEnd, element.contentEnd - element.tagEnd, text});
    return edit;
}
