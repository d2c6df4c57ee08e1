/// A main window with a few invented rows, driven as a user drives it.
#pragma once

#include "core/form1.h"
#include "core/platform.h"
#include "ui/binder.h"

#include <QPixmap>
#include <QString>
#include <QWidget>

#include <gtest/gtest.h>

#include <string>

namespace velkoro::test {

/// Loads the texts of the source table in a language (0 English, 1 German).
void load_texts(int language);
/// Puts a window's records back to their construction: looks, rows, handlers.
void reset_window(window& w);

/// Saves a picture of a window as <what>-<dark or light>-<en or de>-<scale>x.png in the folder that
/// VELKORO_PICTURES names, else in the build folder's pictures/.
QPixmap save_picture(QWidget& w, const QString& what, bool dark, int language);

class UiTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Rows named W0, W1 ... with a summit before every third.
    static void fill_rows(int count);
    /// Opens the main window.
    static void open_main();
    template <class Widget> static Widget* widget(const control& c)
    {
        auto* w = dynamic_cast<Widget*>(widget_of(c));
        EXPECT_NE(w, nullptr) << c.name;
        return w;
    }
};

} // namespace velkoro::test
