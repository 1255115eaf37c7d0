// The published contract between the print subsystem and a PrintTicket provider plug-in, slot for slot.
// The mingw SDK has no header for it.
#pragma once

#pragma GCC system_header  // interfaces hold no destructor: it would take slots

#include <msxml2.h>
#include <oleauto.h>
#include <unknwn.h>
#include <windows.h>

inline constexpr IID IID_IPrintOemPrintTicketProvider = {
    0xBCF5E011, 0xF60A, 0x49FF, {0xAB, 0x2F, 0xE0, 0x6F, 0x4A, 0xBD, 0xF2, 0x81}};
inline constexpr IID IID_IPrintCoreHelper = {
    0xA89EC53E, 0x3905, 0x49C6, {0x9C, 0x1A, 0xC0, 0xA8, 0x81, 0x17, 0xFD, 0xB6}};

// The class of providers that a plug-in of the core driver hands out through DllGetClassObject.
inline constexpr CLSID CLSID_OEMPTPROVIDER = {
    0x91723892, 0x45D2, 0x48E2, {0x9E, 0xC9, 0x56, 0x23, 0x79, 0xDA, 0xF9, 0x92}};

enum OEMPTOPTS { OEMPT_DEFAULT = 0, OEMPT_NOSNAPSHOT = 1 };
using POEMPTOPTS = OEMPTOPTS*;

inline constexpr HRESULT S_NO_CONFLICT = 0x00040001;
inline constexpr HRESULT S_CONFLICT_RESOLVED = 0x00040002;
inline constexpr HRESULT E_PRINTTICKET_FORMAT = static_cast<HRESULT>(0x80040003u);
inline constexpr HRESULT E_VERSION_NOT_SUPPORTED = static_cast<HRESULT>(0x80040001u);

// Offered by the core driver; this project only asks for it and releases it.
struct IPrintCoreHelper : public IUnknown {};

struct IPrintOemPrintTicketProvider : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE printer, INT** versions, INT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                                  BSTR** namespaces) = 0;
    virtual HRESULT STDMETHODCALLTYPE PublishPrintTicketHelperInterface(IUnknown* helper) = 0;
    virtual HRESULT STDMETHODCALLTYPE QueryDeviceDefaultNamespace(BSTR* namespaceUri) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG devmodeBytes,
                                                                  PDEVMODEW devmode, ULONG privateBytes,
                                                                  PVOID privateDevmode) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG devmodeBytes, PDEVMODEW devmode,
                                                                  ULONG privateBytes, PVOID privateDevmode,
                                                                  IXMLDOMDocument2* ticket) = 0;
    virtual HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2* ticket,
                                                                IXMLDOMDocument2* capabilities) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* ticket) = 0;
    virtual HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) = 0;
};
