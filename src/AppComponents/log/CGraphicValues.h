#pragma once

#include <AppComponents/log/CSequenceWriter.h>

class CDelayedValueSequenceLog;

/// The most recent values of one stream, in a ring.
///
/// In time order the values stand in the slots getIterStart() to arraySize - 1, then 0 to
/// getIterStart() - 1. The first value fills the whole ring, so that a graph starts as a flat line.
///
/// A stream of a log may be written to from any thread. A copy is a snapshot of its own, which
/// neither locks nor notifies; take it through CDelayedValueSequenceLog::getGraphicsSet().
class APPCOMPONENTS_EXPORT CGraphicValues : public CValueSequenceWriter
{
public:
    /// How many values the ring holds.
    static constexpr int arraySize = 300;

    CGraphicValues();
    /// A stream of \p log, which is locked and notified at every change.
    explicit CGraphicValues(CDelayedValueSequenceLog* log);
    /// A snapshot: belongs to no log.
    CGraphicValues(const CGraphicValues& other);
    /// Takes the values of \p other over, unless it is empty. The log stays the same.
    CGraphicValues& operator=(const CGraphicValues& other);
    /// Tells the log's processor that the stream has gone.
    ~CGraphicValues() override;

    /// Appends one value in place of the oldest; allocates nothing.
    void write(double value) override;

    const double* getArray() const { return values; } ///< `arraySize` values
    int getIterStart() const { return iterStart; }    ///< slot of the oldest value
    bool isEmpty() const { return empty; }            ///< whether nothing was written yet

private:
    void store(double value);
    void copyValues(const CGraphicValues& other);

    CDelayedValueSequenceLog* owner = nullptr;
    bool empty = true;
    double values[arraySize] = {};
    int iterStart = 0;
};
