#include <AppComponents/log/CSequenceWriter.h>

CSequenceWriter::~CSequenceWriter() = default;
