#include "IProgressDelegate.h"

namespace KelSDK {
namespace Common {

// Out of line so that the interfaces' type information lives in this library only.
IProgressInfo::~IProgressInfo() = default;
IProgressDelegate::~IProgressDelegate() = default;

} // namespace Common
} // namespace KelSDK
