// Where the elements of a document lie: no parser, it knows just enough of well-formed text to find its tags.
#include "xmloutline.h"

#include <algorithm>

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kNowhere = std::string_view::npos;

// What is no element: the end of the comment, section or instruction that begins there, or kNowhere for a tag.
std::size_t FindEndOfOther(std::string_view text, std::size_t at) {
    const std::string_view rest = text.substr(at);
    for (const auto& [begin, end] :
         {std::pair<std::string_view, std::string_view>{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}) {
        if (!rest.starts_with(begin)) continue;
        const std::size_t found = rest.find(end, begin.size());
        return found == kNowhere ? text.size() : at + found + end.size();
    }
    return kNowhere;
}

// Reads the attributes of the tag that begins there, and its end; a tag that is not whole has no end.
XmlElementPlace ReadTag(std::string_view text, std::size_t begin) {
    XmlElementPlace element{
        begin, std::min(text.find_first_of(" \t\r\n/>", begin), text.size()), kNowhere, kNowhere, kNowhere, {}};
    for (std::size_t at = element.nameEnd;;) {
        at = text.find_first_not_of(kBlanks, at);
        if (at == kNowhere) return element;
        if (text[at] == '>' || text[at] == '/') {
            const std::size_t end = text.find('>', at);
            if (end == kNowhere) return element;
            element.tagEnd = end + 1;
            if (text[at] == '/') element.contentEnd = element.end = element.tagEnd;
            return element;
        }
        const std::size_t open = text.find_first_of("\"'", at);
        if (open == kNowhere) return element;
        const std::size_t close = text.find(text[open], open + 1);
        element.attributes.push_back(
            {at, open + 1, std::min(close, text.size()), std::min(close, text.size() - 1) + 1});
        if (close == kNowhere) return element;
        at = close + 1;
    }
}

struct Reading {
    std::vector<XmlElementPlace> elements;
    std::vector<std::size_t> open;  // of them
    std::size_t rest = kNowhere;    // where the markup begins that is not whole
    XmlElementPlace broken = {};    // the tag that begins there, where it is one
};

Reading ReadMarkup(std::string_view text) {
    Reading reading;
    for (std::size_t at = text.find('<'); at != kNowhere; at = text.find('<', at)) {
        if (const std::size_t end = FindEndOfOther(text, at); end != kNowhere) {
            if (end == text.size()) reading.rest = at;
            at = end;
        } else if (text.substr(at).starts_with("</")) {
            const std::size_t tagEnd = text.find('>', at);
            if (tagEnd == kNowhere || reading.open.empty()) {
                reading.rest = at;
                return reading;
            }
            XmlElementPlace& element = reading.elements[reading.open.back()];
            element.contentEnd = at;
            element.end = at = tagEnd + 1;
            reading.open.pop_back();
        } else {
            XmlElementPlace element = ReadTag(text, at);
            if (element.tagEnd == kNowhere) {
                reading.rest = at;
                reading.broken = std::move(element);
                return reading;
            }
            at = element.tagEnd;
            if (element.end == kNowhere) reading.open.push_back(reading.elements.size());
            reading.elements.push_back(std::move(element));
        }
    }
    return reading;
}

}  // namespace

std::vector<XmlElementPlace> OutlineXml(std::string_view text) { return ReadMarkup(text).elements; }

std::string CloseXml(std::string_view text, std::size_t place) {
    const std::string_view cut = text.substr(0, place);
    const Reading reading = ReadMarkup(cut);
    std::string closed(cut.substr(0, reading.rest));
    if (!reading.broken.attributes.empty()) {
        const XmlAttributePlace& last = reading.broken.attributes.back();
        if (last.valueEnd == cut.size()) closed = std::string(cut) + cut[last.valueBegin - 1] + "/>";
    }
    for (auto open = reading.open.rbegin(); open != reading.open.rend(); ++open) {
        const XmlElementPlace& element = reading.elements[*open];
        closed += "</" + std::string(cut.substr(element.begin + 1, element.nameEnd - element.begin - 1)) + ">";
    }
    return closed;
}
