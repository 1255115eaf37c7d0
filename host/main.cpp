// mvpthost: does from the command line what the print subsystem does around the PrintTicket provider.
#include <iostream>

#include <subsystem/hostplatform.h>
#include "runhost.h"

int main(int argc, char** argv) { return RunHost(GetProgramArguments(argc, argv), std::cout, std::cerr); }
