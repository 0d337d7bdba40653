#include "app/ui/window_placement.h"

#include <QApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QSettings>
#include <QWidget>

#include "app/helmsman_manage.h"

namespace window_placement {

namespace {

// Set on every window the add-in places, so a handle of ours is never taken for the host's.
constexpr const char* kToolProperty = "helmsmanTool";

QPointer<QWidget>& owner() {
    static QPointer<QWidget> w;
    return w;
}

QRect availableAround(const QPoint& p) {
    QScreen* screen = QGuiApplication::screenAt(p);
    if (!screen) screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

QString placementFile() {
    const CHelmsmanManage& m = CHelmsmanManage::instance();
    if (m.userDir().empty()) return {};
    return QString::fromStdString(m.userFile("WindowPlacement.ini").string());
}

// Restores the saved place on the first show and saves it whenever the window goes away.
class PlaceKeeper final : public QObject {
public:
    PlaceKeeper(QWidget* w, QString kind, QString file)
        : QObject(w), m_window(w), m_kind(std::move(kind)), m_file(std::move(file)) {
        w->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != m_window) return false;
        if (event->type() == QEvent::Show && !m_restored) {
            m_restored = true;
            restore();
        } else if (event->type() == QEvent::Hide || event->type() == QEvent::Close) {
            save();
        }
        return false;
    }

private:
    QString file() const { return m_file.isEmpty() ? placementFile() : m_file; }

    void restore() {
        const QString file = this->file();
        if (file.isEmpty()) return;
        QSettings s(file, QSettings::IniFormat);
        const QRect r = s.value(m_kind + "/geometry").toRect();
        if (!r.isValid()) return;
        // A place on a screen that is no longer there is forgotten, not used.
        const QRect area = availableAround(r.center());
        if (!area.contains(r.center())) return;
        m_window->resize(r.size());
        m_window->move(r.topLeft());
    }

    void save() {
        const QString file = this->file();
        if (file.isEmpty() || !m_window->testAttribute(Qt::WA_WState_Created)) return;
        QSettings s(file, QSettings::IniFormat);
        s.setValue(m_kind + "/geometry", QRect(m_window->pos(), m_window->size()));
    }

    QWidget* m_window;
    QString m_kind;
    QString m_file;
    bool m_restored = false;
};

}  // namespace

void adoptHostWindow(std::uint32_t handle) {
    QWidget* w = handle ? QWidget::find(static_cast<WId>(handle)) : nullptr;
    if (w) w = w->window();
    if (w && w->property(kToolProperty).toBool()) w = nullptr;
    owner() = w;
}

QWidget* hostWindow() {
    return owner().data();
}

QPoint cascadePosition(const QRect& anchor, const QSize& size, const std::vector<QPoint>& taken,
                       const QRect& area, int step) {
    QPoint p = anchor.center() - QPoint(size.width() / 2, size.height() / 2);
    if (area.isValid()) {
        // Inside the area where it fits; its top-left corner first where it does not.
        p.setX(std::max(area.left(), std::min(p.x(), area.right() + 1 - size.width())));
        p.setY(std::max(area.top(), std::min(p.y(), area.bottom() + 1 - size.height())));
    }
    auto occupied = [&](const QPoint& at) {
        for (const QPoint& t : taken)
            if ((t - at).manhattanLength() <= step / 2) return true;
        return false;
    };
    // Bounded: a full screen of tickets ends on a taken spot rather than looping.
    for (int tries = 0; tries < 256 && occupied(p); ++tries) {
        p += QPoint(step, step);
        if (!area.isValid()) continue;
        if (p.x() + size.width() > area.right() + 1) p.setX(area.left());
        if (p.y() + size.height() > area.bottom() + 1) p.setY(area.top());
    }
    return p;
}

void placeCentred(QWidget* w) {
    w->setProperty(kToolProperty, true);
    QWidget* parent = w->parentWidget() ? w->parentWidget()->window() : nullptr;
    QRect anchor;
    if (parent && parent->isVisible()) {
        anchor = parent->frameGeometry();
    } else {
        QScreen* screen = w->screen() ? w->screen() : QGuiApplication::primaryScreen();
        if (screen) anchor = screen->availableGeometry();
    }
    std::vector<QPoint> taken;
    for (QWidget* other : QApplication::topLevelWidgets()) {
        if (other != w && other->isVisible() && other->objectName() == w->objectName())
            taken.push_back(other->pos());
    }
    w->move(cascadePosition(anchor, w->size(), taken, availableAround(anchor.center())));
}

void rememberPlace(QWidget* w, const QString& kind, const QString& file) {
    w->setProperty(kToolProperty, true);
    new PlaceKeeper(w, kind, file);
}

}  // namespace window_placement
