#include "ProgressDelegateProvider.h"

#include <mutex>
#include <utility>

namespace KelSDK {
namespace Common {

namespace {

class StubProgressDelegate : public IProgressDelegate {
public:
    void Start(const std::string&, const IProgressInfo&) override {}
    void Update(const IProgressInfo&) override {}
    void Finish() override {}
    bool IsAborted() override { return false; }
    std::shared_ptr<IProgressDelegate> CreateSubDelegate(const IProgressInfo&) override {
        return ProgressDelegateProvider::GetStubDelegate();
    }
    void SetText(const std::string&) override {}
};

// Work may ask for delegates from any thread while the application swaps the provider.
std::mutex& ProviderMutex() {
    static std::mutex mutex;
    return mutex;
}

ProgressDelegateProvider::Provider& SharedProvider() {
    static ProgressDelegateProvider::Provider provider;
    return provider;
}

} // namespace

void ProgressDelegateProvider::SetSharedProvider(Provider provider) {
    std::lock_guard<std::mutex> lock(ProviderMutex());
    SharedProvider() = std::move(provider);
}

std::shared_ptr<IProgressDelegate>
ProgressDelegateProvider::GetDelegate(const IProgressInfo& info) {
    Provider provider;
    {
        std::lock_guard<std::mutex> lock(ProviderMutex());
        provider = SharedProvider();
    }
    // Called outside the lock: the provider may itself ask for delegates.
    std::shared_ptr<IProgressDelegate> delegate = provider ? provider(info) : nullptr;
    return delegate ? delegate : GetStubDelegate();
}

std::shared_ptr<IProgressDelegate> ProgressDelegateProvider::GetStubDelegate() {
    static const std::shared_ptr<IProgressDelegate> stub = std::make_shared<StubProgressDelegate>();
    return stub;
}

} // namespace Common
} // namespace KelSDK
