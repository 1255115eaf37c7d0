// The note of what a check is doing.
#include "stepnote.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "sharedmemoryfile.h"

namespace {

constexpr std::size_t kStepBytes = 1024, kExtensionBytes = 16;

// Copies the text into a zero-terminated field, cut to its size.
void Store(char* field, std::size_t bytes, std::string_view text) {
    const std::size_t length = std::min(text.size(), bytes - 1);
    std::memcpy(field, text.data(), length);
    field[length] = '\0';
}

std::string Load(const char* field, std::size_t bytes) { return {field, strnlen(field, bytes)}; }

}  // namespace

// Zeroed memory is a note of nothing.
struct StepNote::Layout {
    std::atomic<std::uint64_t> steps;
    char step[kStepBytes];
    char extension[kExtensionBytes];
    std::atomic<std::uint64_t> inputBytes;
    char input[kMostInputBytes];
};

StepNote::StepNote(const std::filesystem::path& file)
    : file_(std::make_unique<SharedMemoryFile>(file, sizeof(Layout))) {}

StepNote::~StepNote() = default;

StepNote::Layout& StepNote::Get() const { return *static_cast<Layout*>(file_->Get()); }

void StepNote::SetStep(std::string_view sentence) {
    Layout& note = Get();
    Store(note.step, sizeof(note.step), sentence);
    ++note.steps;
}

void StepNote::SetInput(std::string_view extension, std::string_view bytes) {
    Layout& note = Get();
    const bool isWhole = bytes.size() <= kMostInputBytes;
    Store(note.extension, sizeof(note.extension), isWhole ? extension : std::string_view("cut"));
    note.inputBytes = std::min(bytes.size(), kMostInputBytes);
    std::memcpy(note.input, bytes.data(), note.inputBytes);
}

std::uint64_t StepNote::CountSteps() const { return Get().steps; }

std::string StepNote::GetStep() const { return Load(Get().step, kStepBytes); }

NotedInput StepNote::GetInput() const {
    const Layout& note = Get();
    const std::size_t bytes = std::min<std::uint64_t>(note.inputBytes, kMostInputBytes);
    return {Load(note.extension, kExtensionBytes), std::string(note.input, bytes)};
}
