/// Runs the tests under one application object, without a display where there is none.
#include "ui/look.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <clocale>

// The toolkit and the fonts keep what they loaded once; our own leaks are still found.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libQt6\nleak:libglib\n";
}

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setQuitOnLastWindowClosed(false);
    velkoro::look_install(app, false);
    return RUN_ALL_TESTS();
}
