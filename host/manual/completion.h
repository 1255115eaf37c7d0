// Completion of command lines.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <host/commandline.h>

// Lists the values of a kind that the host knows, whatever they begin with. The word is what stands there so far; the
// options are the line's, by name ("--printer") and value.
using GivenOption = std::pair<std::string, std::string>;
using ListValues = std::function<std::vector<std::string>(const std::string& kind, const std::string& word,
                                                          const std::vector<GivenOption>& options)>;

// What can stand in the place of the last word: commands, options not given yet, values. The words are those behind the
// program's name; the last one may be empty. Nothing for a line that is wrong, and where only files can stand.
std::vector<std::string> CompleteLine(const CommandDescription& program, const std::vector<std::string>& words,
                                      const ListValues& listValues);
