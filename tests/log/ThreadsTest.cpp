#include "Processors.h"

#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <sstream>
#include <thread>
#include <vector>

namespace
{

constexpr int writerCount = 4;

// Its streams take a while to go.
class LeisurelyLog : public CValueSequenceLog
{
protected:
    class Writer : public CValueSequenceWriter
    {
    public:
        ~Writer() override
        {
            std::this_thread::yield();
            --count;
        }
        void write(double) override {}

        static inline std::atomic<int> count = 0;
    };

    CSequenceWriter* createSubLog(const std::wstring&) override
    {
        EXPECT_EQ(Writer::count++, 0);
        return new Writer;
    }
};

// Runs `write(i)` on a thread per writer, and `drain` until all are done and once more.
void runWriters(const std::function<void(int)>& write, const std::function<void()>& drain)
{
    std::atomic<int> running = writerCount;
    std::vector<std::thread> threads;
    for (int i = 0; i < writerCount; ++i)
        threads.emplace_back([&, i] {
            write(i);
            --running;
        });
    while (running > 0)
        drain();
    for (std::thread& thread : threads)
        thread.join();
    drain();
}

} // namespace

TEST(Threads, NoChunkOfTheDelayedLogIsLostOrTorn)
{
    constexpr int lineCount = 2000;
    auto& log = CDelayedProcessorTextLog::getInstance();
    Processor<CTextLogPorcessor> processor;
    log.resetPorcesor(&processor);
    std::wstring text;
    runWriters(
        [&log](int writer) {
            CLogAccessor accessor;
            accessor.addLog(&log);
            for (int line = 0; line < lineCount; ++line)
                accessor(InfoLogType) << writer << L' ' << line << std::endl;
        },
        [&] {
            std::wstring part;
            log.getStringAndClear(part);
            text += part;
        });
    log.resetPorcesor(nullptr);

    EXPECT_EQ(processor.calls, writerCount * lineCount);
    std::vector<int> next(writerCount, 0);
    std::wistringstream lines(text);
    int writer = 0;
    int line = 0;
    while (lines >> writer >> line) {
        ASSERT_TRUE(writer >= 0 && writer < writerCount);
        ASSERT_EQ(line, next[writer]++);
    }
    EXPECT_EQ(next, std::vector<int>(writerCount, lineCount));
}

TEST(Threads, StreamsComeAndGoWhileOthersWriteAndOneReads)
{
    constexpr int roundCount = 200;
    constexpr int valueCount = 20;
    auto& log = CDelayedValueSequenceLog::getInstance();
    Processor<CValProcessor> processor;
    log.resetPorcesor(&processor);
    std::map<std::wstring, CGraphicValues> values;
    runWriters(
        [&log](int writer) {
            CLogAccessor accessor;
            accessor.addLog(&log);
            CValSeqWriterAccessor shared(accessor, L"shared");
            for (int round = 0; round < roundCount; ++round) {
                CValSeqWriterAccessor own(accessor, std::to_wstring(writer));
                for (int i = 0; i < valueCount; ++i) {
                    own.write(writer);
                    shared.write(1.0);
                }
            }
        },
        [&] {
            log.getGraphicsSet(values);
            for (const auto& [name, stream] : values) {
                const double expected = name == L"shared" ? 1.0 : std::stod(name);
                ASSERT_EQ(stream.getArray()[299], stream.isEmpty() ? 0.0 : expected);
            }
        });
    log.resetPorcesor(nullptr);
    EXPECT_TRUE(values.empty());
    const int values2 = 2 * writerCount * roundCount * valueCount;
    const int ownStreams = writerCount * roundCount;
    // The shared stream ends once, or more often if its holders did not overlap.
    EXPECT_GE(processor.calls, values2 + ownStreams + 1);
    EXPECT_LE(processor.calls, values2 + ownStreams + writerCount);
}

TEST(Threads, AStreamHasGoneBeforeTheNextOneOfItsNameIsMade)
{
    LeisurelyLog log;
    runWriters(
        [&log](int) {
            for (int round = 0; round < 1000; ++round) {
                log.getSubLog(L"a");
                log.releaseSubLog(L"a");
            }
        },
        [] { std::this_thread::yield(); });
}
