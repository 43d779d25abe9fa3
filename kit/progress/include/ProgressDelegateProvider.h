#pragma once
/// @file
/// Hands out the delegate that a piece of work reports to.
#include <functional>
#include <memory>

#include "IProgressDelegate.h"

namespace KelSDK {
namespace Common {

/// Hands out the delegate that a piece of work reports to. An application installs one shared
/// provider for the whole process; without one, work reports to a delegate that shows nothing.
class KELPRG_API ProgressDelegateProvider {
public:
    /// Makes the delegate for the work that `info` describes.
    using Provider = std::function<std::shared_ptr<IProgressDelegate>(const IProgressInfo&)>;

    /// Installs the process's shared provider; an empty function removes it.
    static void SetSharedProvider(Provider provider);
    /// The shared provider's delegate for info; the stub when there is no provider or it
    /// gives none. Never null.
    static std::shared_ptr<IProgressDelegate> GetDelegate(const IProgressInfo& info);
    /// A delegate that reports nothing and never aborts.
    static std::shared_ptr<IProgressDelegate> GetStubDelegate();
};

} // namespace Common
} // namespace KelSDK
