// helmsman: the desktop shell. It plays the host platform: starts the simulated exchange,
// loads the Helmsman add-in by name at run time, initialises it with the desk window, the
// exchange, a root directory and a user name, and pumps the exchange's events into it.
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMessageBox>
#include <QPainter>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>
#include <algorithm>
#include <cstdio>

#include "host/clock.h"
#include "shell/addin_library.h"
#include "shell/desk_style.h"
#include "shell/desk_window.h"
#include "shell/shell_options.h"
#include "shell/shell_texts.h"
#include "sim/sim_exchange.h"

namespace {

namespace t = shell_text;

void printErr(const QString& text) {
    std::fprintf(stderr, "helmsman: %s\n", text.toLocal8Bit().constData());
    std::fflush(stderr);
}

// Shows an error box; under --quit-after the box closes itself so unattended runs end.
void errorBox(const QString& title, const QString& text, int quitAfterMs) {
    QMessageBox box(QMessageBox::Critical, title, text, QMessageBox::Ok);
    if (quitAfterMs >= 0) QTimer::singleShot(quitAfterMs, &box, &QMessageBox::accept);
    box.exec();
}

bool isShotWindow(const QWidget* w) {
    const Qt::WindowType type = w->windowType();
    return w->isVisible() && (type == Qt::Window || type == Qt::Dialog);
}

// The windows as the trader sees them: the desk, then every other window over it at its
// place, owned windows after their owner. Off a real screen this is the only picture of
// how the windows lie on one another.
QImage composeDesktop(QWidget* desk) {
    std::vector<QWidget*> windows{desk};
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != desk && isShotWindow(w) && !w->parentWidget()) windows.push_back(w);
    }
    // Owned windows over their owner; without a real window manager the order they were
    // created in (their handles grow) stands for the stacking.
    const std::size_t unowned = windows.size();
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != desk && isShotWindow(w) && w->parentWidget()) windows.push_back(w);
    }
    std::sort(windows.begin() + static_cast<std::ptrdiff_t>(unowned), windows.end(),
              [](QWidget* a, QWidget* b) { return a->internalWinId() < b->internalWinId(); });
    // Off a real screen windows have no frames: each gets a plain title bar over its top.
    constexpr int kTitleBar = 26;
    QRect bounds;
    for (QWidget* w : windows)
        bounds |= QRect(w->pos() - QPoint(0, kTitleBar), w->size() + QSize(0, kTitleBar));
    QImage image(bounds.size(), QImage::Format_RGB32);
    image.fill(QColor(0x50, 0x58, 0x60));
    QPainter painter(&image);
    for (QWidget* w : windows) {
        const QPoint at = w->pos() - bounds.topLeft();
        const QRect bar(at - QPoint(0, kTitleBar), QSize(w->width(), kTitleBar));
        painter.fillRect(bar, QColor(0x2b, 0x34, 0x40));
        painter.setPen(QColor(0xe8, 0xe8, 0xe8));
        painter.drawText(bar.adjusted(10, 0, -10, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         w->windowTitle());
        painter.drawPixmap(at, w->grab());
        painter.setPen(QColor(0x30, 0x30, 0x30));
        painter.drawRect(
            QRect(bar.topLeft(), w->size() + QSize(0, kTitleBar)).adjusted(0, 0, -1, -1));
    }
    return image;
}

// Writes one PNG per visible top-level window, and with more than the desk up, the
// composed desktop; returns how many files were written.
int writeScreenshots(const QString& dir, QWidget* desk) {
    QDir().mkpath(dir);
    int n = 0;
    int windows = 0;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (!isShotWindow(w)) continue;
        ++windows;
        QString name =
            w->objectName().isEmpty() ? QString(w->metaObject()->className()) : w->objectName();
        name.replace(QRegularExpression("[^A-Za-z0-9_-]"), "_");
        const QString file =
            QDir(dir).filePath(QString("%1_%2.png").arg(++n, 2, 10, QChar('0')).arg(name));
        if (!w->grab().save(file)) {
            printErr(QString("could not write %1").arg(file));
            --n;
        }
    }
    if (windows > 1 && desk->isVisible()) {
        const QString file = QDir(dir).filePath("00_desktop.png");
        if (composeDesktop(desk).save(file)) {
            ++n;
        } else {
            printErr(QString("could not write %1").arg(file));
        }
    }
    return n;
}

// More months of the catalogue's products, so the desk can be measured with a full board.
void padCatalogue(SimExchange& exchange, std::size_t wanted) {
    const std::vector<SimContract> base = exchange.contracts();
    std::size_t have = base.size();
    for (int round = 1; have < wanted && round < 4; ++round) {
        for (const SimContract& c : base) {
            if (have >= wanted) break;
            if (!c.detail.bTradable) continue;
            SimContract next = c;
            // Same product, a later delivery month: the last two digits move on.
            std::string code = c.symbol.strCode;
            const std::size_t len = code.size();
            if (len < 2) continue;
            const int month = std::stoi(code.substr(len - 2));
            const int later = (month + 3 * round - 1) % 12 + 1;
            code.replace(len - 2, 2, (later < 10 ? "0" : "") + std::to_string(later));
            next.symbol.strCode = code;
            next.detail.strName =
                c.detail.strName.substr(0, c.detail.strName.size() - 2) + code.substr(len - 2);
            SimContract existing;
            if (exchange.contract(next.symbol, existing)) continue;
            exchange.addContract(next);
            ++have;
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Helmsman");
    QApplication::setOrganizationName("Helmsman");

    ShellOptions opts;
    QString error;
    if (!parseShellOptions(QApplication::arguments().mid(1), opts, error)) {
        printErr(error);
        std::fputs(shellUsage().toLocal8Bit().constData(), stderr);
        return 2;
    }
    if (opts.help) {
        std::fputs(shellUsage().toLocal8Bit().constData(), stdout);
        return 0;
    }

    applyDeskStyle(app);

    // The clock of the whole process, add-in included.
    SystemClock& clock = SystemClock::instance();
    // The busy measurement needs a market that moves: unless told otherwise it runs at 10:00,
    // inside every exchange's session.
    if (opts.measureBusyMs > 0 && !opts.marketTime) opts.marketTime = QTime(10, 0);
    if (opts.marketTime) clock.setOffsetMs(marketTimeOffsetMs(*opts.marketTime, clock.nowMs()));

    const QString rootDir = opts.rootDir.isEmpty()
                                ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
                                : QDir(opts.rootDir).absolutePath();
    if (!QDir().mkpath(rootDir)) {
        printErr(QString("cannot create the root directory %1").arg(rootDir));
        return 1;
    }

    SimOptions simOptions;
    SimExchange exchange(clock, simOptions);
    if (opts.measureBusyMs > 0) padCatalogue(exchange, 20);

    // Recorded ticks replace the random walk; a file that cannot be used is reported and
    // left out, the others still play.
    QStringList replayed;
    for (const QString& file : opts.tickFiles) {
        sim::TickParseReport report;
        if (!exchange.loadTickFile(file.toStdString(), {}, &report)) {
            printErr(QString("cannot replay %1: %2").arg(file, QString::fromStdString(report.error)));
            continue;
        }
        if (report.skipped > 0) {
            printErr(QString("%1: %2").arg(file, QString::fromStdString(sim::skippedSummary(report))));
        }
        replayed << QString::fromStdString(sim::symbolCodeFromTickPath(file.toStdString()));
    }
    if (!opts.tickFiles.isEmpty()) exchange.setRandomWalk(false);
    if (!opts.tickFiles.isEmpty() && replayed.isEmpty()) {
        printErr("no tick file could be replayed; the quotes stay still");
    }

    AddinLibrary addin;
    if (!addin.load(QCoreApplication::applicationDirPath(), opts.libraryPath)) {
        const QString text = QString(t::kLoadFailed).arg(addin.errorString());
        printErr(text);
        errorBox(t::kLoadFailedTitle, text, opts.quitAfterMs);
        return 1;
    }

    const QString feed = replayed.isEmpty() ? QString(t::kStatusFeedRandom)
                                            : QString(t::kStatusFeedReplay).arg(replayed.join(' '));
    DeskWindow desk(exchange, addin, QDir(rootDir).filePath("desk.ini"), feed);
    desk.setUnattended(opts.quitAfterMs >= 0 || opts.measureBusyMs > 0);

    if (addin.useClock) addin.useClock(&clock);
    const QByteArray root = QDir::toNativeSeparators(rootDir).toLocal8Bit();
    const QByteArray user = opts.userName.toLocal8Bit();
    constexpr std::uint32_t kHostValue = 0x0100;  // the host's interface version
    addin.init(static_cast<std::uint32_t>(desk.winId()), &exchange, root.constData(),
               user.constData(), kHostValue);

    desk.show();
    desk.startPump();
    desk.pumpOnce();

    bool quitting = false;  // set when an unattended run ends: open nothing more
    // The unattended modes are armed before any export runs: an export may run a modal
    // dialog (ShowConfirmOrder), and these timers must still shoot and end the run from
    // inside its event loop.
    if (!opts.screenshotDir.isEmpty()) {
        // After the opened windows are up and a few quote rounds have run.
        int at = 1600;
        if (opts.quitAfterMs >= 0 && opts.quitAfterMs < at + 200) at = opts.quitAfterMs * 3 / 5;
        QTimer::singleShot(at, &app, [dir = opts.screenshotDir, &desk] {
            const int n = writeScreenshots(dir, &desk);
            std::printf("helmsman: %d screenshot(s) written to %s\n", n,
                        QDir(dir).absolutePath().toLocal8Bit().constData());
            std::fflush(stdout);
        });
    }
    if (opts.measureBusyMs > 0) {
        desk.busyMeter().start();
        QTimer::singleShot(opts.measureBusyMs, Qt::PreciseTimer, &app, [&] {
            const BusyMeter::Result r = desk.busyMeter().result();
            std::printf(
                "helmsman: %zu contracts, %.0f ms wall: UI thread busy %.1f ms (%.2f%%), "
                "of which pump handlers %.1f ms (%.2f%%) in %llu calls; %llu quote rounds\n",
                exchange.contracts().size(), r.wallMs, r.busyMs, 100 * r.busyShare(), r.handlerMs,
                100 * r.handlerShare(), static_cast<unsigned long long>(r.handlerCalls),
                static_cast<unsigned long long>(exchange.stats().quoteRounds));
            std::fflush(stdout);
            quitting = true;
            app.quit();
        });
    }
    if (opts.quitAfterMs >= 0) {
        QTimer::singleShot(opts.quitAfterMs, &app, [&] {
            quitting = true;
            QApplication::quit();
        });
    }

    // The exports run inside the main loop, so a quit reaches the modal loops they open (a
    // quit ends every running loop; one started after it returns at once).
    QTimer::singleShot(0, &app, [&] {
        for (const QString& name : opts.openExports) {
            if (quitting) break;
            // "Options" is the host's own options dialog, not an export.
            if (name == "Options") {
                if (!desk.showOptions(false))
                    printErr("--open Options: the add-in has no option page");
                continue;
            }
            QString why;
            if (!desk.openTool(name, &why)) printErr(QString("--open %1: %2").arg(name, why));
        }
    });

    const int rc = app.exec();
    // Tool windows go before the library that holds their code.
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != &desk && !w->parentWidget()) delete w;
    }
    return rc;
}
