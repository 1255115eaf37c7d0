// The COM object that reports why a text was refused.
#include "domwrappers.h"

namespace dom {
namespace {

class ParseErrorObject final : public DomObject<IXMLDOMParseError, IID_IXMLDOMParseError> {
public:
    explicit ParseErrorObject(const ParseFailure& failure) : failure_(failure) {}

    HRESULT STDMETHODCALLTYPE get_errorCode(LONG* code) override {
        const bool isError = !failure_.reason.empty();
        const HRESULT result = Return(isError ? static_cast<LONG>(E_XML_NOTWF) : 0, code);
        return result == S_OK && !isError ? S_FALSE : result;
    }
    HRESULT STDMETHODCALLTYPE get_url(BSTR* url) override { return ReturnNothing(url); }
    HRESULT STDMETHODCALLTYPE get_reason(BSTR* reason) override {
        return Guarded(
            [&] { return failure_.reason.empty() ? ReturnNothing(reason) : ReturnText(failure_.reason, reason); });
    }
    HRESULT STDMETHODCALLTYPE get_srcText(BSTR* text) override { return ReturnNothing(text); }
    HRESULT STDMETHODCALLTYPE get_line(LONG* line) override { return Return(failure_.line, line); }
    HRESULT STDMETHODCALLTYPE get_linepos(LONG* column) override { return Return(failure_.column, column); }
    HRESULT STDMETHODCALLTYPE get_filepos(LONG*) override { return E_NOTIMPL; }

private:
    static HRESULT Return(LONG value, LONG* out) {
        if (!out) return E_INVALIDARG;
        *out = value;
        return S_OK;
    }

    const ParseFailure failure_;
};

}  // namespace

IXMLDOMParseError* NewParseError(const ParseFailure& failure) { return new ParseErrorObject(failure); }

}  // namespace dom
