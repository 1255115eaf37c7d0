// The data model of one printer, as DataModelManager owns it.
#pragma once

#include <mvcore/datamodelmanager.h>

// Arguments and failures as those of DataModelManager's constructor. The caller destroys it.
MvDataModel* MakeDataModel(int kind, const CXString& driverDataFile, const ProductStringLoader& loader,
                           bool populateAtOnce, bool withUserSizes);
