// A stand-in for a document whose n-th DOM call fails: what a conversion makes of a DOM that gives up half-way.
#pragma once

#include <comptr.h>
#include <msxml2.h>
#include <mvutil/cxstring.h>

#include <stdexcept>

// Counts the calls on a document and on everything that it hands out.
struct DomCallPlan {
    long calls = 0;
    long searches = 0;         // queries among them: each walks through the document
    long failAt = 0;           // 1 for the first call; 0: none fails
    HRESULT failure = E_FAIL;  // what the failing call returns; its out arguments are left alone

    WideString texts;  // all that was put into the document

    bool throws = false;  // and returns nothing

    HRESULT Fail() const {
        if (throws) throw std::runtime_error("the DOM fails");
        return failure;
    }
    bool Fails() { return ++calls == failAt; }
};

// The document, seen through the plan; the plan must outlive every object that it hands out.
ComPtr<IXMLDOMDocument2> MakeFailingDocument(IXMLDOMDocument2* document, DomCallPlan* plan);
