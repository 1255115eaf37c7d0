// Queries: what they select and what they refuse.
#include "domtest.h"

namespace {

constexpr const char* kTicket =
    "<f:T xmlns:f='urn:f' xmlns:k='urn:k'>"
    "<f:Feature name='k:A'><f:Option name='k:X'><f:Value>1</f:Value></f:Option></f:Feature>"
    "<f:Feature name='k:B'><f:Feature name='k:C'><f:Option/></f:Feature></f:Feature>"
    "<f:Scored name='k:A'/><plain name='k:P'/>"
    "</f:T>";

// The "name" attributes of the nodes found, or their names, each followed by a blank.
std::string Found(IXMLDOMNode* from, std::string_view query) {
    ComPtr<IXMLDOMNodeList> list;
    if (const HRESULT result = from->selectNodes(B(query).Get(), list.Put()); FAILED(result)) return "failure";
    std::string found;
    LONG length = 0;
    EXPECT_EQ(list->get_length(&length), S_OK);
    for (const LONG index : {LONG{-1}, length}) EXPECT_EQ(list->get_item(index, Node().Put()), S_FALSE);
    Node next;
    list->nextNode(next.Put());
    for (LONG i = 0; i < length; ++i) {
        Node node;
        EXPECT_EQ(list->get_item(i, node.Put()), S_OK);
        EXPECT_EQ(node.Get(), next.Get()) << "nextNode goes on behind get_item's";
        EXPECT_EQ(list->nextNode(next.Put()), i + 1 < length ? S_OK : S_FALSE);
        const Node name = Select(node.Get(), "@name");
        found += (name ? Value(name.Get()) : Name(node.Get())) + ' ';
    }
    return found;
}

TEST(Selection, FindsInDocumentOrder) {
    struct Row {
        const char* from;  // a query from the document
        const char* query;
        const char* found;
    };
    const Row rows[] = {
        {"/", "//g:Feature", "k:A k:B k:C "},
        {"/", "//g:Feature[@name = \"k:C\"]", "k:C "},
        {"/", "//*[@name]", "k:A k:X k:B k:C k:A k:P "},
        {"/", "//Feature", ""},
        {"/", "//g:Scored | //g:Feature[@name = \"k:A\"]/g:Option", "k:X k:A "},
        {"/", "//g:Option|/g:T/*[@name='k:A'] | //g:Feature//g:Feature", "k:A k:X k:C f:Option k:A "},
        {"/", "//g:T//*[@name]//*[@name]", "k:X k:C "},
        {"//g:Feature[2]", "g:Feature | //g:Scored", "k:C k:A "},
        {"//g:Feature[2]", "./g:Feature[@name = \"k:C\"]", "k:C "},
        {"//g:Feature[2]", ".//g:Option", "f:Option "},
        {"//g:Feature[1]", "//g:Scored", "k:A "},
        {"/", "//g:Feature[@name]//g:Option[@name = 'k:X']", "k:X "},
        {"/", "//g:Feature[@name = '//g:T[1]' or 1]", "k:A k:B k:C "},
        {"/", "//g:Feature[@name][1]", "k:A k:C "},  // the first one of each parent
        {"//g:Option/g:Value", "ancestor::*", "f:T k:A k:X "},
        {"/", "//g:Feature[contains(@name, ':C') and not(g:Value)]", "k:C "},
    };
    const Document document = Load(kTicket);
    EXPECT_EQ(SetProperty(document, "SelectionLanguage", "XPath"), S_OK);
    EXPECT_EQ(SetProperty(document, "SelectionNamespaces", "xmlns:g='urn:f' xmlns:h=\"urn:k\""), S_OK);
    for (const Row& row : rows) {
        EXPECT_EQ(Found(Select(document.Get(), row.from).Get(), row.query), row.found)
            << row.from << " and then " << row.query;
    }
}

TEST(Selection, RefusesWhatIsNoQuery) {
    const Document document = Load(kTicket);
    EXPECT_EQ(SetProperty(document, "SelectionNamespaces", "xmlns:f='urn:f'"), S_OK);
    for (const char* const query : {"//nothing/k:T", "//f:T[@k:x]", "1 + 1", "'text'", "//f:T[unknown()]",
                                    "//nothing[f:x()]", "//f:T[@name = \"x]", "/*/namespace::*", "/f:T/"})
        EXPECT_EQ(Found(document.Get(), query), "failure") << query;
    EXPECT_EQ(document->selectSingleNode(B("//f:T[@name = 'k:Q' or 'a:b']").Get(), Node().Put()), S_OK)
        << "what looks like a prefix inside quotes is none";
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(document->selectNodes(B("").Get(), list.Put()), E_INVALIDARG);
}

TEST(Selection, PropertiesAreReadAsDeclarations) {
    const Document document = Load(kTicket);
    for (const char* const text :
         {"xmlns:f='urn:f'", "xmlns:f=\"urn:f\"\n xmlns:g='urn:g'", " xmlns:f='urn:f' xmlns='x' "}) {
        EXPECT_EQ(SetProperty(document, "SelectionNamespaces", text), S_OK) << text;
        EXPECT_EQ(Found(document.Get(), "/f:T"), "f:T ") << text;
    }
    for (const char* const text : {"f='urn:f'", "xmlns:f=urn:f", "xmlns:f=''", "xmlns:f='a'/><x ",
                                   "xmlns:f='a'>b</x><!--", "xmlns:f='a' xmlns:f='b'"}) {
        EXPECT_EQ(SetProperty(document, "SelectionNamespaces", "xmlns:f='urn:f'"), S_OK);
        EXPECT_EQ(SetProperty(document, "SelectionNamespaces", text), E_FAIL) << text;
        EXPECT_EQ(Found(document.Get(), "/f:T"), "failure") << "a refused text leaves no prefix bound";
    }
    EXPECT_EQ(document->setProperty(B("SelectionNamespaces").Get(), Variant(LONG{1}).Get()), E_FAIL);
    EXPECT_EQ(SetProperty(document, "SelectionLanguage", "XSLPattern"), E_FAIL);
    EXPECT_EQ(SetProperty(document, "NoSuchProperty", "x"), E_FAIL);
}

}  // namespace
