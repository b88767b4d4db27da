#include <AppComponents/log/CTimerLog.h>
#include <AppComponents/log/DiagnosticPrinting.h>

#include <gmock/gmock.h>

#include <QPoint>
#include <QRect>
#include <QRegularExpression>
#include <QString>

#include <sstream>
#include <thread>

namespace
{

template <typename Value>
std::wstring printed(const Value& value)
{
    std::wostringstream out;
    out << value;
    return out.str();
}

// A timer whose text tells the time that passed since its reset.
class RunTimer : public CTimerLog
{
public:
    using CTimerLog::CTimerLog;
    using CTimerLog::getTicks;
};

} // namespace

TEST(DiagnosticPrinting, PrintsGeometryInItsOddForms)
{
    EXPECT_EQ(printed(QPoint(-3, 7)), L"QPoint(-3,7)");
    EXPECT_EQ(printed(QPointF(0.5, -1e9)), L"QPointF(0.5,-1e+09)");
    EXPECT_EQ(printed(QRect(1, 2, 3, 4)), L"QRect(topleft(1,2),size(3,4)");
    EXPECT_EQ(printed(QRectF(0.5, 2, 3.25, 4)), L"QRectF(topleft(0.5,2),size(3.25,4)");
    EXPECT_EQ(printed(QString::fromUtf8("\xD0\x96 \xF0\x9F\x98\x80")), L"\x416 \x1F600");
}

TEST(CTimerLog, PrintsMillisecondsBelowOneSecondAndSecondsFromThereOn)
{
    const auto started = RunTimer::getTicks();
    const RunTimer timer(L"T");
    const QRegularExpression milliseconds("^T \\d{1,3}ms$");
    const QRegularExpression seconds("^T (\\d+(\\.\\d{1,3})?)s$");
    EXPECT_TRUE(milliseconds.match(QString::fromStdWString(timer.toWString())).hasMatch());
    EXPECT_EQ(CTimerLog().toWString().front(), L' ');

    std::this_thread::sleep_for(std::chrono::milliseconds(1001));
    const auto elapsed = timer.elapsed();
    EXPECT_GE(elapsed, 1000u);
    EXPECT_LE(elapsed, RunTimer::getTicks() - started);
    const auto match = seconds.match(QString::fromStdWString(timer.toWString()));
    const auto printed = static_cast<double>(match.captured(1).toFloat());
    EXPECT_GE(printed * 1000.0, static_cast<double>(elapsed) - 0.5);
    EXPECT_LE(printed * 1000.0, static_cast<double>(timer.elapsed()) + 0.5);
}
