#pragma once

#include <AppComponents/AppComponentsExport.h>

/// One stream of a sequence log; shared by its holders, whom the log counts.
class APPCOMPONENTS_EXPORT CSequenceWriter
{
public:
    CSequenceWriter() = default;
    CSequenceWriter(const CSequenceWriter&) = default;
    CSequenceWriter(CSequenceWriter&&) = default;
    CSequenceWriter& operator=(const CSequenceWriter&) = default;
    CSequenceWriter& operator=(CSequenceWriter&&) = default;

protected:
    virtual ~CSequenceWriter();

private:
    friend class CSequenceLog;

    int refCount = 1;
};

/// A stream of numbers.
class APPCOMPONENTS_EXPORT CValueSequenceWriter : public CSequenceWriter
{
public:
    /// Appends one value.
    virtual void write(double value) = 0;
};

/// A stream of picture frames.
class APPCOMPONENTS_EXPORT CFrameSequenceWriter : public CSequenceWriter
{
public:
    /// Starts a stream of frames of \p width x \p height bytes.
    virtual void open(int width, int height) = 0;

    /// Appends one frame, which holds width x height bytes and is only read during the call.
    virtual void write(const unsigned char* frame) = 0;
};
