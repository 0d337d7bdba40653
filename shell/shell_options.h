// The desk's command line: what to load, whose directory, which clock, which feed, what to
// open at start-up, and the unattended modes (screenshots, timed quit, busy measurement).
//
// Parsing is a plain function over the argument list so it can be tested without starting
// the application. Not thread-bound.
#pragma once

#include <QString>
#include <QStringList>
#include <QTime>
#include <cstdint>
#include <optional>

struct ShellOptions {
    QString rootDir;                  // empty: the user's application data directory
    QString userName = "demo";
    std::optional<QTime> marketTime;  // the process clock starts at this local time today
    QStringList tickFiles;            // replay these instead of the random walk
    QStringList openExports;          // tool exports to call once the desk is up
    QString screenshotDir;            // write one PNG per visible top-level window there
    int quitAfterMs = -1;             // < 0: run until the user quits
    int measureBusyMs = 0;            // > 0: measure the UI thread's busy share this long
    QString libraryPath;              // explicit add-in library file (else found by name)
    bool help = false;
};

// Parses argv (without the program name). Returns false with a one-line reason in `error`
// for an unknown option, a missing or malformed value; `out` is then left half-filled and
// must not be used.
bool parseShellOptions(const QStringList& args, ShellOptions& out, QString& error);

// The text --help prints.
QString shellUsage();

// Offset to add to the system clock so that, at calendar time `nowMs` (ms since 1970 UTC),
// the local wall clock reads `target` on the same local day.
std::int64_t marketTimeOffsetMs(const QTime& target, std::int64_t nowMs);
