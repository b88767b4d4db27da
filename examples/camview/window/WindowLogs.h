#pragma once

/// Registers the logs that the window's panels show: the in-memory text log and the ring of
/// recent values. To be called before the first component makes its log accessor; further calls
/// do nothing.
void registerWindowLogs();
