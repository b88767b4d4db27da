#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CFolderOfTextLog.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <support/AllocationCounter.h>

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace
{

template <typename Action>
long allocationsOf(Action action)
{
    action(); // what is set up once does not count
    const long before = allocations;
    for (int i = 0; i < 1000; ++i)
        action();
    return allocations - before;
}

} // namespace

TEST(Allocation, AValueWrittenAllocatesNothing)
{
    CLogAccessor accessor;
    accessor.addLog(&CDelayedValueSequenceLog::getInstance());
    CValSeqWriterAccessor values(accessor, L"fps");
    EXPECT_EQ(allocationsOf([&] { values.write(1.0); }), 0);
}

TEST(Allocation, AMessageToAFileAllocatesNothing)
{
    const QTemporaryDir folder;
    CFileTextLog file(folder.filePath("log").toStdString());
    CFolderOfTextLog files(folder.path().toStdString());
    CLogAccessor accessor;
    accessor.addLog(&file);
    accessor.addLog(&files);
    EXPECT_EQ(allocationsOf([&] { accessor(InfoLogType) << L"frame " << 12 << std::endl; }), 0);
}
