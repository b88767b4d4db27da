#include <AppComponents/calc/CRunneble.h>
#include <AppComponents/calc/FileOpenError.h>
#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/CTextLog.h>

#include <gmock/gmock.h>

#include <string>

namespace
{

class Info : public ICalculationInfo
{
public:
    bool isStopRequested() override
    {
        ++asked;
        return stop;
    }

    bool stop = false;
    int asked = 0;
};

class Block : public CRunneble
{
public:
    using CCalculationBlock::checkStopFlag;
    using CCalculationBlock::isStopInvoked;

    int started = 0;
    int finished = 0;

protected:
    void runInternal() override
    {
        ++started;
        log(InfoLogType) << L"working" << std::endl;
        checkStopFlag();
        ++finished;
    }
};

class TextCollector : public CTextLog
{
public:
    std::wstring text;

protected:
    void writeInternal(const wchar_t* chunk, int length) override
    {
        text.append(chunk, static_cast<std::size_t>(length));
    }
};

} // namespace

TEST(CalculationBlock, AsksAnewAtEachPollAndThrowsOnAStopRequest)
{
    Block block;
    Info info;
    EXPECT_NO_THROW(block.checkStopFlag());
    EXPECT_FALSE(block.isStopInvoked());
    block.run(&info);
    EXPECT_EQ(block.finished, 1);
    info.stop = true;
    EXPECT_TRUE(block.isStopInvoked());
    EXPECT_THAT([&] { block.run(nullptr); }, // keeps the info object
                testing::ThrowsMessage<CCalculationBlock::DeviceFunctionException>(
                    testing::StrEq("Stopped by User")));
    EXPECT_EQ(block.started, 2);
    EXPECT_EQ(block.finished, 1);
    EXPECT_EQ(info.asked, 3);
    block.setStopFlag(nullptr);
    block.run(nullptr);
    EXPECT_EQ(block.finished, 2);
    EXPECT_EQ(info.asked, 3);
}

TEST(CalculationBlock, RunnableBlocksReachTheLogsOfTheirName)
{
    TextCollector collector;
    CLogManager::registerLog(&collector, L"Runnable");
    Block().run(nullptr);
    EXPECT_EQ(collector.text, L"working\n");
    CLogManager::getLogList(textLog, L"Runnable").clear();
}

TEST(FileOpenErrorTest, CarriesNameAndReasonApart)
{
    const QString name = QString::fromUtf8("\xD0\x96 %1.xml");
    const FileOpenError bare(name);
    EXPECT_STREQ(bare.what(), "Can't open file '\xD0\x96 %1.xml'");
    EXPECT_TRUE(bare.getErrorMsg().isNull());
    EXPECT_EQ(bare.getFilename(), name);

    const FileOpenError full(name, QStringLiteral("No %0 such file"));
    EXPECT_STREQ(full.what(), "Can't open file '\xD0\x96 %1.xml'. No %0 such file");
    EXPECT_EQ(full.getErrorMsg(), QStringLiteral("No %0 such file"));
    EXPECT_EQ(full.getFilename(), name);
}
