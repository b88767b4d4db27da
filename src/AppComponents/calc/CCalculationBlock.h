#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/calc/ICalculationInfo.h>
#include <AppComponents/log/CLogAccessor.h>

#include <exception>

/// A long computation that its caller can ask to stop.
///
/// The work polls at points of its choosing; a poll that finds a stop request throws, which
/// unwinds the computation back to whoever started it. A block is used by one thread at a time.
class APPCOMPONENTS_EXPORT CCalculationBlock
{
public:
    /// Ends a computation whose stop was requested.
    class APPCOMPONENTS_EXPORT DeviceFunctionException : public std::exception
    {
    public:
        DeviceFunctionException() = default;
        DeviceFunctionException(const DeviceFunctionException&) = default;
        DeviceFunctionException(DeviceFunctionException&&) = default;
        DeviceFunctionException& operator=(const DeviceFunctionException&) = default;
        DeviceFunctionException& operator=(DeviceFunctionException&&) = default;
        ~DeviceFunctionException() override;
        const char* what() const noexcept override; ///< "Stopped by User"
    };

    /// No stop requests until setStopFlag(); writes to the default logs.
    CCalculationBlock();
    CCalculationBlock(const CCalculationBlock&) = delete;
    CCalculationBlock& operator=(const CCalculationBlock&) = delete;
    virtual ~CCalculationBlock();

    /// Sets the object to ask for stop requests, null for none. It is not owned and must outlive
    /// every call of the block that may poll it.
    void setStopFlag(ICalculationInfo* newInfo);

protected:
    /// Asks for a stop request.
    /// \throws DeviceFunctionException if there is one.
    void checkStopFlag();

    /// Whether a stop is requested, for work that winds down by itself.
    bool isStopInvoked();

    ICalculationInfo* info = nullptr; ///< not owned
    CLogAccessor log;                 ///< for the messages of the work
};
