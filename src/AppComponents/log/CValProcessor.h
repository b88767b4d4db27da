#pragma once

#include <AppComponents/AppComponentsExport.h>

/// Told by the delayed value log that its streams have changed; implemented by the application.
class APPCOMPONENTS_EXPORT CValProcessor
{
public:
    /// A value was written or a stream has gone. Called on the writer's thread while the log is
    /// locked: schedule the taking of a snapshot, do not call back into the log.
    virtual void process() = 0;

    CValProcessor() = default;
    CValProcessor(const CValProcessor&) = default;
    CValProcessor(CValProcessor&&) = default;
    CValProcessor& operator=(const CValProcessor&) = default;
    CValProcessor& operator=(CValProcessor&&) = default;
    virtual ~CValProcessor();
};
