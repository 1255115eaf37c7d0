// The plug-in's class factory: it makes providers and takes locks.
#pragma once

#include <unknwn.h>

// The factory, which lives as long as the plug-in; its references count among what keeps the plug-in loaded.
IClassFactory& GetClassFactory();
