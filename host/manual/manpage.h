// The manual's page.
#pragma once

#include <string>

#include <host/commandline.h>

// mvpthost(1) in the macros of man(7), UTF-8: every command of the command line with its options, and the manual's
// texts.
std::string MakeManPage(const CommandDescription& program);
