#include "support/BenchmarkSupport.h"

#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CFolderOfTextLog.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <benchmark/benchmark.h>

#ifdef BENCHMARK_WITH_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

#include <QTemporaryDir>

#include <atomic>
#include <map>
#include <string>
#include <thread>

namespace
{

// One message as a component of a camera application writes it.
constexpr int stageTime = 12;

void writeMessage(const CLogAccessor& accessor, int frame)
{
    accessor(InfoLogType) << L"frame " << frame << L" debayered in " << stageTime << L"ms"
                          << std::endl;
}

void writeMessages(benchmark::State& state, CTextLog& log)
{
    CLogAccessor accessor;
    accessor.addLog(&log);
    int frame = 0;
    for (auto _ : state)
        writeMessage(accessor, ++frame);
    state.SetItemsProcessed(state.iterations());
}

void fileLog(benchmark::State& state)
{
    const QTemporaryDir folder;
    CFileTextLog log(folder.filePath("ours.txt").toStdString());
    writeMessages(state, log);
}

void folderLog(benchmark::State& state)
{
    const QTemporaryDir folder;
    CFolderOfTextLog log(folder.path().toStdString());
    writeMessages(state, log);
}

void delayedLog(benchmark::State& state)
{
    constexpr int messagesPerDrain = 1000;
    auto& log = CDelayedProcessorTextLog::getInstance();
    CLogAccessor accessor;
    accessor.addLog(&log);
    std::wstring text;
    int frame = 0;
    for (auto _ : state) {
        writeMessage(accessor, ++frame);
        if (frame % messagesPerDrain == 0)
            log.getStringAndClear(text);
    }
    log.getStringAndClear(text);
    state.SetItemsProcessed(state.iterations());
}

void writeValues(benchmark::State& state)
{
    CLogAccessor accessor;
    accessor.addLog(&CDelayedValueSequenceLog::getInstance());
    CValSeqWriterAccessor values(accessor, L"fps");
    double value = 0.0;
    for (auto _ : state)
        values.write(value += 0.25);
    state.SetItemsProcessed(state.iterations());
}

// A graph that takes snapshots all the time.
void writeValuesBesideReader(benchmark::State& state)
{
    std::atomic<bool> stop = false;
    std::thread reader([&stop] {
        std::map<std::wstring, CGraphicValues> streams;
        while (!stop) {
            CDelayedValueSequenceLog::getInstance().getGraphicsSet(streams);
            std::this_thread::yield();
        }
    });
    writeValues(state);
    stop = true;
    reader.join();
}

#ifdef BENCHMARK_WITH_SPDLOG
// The same text, flushed after every message.
void peerFileLog(benchmark::State& state, const char* pattern)
{
    const QTemporaryDir folder;
    const auto logger =
        spdlog::basic_logger_st("peer", folder.filePath("peer.txt").toStdString(), true);
    logger->set_pattern(pattern);
    logger->flush_on(spdlog::level::info);
    int frame = 0;
    for (auto _ : state)
        logger->info("frame {} debayered in {}ms", ++frame, stageTime);
    state.SetItemsProcessed(state.iterations());
    spdlog::drop("peer");
}
#endif

} // namespace

int main(int argc, char** argv)
{
    benchmark::RegisterBenchmark("file_log/ours", fileLog);
    benchmark::RegisterBenchmark("folder_log/ours", folderLog);
#ifdef BENCHMARK_WITH_SPDLOG
    benchmark::RegisterBenchmark("file_log/spdlog", peerFileLog, "%v");
    benchmark::RegisterBenchmark("folder_log/spdlog", peerFileLog, "%Y-%m-%d %X %v");
#endif
    benchmark::RegisterBenchmark("delayed_log/ours", delayedLog);
    benchmark::RegisterBenchmark("value_log/ours", writeValues);
    benchmark::RegisterBenchmark("value_log_reader/ours", writeValuesBesideReader)->UseRealTime();
    return bench::runBenchmarks(argc, argv);
}
