#pragma once
// Hands out the delegate that a piece of work reports to. An application installs one shared
// provider for the whole process; without one, work reports to a delegate that shows nothing.
#include <functional>
#include <memory>

#include "IProgressDelegate.h"

namespace KelSDK {
namespace Common {

class KELPRG_API ProgressDelegateProvider {
public:
    using Provider = std::function<std::shared_ptr<IProgressDelegate>(const IProgressInfo&)>;

    // An empty function removes the shared provider.
    static void SetSharedProvider(Provider provider);
    // The shared provider's delegate for info; the stub when there is no provider or it
    // gives none. Never null.
    static std::shared_ptr<IProgressDelegate> GetDelegate(const IProgressInfo& info);
    // A delegate that reports nothing and never aborts.
    static std::shared_ptr<IProgressDelegate> GetStubDelegate();
};

} // namespace Common
} // namespace KelSDK
