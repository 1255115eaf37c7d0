// PrintTickets inside XPS and OpenXPS packages: found by the relationships of the package's parts, read with libzip.
#include "xpspackage.h"

#include <zip.h>

#include <bstr.h>
#include <comptr.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hosttext.h>
#include <subsystem/xmlfile.h>

#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr std::string_view kRelationshipsFolder = "_rels/";
constexpr std::string_view kRelationshipsSuffix = ".rels";
constexpr std::string_view kTicketType = "/printticket";

struct DiscardArchive {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct CloseFile {
    void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
};

// The archive as parts by name. The bytes must outlive the object.
class Package {
public:
    Package(std::string_view bytes, std::string name) : name_(std::move(name)) {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
        if (source) archive_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
        const std::string reason = zip_error_strerror(&error);
        zip_error_fini(&error);
        if (archive_) return;
        if (source) zip_source_free(source);
        throw InputError("'" + name_ + "' is a ZIP file that cannot be read: " + reason);
    }

    // Names as the archive has them.
    std::vector<std::string> ListNames() const {
        std::vector<std::string> names;
        const zip_int64_t count = zip_get_num_entries(archive_.get(), 0);
        for (zip_int64_t index = 0; index < count; ++index)
            if (const char* name = zip_get_name(archive_.get(), static_cast<zip_uint64_t>(index), 0))
                names.emplace_back(name);
        return names;
    }

    // The part, whole or in pieces, whatever the case of its name; nothing when it is not there.
    std::optional<std::string> ReadPart(const std::string& name) const {
        if (std::optional<std::string> whole = ReadEntry(name)) return whole;
        std::string bytes;
        for (int piece = 0;; ++piece) {
            const std::string stem = name + "/[" + std::to_string(piece) + "]";
            if (const std::optional<std::string> next = ReadEntry(stem + ".piece")) {
                bytes += *next;
            } else if (const std::optional<std::string> last = ReadEntry(stem + ".last.piece")) {
                return bytes + *last;
            } else {
                return std::nullopt;
            }
            if (bytes.size() > kMaximumInputBytes) Fail("a part of it is too large");
        }
    }

    [[noreturn]] void Fail(const std::string& reason) const {
        throw InputError("'" + name_ + "' is a package that cannot be read: " + reason);
    }

private:
    std::optional<std::string> ReadEntry(const std::string& name) const {
        const zip_int64_t index = zip_name_locate(archive_.get(), name.c_str(), ZIP_FL_NOCASE);
        if (index < 0) return std::nullopt;
        const std::unique_ptr<zip_file_t, CloseFile> file(
            zip_fopen_index(archive_.get(), static_cast<zip_uint64_t>(index), 0));
        if (!file) Fail("'" + name + "' cannot be opened");
        // What the archive says of sizes is not taken on trust.
        std::string bytes;
        char buffer[1 << 14];
        for (;;) {
            const zip_int64_t count = zip_fread(file.get(), buffer, sizeof buffer);
            if (count < 0) Fail("'" + name + "' is damaged");
            if (count == 0) return bytes;
            bytes.append(buffer, static_cast<std::size_t>(count));
            if (bytes.size() > kMaximumInputBytes) Fail("'" + name + "' is too large");
        }
    }

    std::string name_;
    std::unique_ptr<zip_t, DiscardArchive> archive_;
};

std::string ReadAttribute(IXMLDOMNode* element, WideStringView name) {
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    ComPtr<IXMLDOMNode> attribute;
    Bstr text;
    if (FAILED(element->get_attributes(attributes.Put())) || !attributes ||
        attributes->getNamedItem(Bstr(name).Get(), attribute.Put()) != S_OK || !attribute ||
        FAILED(attribute->get_text(text.Put())))
        return std::string();
    return ToUtf8(text.View());
}

// The target of a relationship as a part's name without its leading slash.
std::string ResolveTarget(const std::string& source, std::string target) {
    if (target.starts_with('/')) return target.substr(1);
    std::string folder = source.substr(0, source.rfind('/') + 1);
    while (target.starts_with("../")) {
        target.erase(0, 3);
        folder.resize(folder.size() < 2 ? 0 : folder.rfind('/', folder.size() - 2) + 1);
    }
    return folder + target;
}

// Job, document, page: the lower, the more a ticket says of the whole.
int RankSource(const std::string& source) {
    if (source.empty() || source.ends_with(".fdseq")) return 0;
    return source.ends_with(".fdoc") ? 1 : 2;
}

// The part that a relationships part belongs to: "_rels/.rels" is the package's own.
std::optional<std::string> FindSource(const std::string& relationships) {
    const std::size_t folder = relationships.rfind(kRelationshipsFolder);
    if (folder == std::string::npos || !relationships.ends_with(kRelationshipsSuffix)) return std::nullopt;
    const std::size_t start = folder + kRelationshipsFolder.size();
    return relationships.substr(0, folder) +
           relationships.substr(start, relationships.size() - start - kRelationshipsSuffix.size());
}

}  // namespace

PackagePart ReadTicketOfPackage(std::string_view bytes, const std::string& name) {
    const Package package(bytes, name);
    std::string target;
    int rank = 3;
    const std::string prefix = name + ":/";
    for (const std::string& entry : package.ListNames()) {
        const std::optional<std::string> source = FindSource(entry);
        if (!source || RankSource(LowerSchemaWord(*source)) >= rank) continue;
        const ComPtr<IXMLDOMDocument2> document =
            ReadDocumentBytes(package.ReadPart(entry).value_or(std::string()), std::string(prefix).append(entry));
        ComPtr<IXMLDOMElement> root;
        if (document->get_documentElement(root.Put()) != S_OK || !root) continue;
        ComPtr<IXMLDOMNode> child;
        for (HRESULT result = root->get_firstChild(child.Put()); result == S_OK && child;) {
            if (LowerSchemaWord(ReadAttribute(child.Get(), W("Type"))).ends_with(kTicketType) &&
                RankSource(LowerSchemaWord(*source)) < rank) {
                target = ResolveTarget(*source, ReadAttribute(child.Get(), W("Target")));
                rank = RankSource(LowerSchemaWord(*source));
            }
            ComPtr<IXMLDOMNode> next;
            result = child->get_nextSibling(next.Put());
            child = next;
        }
    }
    if (target.empty())
        throw InputError("'" + name +
                         "' is a ZIP file without a PrintTicket; give an XPS file that has one, or the ticket");
    std::optional<std::string> part = package.ReadPart(target);
    if (!part) package.Fail("its PrintTicket '/" + target + "' is not there");
    return {"/" + target, *std::move(part)};
}
