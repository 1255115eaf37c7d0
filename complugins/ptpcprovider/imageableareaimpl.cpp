// Imageable size and area: what part of the page that a ticket selects the printer can print on.
#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <mscacheddevicecapabilities.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/margintable.h>
#include <ptpcprovider/paperlengths.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>

namespace {

constexpr const WCHAR* kImageableSize = W("PageImageableSize");

struct PageTurn {
    bool isLandscape = false;
    bool isReverse = false;
};

PageTurn ReadPageTurn(const PrintTicketXmlDocument& ticket) {
    Bstr option, prefix;
    if (!ticket.HasDocument() || ticket.GetFeatureOption(W("PageOrientation"), &option, &prefix) != S_OK) return {};
    const WideStringView name = option.View();
    return {name == W("Landscape") || name == W("ReverseLandscape"),
            name == W("ReverseLandscape") || name == W("ReversePortrait")};
}

// All in micrometres.
struct ImageableArea {
    LONG sizeWidth, sizeHeight;
    LONG originWidth, originHeight;
    LONG extentWidth, extentHeight;
};

ImageableArea MakeArea(LONG width, LONG height, const PageMargins& margins, PageTurn turn) {
    const auto [left, top, right, bottom] = margins;
    const LONG across = ClampToLong(LONGLONG{width} - left - right);
    const LONG along = ClampToLong(LONGLONG{height} - top - bottom);
    if (turn.isLandscape)
        return {height, width, turn.isReverse ? top : bottom, turn.isReverse ? right : left, along, across};
    return {width, height, turn.isReverse ? right : left, turn.isReverse ? bottom : top, across, along};
}

}  // namespace

HRESULT MorvanePtProvider::ReplacePageImageableSizeAndAreaProperties(PrintCapabilitiesXmlDocument& capabilities,
                                                                     PrintTicketXmlDocument& ticket,
                                                                     MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&] {
        if (!HasPrivateNamespace()) return S_OK;
        capabilities.DeletePropertyNodesIfExist(capabilities.GetKeywordsPrefix().Get(), kImageableSize);
        _tag_FormsInfoRec paper = {};
        GetPrintTicketPaperSize(ticket, deviceCapabilities, &paper);
        const LONG width = MicrometresOfTenths(paper.width), height = MicrometresOfTenths(paper.length);
        const PageMargins margins = GetPageMargins(GetProductData(), printerHandle_, paper.msPaperId, width, height);
        const ImageableArea area = MakeArea(width, height, margins, ReadPageTurn(ticket));

        ComPtr<IXMLDOMElement> sizeProperty, areaProperty;
        capabilities.CreateProperty(NamespaceKind::Keywords, kImageableSize, sizeProperty.Put());
        capabilities.AppendChildIntegerProperty(sizeProperty.Get(), W("ImageableSizeWidth"), area.sizeWidth);
        capabilities.AppendChildIntegerProperty(sizeProperty.Get(), W("ImageableSizeHeight"), area.sizeHeight);
        capabilities.CreateProperty(NamespaceKind::Keywords, W("ImageableArea"), areaProperty.Put());
        capabilities.AppendChildIntegerProperty(areaProperty.Get(), W("OriginWidth"), area.originWidth);
        capabilities.AppendChildIntegerProperty(areaProperty.Get(), W("OriginHeight"), area.originHeight);
        capabilities.AppendChildIntegerProperty(areaProperty.Get(), W("ExtentWidth"), area.extentWidth);
        capabilities.AppendChildIntegerProperty(areaProperty.Get(), W("ExtentHeight"), area.extentHeight);
        capabilities.AppendChild(sizeProperty.Get(), areaProperty.Get());
        return capabilities.AppendChildToRootNode(sizeProperty.Get());
    });
}
