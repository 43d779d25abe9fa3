#include "ProcessFileNames.h"

#include "InitOrder.h"

KEL_INIT_FILE_NAMES MFileName KelBase::mg_default_working_directory;
KEL_INIT_FILE_NAMES MFileName KelBase::mg_project_directory;
