// What the keys of a product file mean.
#include "productkeys.h"

#include <products/reader/featurecatalogue.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <sstream>

#include "hosterror.h"

namespace {

constexpr std::size_t kWidth = 118;  // of comments, in characters

struct ProductKey {
    std::string_view section, key, text;
    std::string_view example = {};  // for a file without it; empty when each file has it
};

constexpr ProductKey kKeys[] = {
    {"", "model", "The name that programs show and under which the driver is installed, up to 63 characters."},
    {"", "controller_family", "The controllers that the driver is for: 8430 to 8434."},
    {"", "driver_version", "dmDriverVersion of this driver's DEVMODEs, 1 to 65535."},
    {"", "workflow_library", "The maker's library for these controllers: mvwftuC0.dll, mvwfwuC0.dll or mvwfuvC0.dll."},
    {"", "dependent_files",
     "Files that are installed with the driver, beside the workflow library: names without folder.",
     "[\"mvutilC0.dll\"]"},
    {"", "applications_without_custom_size",
     "Programs that are offered no custom size, by their file names in lower case.", "[\"formletter.exe\"]"},
    {"", "string_files",
     "String tables beside this file, by their names: lines NUMBER = \"text\". A later table's text counts.",
     "[\"strings.toml\"]"},
    {"", "unlisted_media_types",
     "Media types that may be set and are not shown, since tickets have no names for them: 6870 to 6899.", "[6890]"},
    {"", "pages_per_sheet", "Numbers of pages on a sheet that the driver can place, 1 to 64.", "[1, 2, 4]"},
    {"", "papers",
     "The papers, in the order in which they are shown. size: a page size of the Print Schema, whose sides, number and "
     "name are known; CustomMediaSize lets the user choose sides. name: what is shown in place of the usual name. "
     "number: dmPaperSize where the size has none of its own. form: a form of the print server that stands for the "
     "paper. units: \"mm\" or \"in\", in which it is shown. A paper of the product's own has name, number, value (its "
     "number in the data model), width and length in micrometres, and may have type (25003 a driver's own, 25005 a "
     "form, 25006 hidden, 25007 PostScript custom)."},
    {"", "trays",
     "The trays. number: dmDefaultSource. value: 5001 for the automatic choice, else a tray from 7100 to 7199. name: "
     "up "
     "to 23 characters. holds: the paper in it (size: a keyword, or the name of a paper of the product's own; of "
     "CustomMediaSize width and length in micrometres) and, in media, the value of its media type.",
     "[{ number = 15, value = 5001, name = \"Automatic\" }]"},
    {"", "media_types",
     "The paper types. value: 5001 for the automatic choice, else a media type of the data model; dmMediaType follows "
     "from it. name: up to 63 characters.",
     "[{ value = 6800, name = \"Plain\" }]"},
    {"", "resolutions",
     "The resolutions in dots per inch: x across the paper's feed, y along it, and a name of up to 31 characters. One "
     "of them has default = true."},
    {"capabilities", "", "Words of the driver's capabilities by number."},
    {"capabilities", "1984",
     "Flags: 0x40 or 0x80 job ticket writer 8631, 0x200 PostScript, 0x400 private keywords and the embedded job "
     "ticket."},
    {"info", "", "What the product says of itself, by number."},
    {"info", "13", "\"color\" or \"monochrome\"."},
    {"paths", "", "Files of the product by kind: names of files beside this one."},
    {"paths", "15",
     "The margin file: in its section [PostScript] a line WIDTHxHEIGHT=LEFT BOTTOM RIGHT TOP for each paper, in "
     "points: "
     "the page, and the corners of its printable area from the lower left one."},
    {"settings", "", "Settings of the device by number: true, false, a whole number, a text or { option = NUMBER }."},
    {"settings", "720", "Whether a spreadsheet's paper that is a user's form becomes A4 or Letter."},
    {"settings", "422", "Left margin of papers without a line in the margin file, in hundredths of a millimetre."},
    {"settings", "423", "Right margin, likewise."},
    {"settings", "424", "Top margin, likewise."},
    {"settings", "425", "Bottom margin, likewise."},
    {"features", "",
     "What the driver can do, by feature number. Of a choice values lists what is offered and default one of them; a "
     "number or length has minimum, maximum and default (lengths in micrometres), a text longest and default, a switch "
     "default = true or false. A feature inside a list needs the list beside it."},
    {"devmode", "", "What the driver's DEVMODEs start from. A field without a line is not set."},
    {"devmode", "dmOrientation", "1 portrait, 2 landscape."},
    {"devmode", "dmPaperSize", "The number of one of the papers."},
    {"devmode", "dmScale", "Per cent, 1 to 1000.", "100"},
    {"devmode", "dmCopies", "Copies, from 1."},
    {"devmode", "dmDefaultSource", "The number of one of the trays."},
    {"devmode", "dmPrintQuality", "Dots per inch across, of one of the resolutions, or a negative quality.", "600"},
    {"devmode", "dmYResolution", "Dots per inch along, of one of the resolutions.", "600"},
    {"devmode", "dmColor", "1 monochrome, 2 colour."},
    {"devmode", "dmDuplex", "1 one side, 2 both sides turned at the long edge, 3 at the short edge."},
    {"devmode", "dmTTOption", "TrueType fonts: 1 as bitmaps, 2 downloaded, 3 substituted, 4 downloaded as outlines.",
     "2"},
    {"devmode", "dmCollate", "0 copies page by page, 1 copy by copy."},
    {"devmode", "dmNup", "Pages on a sheet: 1 placed by the system, 2 by the program.", "1"},
    {"devmode", "dmICMMethod", "Colours managed by: 1 none, 2 system, 3 driver, 4 device."},
    {"devmode", "dmICMIntent", "Rendering intent: 1 saturated, 2 photographs, 3 relative, 4 absolute colorimetric."},
    {"devmode", "dmMediaType", "The number of one of the media types: 1 is plain."},
    {"devmode", "dmDitherType", "Dithering: 1 none, 2 coarse, 3 fine, 4 line art, 5 error diffusion.", "1"},
    {"strings", "", "Texts by number, in place of those of the string files."},
};

const ProductKey* FindKey(std::string_view section, std::string_view key) {
    for (const ProductKey& row : kKeys)
        if (row.section == section && row.key == key) return &row;
    return nullptr;
}

// The text in lines behind "# ", broken at blanks.
std::string MakeComment(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        std::size_t end = text.size() <= kWidth ? text.size() : text.rfind(' ', kWidth);
        if (end == std::string_view::npos) end = text.size();
        lines.append("# ").append(text.substr(0, end)).append("\n");
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// Of a line that gives a key its value; empty for any other one. Lines inside an array or a text are indented.
std::string_view FindKeyOfLine(std::string_view line) {
    const std::size_t end = line.find_first_of(" =");
    const std::size_t equals = line.find('=');
    if (end == 0 || equals == std::string_view::npos || line.find_first_of("#[]{}\"\t") < equals) return {};
    return line.substr(0, end);
}

// What of the root or a section the file leaves out, as lines that a "#" keeps out of it.
std::string ListUnused(std::string_view section, const std::set<std::string, std::less<>>& used) {
    std::string lines;
    for (const ProductKey& row : kKeys)
        if (row.section == section && !row.key.empty() && !row.example.empty() && !used.contains(row.key))
            lines.append(MakeComment(row.text)).append("#").append(row.key).append(" = ").append(row.example) += '\n';
    return lines;
}

}  // namespace

std::string ExplainProductKey(std::string_view section, std::string_view key) {
    if (const ProductKey* row = FindKey(section, key)) return std::string(row->text);
    DWORD number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    if (section != "features" || error != std::errc() || end != key.data() + key.size()) return std::string();
    const CatalogueFeature* feature = FindCatalogueFeature(number);
    return feature ? feature->GetName() + "." : std::string();
}

std::string ReplaceProductValue(std::string_view toml, std::string_view section, std::string_view key,
                                const std::string& value) {
    std::string text(toml), current;
    for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
        end = std::min(text.find('\n', at), text.size());
        const std::string_view line = std::string_view(text).substr(at, end - at);
        if (line.starts_with('[')) current = line.substr(1, line.find(']') - 1);
        if (current != section || FindKeyOfLine(line) != key) continue;
        if (line.find('[', key.size()) != std::string_view::npos && line.find(']') == std::string_view::npos) break;
        return text.replace(at, end - at, std::string(key) + " = " + value);
    }
    throw InputError("the product file has no line that says what " + std::string(key) +
                     " is; write it in one line of its own");
}

std::string ExplainProductFile(std::string_view toml) {
    std::istringstream lines{std::string(toml)};
    std::string explained, section;
    std::set<std::string, std::less<>> used;
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (line.starts_with('[') && line.ends_with(']')) {
            explained += ListUnused(section, used);
            used.clear();
            section = line.substr(1, line.size() - 2);
            explained += MakeComment(ExplainProductKey(section, ""));
        } else if (const std::string_view key = FindKeyOfLine(line); !key.empty()) {
            used.emplace(key);
            explained += MakeComment(ExplainProductKey(section, key));
        }
        explained += line + '\n';
    }
    return explained + ListUnused(section, used);
}
