#pragma once
// The process's default working directory and project directory, read by the directory
// services. Both are empty after load; nothing in the file-name family fills them.
#include "MFileName.h"

namespace KelBase {

extern MFileName mg_default_working_directory;
extern MFileName mg_project_directory;

} // namespace KelBase
