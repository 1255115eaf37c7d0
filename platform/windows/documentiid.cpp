// The one identifier that mingw-w64's libraries lack.
#include <windows.h>

#include <msxml2.h>

extern "C" const IID IID_IXMLDOMDocument2 = {
    0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
