// Lists of printers in files: CSV with a header line, or JSON lines.
#include "printerlistfile.h"

#include <textcodec.h>

#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>

#include <subsystem/inputs/inputform.h>
#include "hosterror.h"
#include "hosttext.h"
#include "jsonobject.h"

namespace {

constexpr std::size_t kLongestField = 4096;  // bytes; a product may be named by a path
constexpr const char* kColumns = "the columns are name, product and, if wanted, port";

// Why a line is no entry.
class LineFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct RawEntry {
    std::string name, product, port;
};
constexpr struct {
    std::string_view name;
    std::string RawEntry::*member;
} kFields[] = {{"name", &RawEntry::name}, {"product", &RawEntry::product}, {"port", &RawEntry::port}};

// Null when there is no such field.
std::string RawEntry::*FindField(std::string_view name) {
    for (const auto& field : kFields)
        if (field.name == name) return field.member;
    return nullptr;
}

// The fields of a line, a quote in a quoted one doubled.
std::vector<std::string> SplitCsv(std::string_view line) {
    std::vector<std::string> fields(1);
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == ',') {
            fields.emplace_back();
            continue;
        }
        if (line[at] != '"') {
            fields.back() += line[at];
            continue;
        }
        if (!fields.back().empty()) throw LineFault("a quote stands inside a field that does not begin with one");
        for (++at; at < line.size() && (line[at] != '"' || line.substr(at, 2) == "\"\""); ++at) {
            if (line[at] == '"') ++at;
            fields.back() += line[at];
        }
        if (at == line.size()) throw LineFault("a quote is not closed");
        if (at + 1 < line.size() && line[at + 1] != ',') throw LineFault("something follows a closing quote");
    }
    return fields;
}

class CsvReader {
public:
    CsvReader(std::string_view header, bool wantsProduct) {
        try {
            for (const std::string& column : SplitCsv(header)) AddColumn(column);
        } catch (const LineFault& fault) {
            throw InputError(std::string("the list's first line is bad: ") + fault.what() + "; " + kColumns);
        }
        for (const auto& [name, isWanted] : {std::pair("name", true), std::pair("product", wantsProduct)})
            if (isWanted && std::find(columns_.begin(), columns_.end(), FindField(name)) == columns_.end())
                throw InputError("the list has no column '" + std::string(name) + "' in its first line; " + kColumns);
    }

    RawEntry Read(std::string_view line) const {
        const std::vector<std::string> fields = SplitCsv(line);
        if (fields.size() != columns_.size())
            throw LineFault("it has " + std::to_string(fields.size()) + " fields and the first line " +
                            std::to_string(columns_.size()));
        RawEntry entry;
        for (std::size_t at = 0; at < fields.size(); ++at) entry.*columns_[at] = fields[at];
        return entry;
    }

private:
    void AddColumn(const std::string& column) {
        std::string RawEntry::*const field = FindField(LowerSchemaWord(column));
        if (!field) throw LineFault("'" + column.substr(0, 40) + "' is no column");
        if (std::find(columns_.begin(), columns_.end(), field) != columns_.end())
            throw LineFault("the column '" + column + "' is there twice");
        columns_.push_back(field);
    }

    std::vector<std::string RawEntry::*> columns_;
};

RawEntry ReadJsonLine(std::string_view line) {
    RawEntry entry;
    try {
        for (const auto& [key, text] : ReadJsonTexts(line)) {
            std::string RawEntry::*const field = FindField(key);
            if (!field) throw LineFault("'" + key.substr(0, 40) + "' is no key; the keys are name, product and port");
            entry.*field = text;
        }
    } catch (const InputError& error) {
        throw LineFault(error.what());
    }
    return entry;
}

WideString ReadText(const std::string& text) {
    const std::optional<WideString> wide = ToWide(text);
    if (!wide) throw LineFault("it is no UTF-8 text");
    return *wide;
}

PrinterListEntry CheckEntry(const RawEntry& raw, bool wantsProduct) {
    for (const auto& field : kFields) {
        const std::string& text = raw.*field.member;
        if (text.size() > kLongestField)
            throw LineFault("its " + std::string(field.name) + " has more than " + std::to_string(kLongestField) +
                            " bytes");
        if (std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }))
            throw LineFault("its " + std::string(field.name) + " holds a control character");
    }
    if (raw.name.empty()) throw LineFault("it has no name");
    if (wantsProduct && raw.product.empty()) throw LineFault("it has no product");
    return {0, ReadText(raw.name), raw.product, ReadText(raw.port), {}};
}

// Throws LineFault for a name that an earlier line has.
void CheckName(std::map<WideString, std::size_t>& lines, const PrinterListEntry& entry) {
    WideString name = entry.name;
    LowerRegistryName(name);
    const auto [earlier, isNew] = lines.try_emplace(std::move(name), entry.line);
    if (!isNew)
        throw LineFault("the printer '" + ToUtf8(entry.name) + "' is on line " + std::to_string(earlier->second) +
                        " already");
}

}  // namespace

std::vector<PrinterListEntry> ReadPrinterList(std::string_view bytes, bool wantsProduct) {
    const std::string text = DecodeText(bytes);
    std::vector<PrinterListEntry> entries;
    std::optional<CsvReader> csv;
    std::map<WideString, std::size_t> linesOfNames;
    bool isJson = false, isFirst = true;
    std::size_t number = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        ++number;
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.find_first_not_of(" \t") == std::string_view::npos) continue;
        if (isFirst) isJson = line[line.find_first_not_of(" \t")] == '{';
        const bool isHeader = isFirst && !isJson;
        isFirst = false;
        if (isHeader) {
            csv.emplace(line, wantsProduct);
            continue;
        }
        PrinterListEntry entry;
        try {
            entry = CheckEntry(isJson ? ReadJsonLine(line) : csv->Read(line), wantsProduct);
            entry.line = number;
            CheckName(linesOfNames, entry);
        } catch (const LineFault& fault) {
            entry.line = number;
            entry.fault = fault.what();
        }
        entries.push_back(std::move(entry));
    }
    if (entries.empty()) throw InputError(std::string("the list names no printer; ") + kColumns);
    return entries;
}
