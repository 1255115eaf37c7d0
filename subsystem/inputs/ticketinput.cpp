// PrintTickets as support engineers get them.
#include "ticketinput.h"

#include <subsystem/documentkind.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/xmlfile.h>

#include "inputform.h"
#include "xpspackage.h"

ComPtr<IXMLDOMDocument2> ReadTicketBytes(std::string_view bytes, const std::string& name) {
    const InputKind kind = RecogniseInput(bytes);
    ComPtr<IXMLDOMDocument2> document;
    if (kind.form == InputForm::Package) {
        const PackagePart part = ReadTicketOfPackage(bytes, name);
        document = ReadDocumentBytes(part.bytes, name + ":" + part.name);
    } else if (kind.form == InputForm::Xml) {
        document = ReadDocumentBytes(bytes, name);
    } else {
        throw InputError("'" + name + "' is " + kind.description +
                         "; a PrintTicket is wanted here, alone or inside an XPS file");
    }
    RequireRoot(document.Get(), kTicketRoot, name);
    return document;
}

ComPtr<IXMLDOMDocument2> ReadTicketInput(const std::filesystem::path& file) {
    return ReadTicketBytes(ReadWholeFile(file), NameInput(file));
}
