#include <QApplication>
#include <QScreen>

#include <gtest/gtest.h>

namespace
{

// The offscreen platform never deletes its screen; held here, it is no leak to the sanitizer.
const QScreen* volatile screenOfThePlatform = nullptr;

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    screenOfThePlatform = QGuiApplication::primaryScreen();
    return RUN_ALL_TESTS();
}
