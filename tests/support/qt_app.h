// Qt helpers for widget tests: the one QApplication a test process needs, and an opt-in
// screenshot of a widget for a human to look at.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QString>
#include <QWidget>
#include <cstdlib>
#include <filesystem>

namespace qt_app_detail {

// Deletes the application made by testApp() once every test has run, before the process's
// static objects are destroyed: a static that still holds a widget (the add-in keeps its
// windows in statics) must find no application then, not one Qt has half torn down.
class AppTeardown : public ::testing::Environment {
public:
    void TearDown() override { delete QApplication::instance(); }
};

}  // namespace qt_app_detail

// The process's QApplication: an existing one when something already made it, otherwise one
// made here on first use and deleted after the last test.
inline QApplication& testApp() {
    if (QApplication::instance()) return *static_cast<QApplication*>(QApplication::instance());
    static int argc = 1;
    static char name[] = "helmsman_test";
    static char* argv[] = {name, nullptr};
    static bool teardownRegistered = false;
    auto* app = new QApplication(argc, argv);
    if (!teardownRegistered) {
        ::testing::AddGlobalTestEnvironment(new qt_app_detail::AppTeardown);
        teardownRegistered = true;
    }
    return *app;
}

// Saves what `widget` draws as a PNG named `fileName` in the folder HELMSMAN_SCREENSHOT_DIR
// names (HELMSMAN_SCREENSHOTS, the older name, is read when the newer one is not set). Does
// nothing when neither is set, so tests only take pictures when someone asks for them.
inline void saveScreenshot(QWidget* widget, const char* fileName) {
    const char* dir = std::getenv("HELMSMAN_SCREENSHOT_DIR");
    if (!dir || !*dir) dir = std::getenv("HELMSMAN_SCREENSHOTS");
    if (!dir || !*dir) return;
    widget->grab().save(QString::fromStdString((std::filesystem::path(dir) / fileName).string()));
}
