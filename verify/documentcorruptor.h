// DocumentCorruptor: damage to a document as lists of small edits, of which a failing one can be made shorter.
#pragma once

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "xmloutline.h"

// Text in the place of text, by places of the undamaged document.
struct DocumentSplice {
    std::size_t at;
    std::size_t removed;
    std::string inserted;
};

struct DocumentEdit {
    std::string what;  // "psf:Feature psk:PageColorManagement is dropped"
    std::vector<DocumentSplice> splices;
};
using DocumentEdits = std::vector<DocumentEdit>;

// Of splices that overlap the first ones count.
std::string MakeDamaged(std::string_view document, const DocumentEdits& edits);

// The text is of a well-formed document. What comes out of an edit need not be one.
class DocumentCorruptor {
public:
    DocumentCorruptor(std::string document, std::mt19937_64& random);

    std::size_t CountElements() const noexcept { return elements_.size(); }

    // One edit each of the element, whose number is above 0: the root stays.
    std::vector<DocumentEdits> ListEditsOf(std::size_t element) const;
    // A handful of edits of any kind.
    DocumentEdits MakeRandom() const;

    // A text within the first elements of the kind ("psf:Value"): before all else that they hold.
    DocumentEdit MakeInsertion(std::string_view kind, std::size_t mostPlaces, const std::string& text,
                               const std::string& what) const;
    // All that the first elements of the kind hold becomes the text.
    DocumentEdit MakeContent(std::string_view kind, std::size_t mostPlaces, const std::string& text,
                             const std::string& what) const;
    // The document up to the place, with what is open closed.
    DocumentEdit MakeCut(std::size_t place) const;

private:
    std::size_t Choose(std::size_t count) const { return count ? static_cast<std::size_t>(random_() % count) : 0; }
    std::string Describe(const XmlElementPlace& element) const;
    std::string TextOf(const XmlElementPlace& element) const;
    std::vector<const XmlElementPlace*> ListOfKind(std::string_view kind, std::size_t most) const;
    DocumentEdit MakeDoubled(const XmlElementPlace& element) const;
    DocumentEdit MakeDropped(const XmlElementPlace& element) const;
    DocumentEdit MakeMoved(const XmlElementPlace& element, const XmlElementPlace& into) const;
    DocumentEdit MakeHollow(const XmlElementPlace& element) const;
    DocumentEdit MakeRenamed(const XmlElementPlace& element, std::string_view name) const;
    DocumentEdit MakeWithout(const XmlElementPlace& element, const XmlAttributePlace& attribute) const;
    DocumentEdit MakeValue(const XmlElementPlace& element, const XmlAttributePlace& attribute,
                           const std::string& value) const;
    DocumentEdit MakeText(const XmlElementPlace& element, const std::string& text) const;
    DocumentEdit MakeRandomEdit() const;

    std::string document_;
    std::vector<XmlElementPlace> elements_;
    std::mt19937_64& random_;
};
