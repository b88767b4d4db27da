#pragma once

/// \file
/// The two enumerations that classify logs and messages.

/// The kind of a log object.
enum LogType : int {
    textLog = 0,     ///< takes text: see CTextLog
    matrixLog = 1,   ///< reserved; no log of this library has it
    seqienceLog = 2, ///< takes sequences of frames: see CFrameSeqienceLog
    graphicLog = 3   ///< takes sequences of numbers: see CValueSequenceLog
};

/// How many kinds of logs there are.
constexpr int logTypeCount = 4;

/// The category of one text message; text logs filter by it.
enum TextLogType : int {
    AllLogType = 0,   ///< uncategorised, passes every filter; as a filter flag: every type
    InfoLogType = 1,  ///< information
    DebugLogType = 2, ///< debugging detail
    TimeLogType = 3   ///< timing measurements
};

/// How many categories of text messages there are.
constexpr int textLogTypeCount = 4;
