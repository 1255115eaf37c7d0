// Files of the host: read whole with a bound, written whole or not at all.
#include "hostfiles.h"

#include <fstream>
#include <iostream>
#include <random>

#include "hosterror.h"
#include "hostplatform.h"
#include "hosttext.h"
#include "interruption.h"

namespace {

constexpr int kMostLinks = 40;  // as many as the system follows

std::string ReadStream(std::istream& stream, const std::string& name, std::size_t maximumBytes) {
    std::string contents;
    char buffer[65536];
    while (stream.read(buffer, sizeof buffer) || stream.gcount() > 0) {
        contents.append(buffer, static_cast<std::size_t>(stream.gcount()));
        if (contents.size() > maximumBytes) throw InputError(name + " is too large to be what it should be");
    }
    if (stream.bad()) throw InputError(name + " cannot be read to its end");
    return contents;
}

}  // namespace

bool IsStandardStream(const std::filesystem::path& file) { return file == "-"; }

std::string NameInput(const std::filesystem::path& file) {
    return IsStandardStream(file) ? "standard input" : PathToUtf8(file);
}

std::string ReadWholeFile(const std::filesystem::path& file, std::size_t maximumBytes) {
    if (IsStandardStream(file)) {
        if (std::cin.eof()) throw InputError("standard input is read to its end already; '-' can be named once");
        return ReadStream(std::cin, NameInput(file), maximumBytes);
    }
    const std::string name = "'" + PathToUtf8(file) + "'";
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) throw InputError(name + " is a folder; name a file");
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw InputError("the file " + name + " cannot be opened; check that it exists and may be read");
    return ReadStream(stream, "the file " + name, maximumBytes);
}

void WriteWholeFile(const std::filesystem::path& named, std::string_view bytes) {
    std::error_code error;
    // A device or a pipe is written in its place; of a link the target is.
    const std::filesystem::file_status before = std::filesystem::status(named, error);
    const bool inPlace = std::filesystem::is_other(before);
    std::filesystem::path file = named;
    for (int hops = 0; hops < kMostLinks && !inPlace && std::filesystem::is_symlink(file, error); ++hops)
        file = file.parent_path() / std::filesystem::read_symlink(file, error);
    const InterruptionGuard whole;
    std::filesystem::path temporary = file;
    if (!inPlace) temporary += "." + ToLowerHex(std::random_device()(), 8) + ".part";
    std::ofstream stream(temporary, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    bool written = !stream.fail();
    if (!inPlace) {
        if (written && std::filesystem::exists(before))
            std::filesystem::permissions(temporary, before.permissions(), error);
        if (written) std::filesystem::rename(temporary, file, error);
        written = written && !error;
        if (!written) std::filesystem::remove(temporary, error);
    }
    if (written) return;
    throw OperationError("the file '" + PathToUtf8(named) + "' cannot be written; check the folder and its free space");
}

void MakeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    if (std::filesystem::create_directories(folder, error); error)
        throw OperationError("the folder '" + PathToUtf8(folder) + "' cannot be made; name another one with -o");
}
