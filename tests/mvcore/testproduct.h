// A small product of the tests' own, so that their numbers stay true whatever the shipped products learn.
#pragma once

#include <support/temporaryfolder.h>

inline constexpr const char* kTestProduct = R"(
model = "Test Product"
controller_family = 8434
driver_version = 1
workflow_library = "mvwftuC0.dll"
papers = [
    { size = "NorthAmericaLetter" },
    { size = "ISOA4", form = "Sheet" },
    { size = "NorthAmericaTabloid", number = 9903 },
    { size = "NorthAmerica11x17" },
    { name = "Press Sheet 330 x 487", number = 9400, value = 6700, width = 330200, length = 487680 },
    { size = "CustomMediaSize" },
]
trays = [
    { number = 15, value = 5001, name = "Automatic" },
    { number = 1, value = 7147, name = "Tray 1" },
    { number = 3, value = 7149, name = "Tray 2", holds = { size = "ISOA4", media = 6801 } },
]
media_types = [
    { value = 5001, name = "Automatic" },
    { value = 6800, name = "Plain" },
    { value = 6801, name = "Transparency" },
    { value = 9636, name = "House Stock" },
]
resolutions = [
    { x = 1200, y = 2400, name = "1200 x 2400" },
    { x = 600, y = 600, default = true, name = "600" },
]
unlisted_media_types = [6890]
[features]
43 = { minimum = 1, maximum = 9999, default = 1 }
45 = { values = [5410, 5411], default = 5410 }
46 = { values = [5420, 5421, 5422], default = 5420 }
78 = { longest = 255 }
172 = { minimum = 139700, maximum = 330200, default = 215900 }
173 = { minimum = 139700, maximum = 660400, default = 279400 }
210 = {}
286 = { default = true }
477 = {}
[devmode]
dmPaperSize = 9
dmDefaultSource = 3
dmMediaType = 1
)";

inline std::filesystem::path GetTestProductFile() {
    static const TemporaryFolder folder;
    static const std::filesystem::path file = folder.Write("product.toml", kTestProduct);
    return file;
}
