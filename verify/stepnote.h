// StepNote: what a check is doing, and with which input, in memory that outlives the process: when the provider crashes
// or hangs, the parent process reads it there.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

class SharedMemoryFile;

struct NotedInput {
    std::string extension;  // of a file that holds it: "bin", "xml"; empty: no input
    std::string bytes;
};

class StepNote {
public:
    // Inputs beyond this many bytes are cut, and say so by their extension, "cut".
    static constexpr std::size_t kMostInputBytes = std::size_t{4} << 20;

    // Opens the file, which is made when it is not there. Throws OperationError when that cannot be.
    explicit StepNote(const std::filesystem::path& file);
    ~StepNote();
    StepNote(const StepNote&) = delete;
    StepNote& operator=(const StepNote&) = delete;

    void SetStep(std::string_view sentence);
    void SetInput(std::string_view extension, std::string_view bytes);

    std::uint64_t CountSteps() const;  // that were noted so far
    std::string GetStep() const;
    NotedInput GetInput() const;

private:
    struct Layout;
    Layout& Get() const;

    std::unique_ptr<SharedMemoryFile> file_;
};
