#include "IProgressAble.h"

IProgressAble::IProgressAble() = default;

IProgressAble::~IProgressAble() = default;

void IProgressAble::SetProgressDelegate(
    const std::shared_ptr<KelSDK::Common::IProgressDelegate>& delegate) {
    m_progressDelegate = delegate;
}
