#pragma once
// A mix-in for classes whose work reports progress to a delegate of the kit's Progress library.
#include <memory>

#include "IProgressDelegate.h"
#include "KelBaseExport.h"

class KELBASE_API IProgressAble {
public:
    IProgressAble();
    // Releases the delegate.
    virtual ~IProgressAble();
    IProgressAble(const IProgressAble&) = default;
    IProgressAble& operator=(const IProgressAble&) = default;

    // Shares ownership of `delegate` (null: none) and releases the previous one.
    void SetProgressDelegate(const std::shared_ptr<KelSDK::Common::IProgressDelegate>& delegate);

protected:
    // Null until set.
    std::shared_ptr<KelSDK::Common::IProgressDelegate> m_progressDelegate;
};
