// Where the add-in's windows appear: the cascade of new tickets, the host window as owner,
// and places remembered per window kind.
#include "app/ui/window_placement.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QWidget>
#include <memory>

#include "order/ui/bargain_window.h"
#include "support/qt_app.h"

namespace wp = window_placement;

namespace {

TEST(WindowPlacement, CascadeStepsPastTakenSpotsAndWrapsInsideTheArea) {
    const QRect area(0, 0, 1000, 800);
    const QRect anchor(100, 100, 601, 401);  // centre (400, 300)
    const QSize size(200, 100);
    const QPoint centred(300, 250);
    const int s = wp::kCascadeStep;
    const struct {
        const char* what;
        QRect anchor;
        QSize size;
        std::vector<QPoint> taken;
        QPoint expected;
    } cases[] = {
        {"nothing open: centred", anchor, size, {}, centred},
        {"one at the centre", anchor, size, {centred}, centred + QPoint(s, s)},
        {"a few pixels off still counts",
         anchor,
         size,
         {centred + QPoint(3, -4)},
         centred + QPoint(s, s)},
        {"two deep",
         anchor,
         size,
         {centred, centred + QPoint(s, s)},
         centred + QPoint(2 * s, 2 * s)},
        {"elsewhere does not count", anchor, size, {centred + QPoint(s, 0)}, centred},
        {"anchor off the area: pulled inside",
         QRect(900, 700, 201, 201),
         size,
         {},
         QPoint(800, 700)},
        {"past the right edge: wraps to the left",
         QRect(700, 0, 301, 301),
         QSize(300, 100),
         {QPoint(700, 100)},
         QPoint(0, 100 + s)},
        {"past the bottom: wraps to the top",
         QRect(0, 600, 301, 201),
         QSize(100, 200),
         {QPoint(100, 600)},
         QPoint(100 + s, 0)},
        {"bigger than the area: its corner", anchor, QSize(1200, 900), {}, QPoint(0, 0)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(wp::cascadePosition(c.anchor, c.size, c.taken, area), c.expected) << c.what;
    }
    // Every spot taken: it gives up on a taken spot instead of looping for ever.
    std::vector<QPoint> all;
    for (int x = 0; x < 1000; x += s)
        for (int y = 0; y < 800; y += s) all.emplace_back(x, y);
    const QPoint p = wp::cascadePosition(QRect(0, 0, 56, 56), QSize(10, 10), all, area);
    EXPECT_TRUE(area.contains(p));
}

TEST(WindowPlacement, ToolWindowsAreOwnedByTheHostWindowAndCascadeOnIt) {
    testApp();
    QWidget host;
    host.setGeometry(100, 100, 900, 700);
    host.show();
    wp::adoptHostWindow(static_cast<std::uint32_t>(host.winId()));
    ASSERT_EQ(wp::hostWindow(), &host);

    auto ticket = [&] {
        auto* w = new QWidget(wp::hostWindow(), Qt::Window);
        w->setObjectName("orderTicket");
        w->resize(300, 400);
        wp::placeCentred(w);
        w->show();
        return w;
    };
    QWidget* first = ticket();
    QWidget* second = ticket();
    EXPECT_LE((first->frameGeometry().center() - host.frameGeometry().center()).manhattanLength(),
              2);
    EXPECT_EQ(second->pos(), first->pos() + QPoint(wp::kCascadeStep, wp::kCascadeStep));

    // The fill notice: owned too, and above its owner only, not above every application.
    BargainWindow notice(nullptr, std::string());
    EXPECT_EQ(notice.parentWidget(), &host);
    EXPECT_FALSE(notice.windowFlags() & Qt::WindowStaysOnTopHint);

    // A handle of the add-in's own windows, or none, leaves the windows unowned.
    wp::adoptHostWindow(static_cast<std::uint32_t>(first->winId()));
    EXPECT_EQ(wp::hostWindow(), nullptr);
    wp::adoptHostWindow(0);
    EXPECT_EQ(wp::hostWindow(), nullptr);
    delete first;
    delete second;
    wp::adoptHostWindow(0);
}

TEST(WindowPlacement, AWindowComesBackWhereItWasLeft) {
    testApp();
    QTemporaryDir dir;
    const QString file = dir.filePath("WindowPlacement.ini");
    QPoint left;
    {
        QWidget w;
        wp::rememberPlace(&w, "FillNotice", file);
        w.show();  // nothing saved yet: where Qt puts it
        w.setGeometry(321, 234, 420, 260);
        left = w.pos();
        w.hide();
    }
    QWidget again;
    wp::rememberPlace(&again, "FillNotice", file);
    QWidget other;
    wp::rememberPlace(&other, "OtherKind", file);
    again.show();
    other.show();
    EXPECT_EQ(again.pos(), left);
    EXPECT_EQ(again.size(), QSize(420, 260));
    EXPECT_NE(other.pos(), left);
}

}  // namespace
