// RunHost: one command line of the host, run to its end.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

// Runs the arguments (UTF-8, without the program's name). Results go to out, a failure's sentence and the reports that
// the component made to err. Returns the exit status (hosterror.h); never throws.
int RunHost(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
