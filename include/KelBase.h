#pragma once
// Umbrella header: every exported family of KelSDK.Base.
#include "KelBaseExport.h"
#include "KelBaseVersion.h"
#include "MFileName.h"
#include "MFileUtility.h"
#include "COXCheckBase.h"
#include "MProgress.h"
#include "MProgressManager.h"
#include "IStatusCallback.h"
#include "MStatusCallbackToMProgressImpl.h"
#include "MUserUnit.h"
#include "MInternalUnitsValue.h"
#include "KelResource.h"
#include "CharacterSetConversions.h"
#include "MBlobBuffer.h"
#include "CMapStringI.h"
#ifdef _WIN32
#include "CHtmlHelpWrapper.h"
#endif
#include "Clipboard.h"
