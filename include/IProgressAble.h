#pragma once
/// @file
/// A mix-in for classes whose work reports progress to a delegate of the kit's Progress library.
#include <memory>

#include "IProgressDelegate.h"
#include "KelBaseExport.h"

/// A mix-in for classes whose work reports progress to a delegate of the kit's Progress library.
class KELBASE_API IProgressAble {
public:
    /// No delegate yet.
    IProgressAble();
    /// Releases the delegate.
    virtual ~IProgressAble();
    /// Copies share the delegate.
    ///@{
    IProgressAble(const IProgressAble&) = default;
    IProgressAble& operator=(const IProgressAble&) = default;
    ///@}

    /// Shares ownership of `delegate` (null: none) and releases the previous one.
    void SetProgressDelegate(const std::shared_ptr<KelSDK::Common::IProgressDelegate>& delegate);

protected:
    /// The delegate the work reports to; null until set.
    std::shared_ptr<KelSDK::Common::IProgressDelegate> m_progressDelegate;
};
