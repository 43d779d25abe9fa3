#pragma once
/// @file
/// The receiving end of progress reports: work describes itself as an IProgressInfo and reports
/// to an IProgressDelegate, which shows (or forwards) what it is told.
#include <cstdint>
#include <memory>
#include <string>

#include "ProgressExport.h"

/// The Kel SDK's kit libraries.
namespace KelSDK {
/// Services shared by the kit libraries: units, colours, exceptions, progress and logging.
namespace Common {

/// Where a piece of work stands, in steps.
class KELPRG_API IProgressInfo {
public:
    virtual ~IProgressInfo();
    /// The number of steps of the whole work.
    virtual uint64_t GetTotalStepCount() const = 0;
    /// The number of steps done.
    virtual uint64_t GetCurrentStepCount() const = 0;
};

/// Shows or forwards the progress of one piece of work.
///
/// Texts are UTF-8. The order of the operations is part of the binary interface: do not
/// reorder them.
class KELPRG_API IProgressDelegate {
public:
    virtual ~IProgressDelegate();
    /// The work described by info begins; info gives the total step count.
    virtual void Start(const std::string& text, const IProgressInfo& info) = 0;
    /// The work has advanced to info's current step count.
    virtual void Update(const IProgressInfo& info) = 0;
    /// The work has ended.
    virtual void Finish() = 0;
    /// Whether the user asked the work to stop.
    virtual bool IsAborted() = 0;
    /// A delegate for nested work described by info; never null.
    virtual std::shared_ptr<IProgressDelegate> CreateSubDelegate(const IProgressInfo& info) = 0;
    /// Replaces the text shown for the work.
    virtual void SetText(const std::string& text) = 0;
};

} // namespace Common
} // namespace KelSDK
