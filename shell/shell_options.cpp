#include "shell/shell_options.h"

#include <QDateTime>

namespace {

bool isOption(const QString& s) { return s.startsWith("--"); }

// "--name=value" or "--name value": takes the value, advancing i in the second form.
bool takeValue(const QStringList& args, int& i, const QString& inlineValue, bool hasInline,
               QString& value, QString& error) {
    if (hasInline) {
        value = inlineValue;
    } else if (i + 1 < args.size() && !isOption(args[i + 1])) {
        value = args[++i];
    } else {
        error = QString("%1 needs a value").arg(args[i].section('=', 0, 0));
        return false;
    }
    if (value.isEmpty()) {
        error = QString("%1 needs a non-empty value").arg(args[i].section('=', 0, 0));
        return false;
    }
    return true;
}

bool parseInt(const QString& name, const QString& text, int minimum, int& out, QString& error) {
    bool ok = false;
    const int v = text.toInt(&ok);
    if (!ok || v < minimum) {
        error = QString("%1: '%2' is not a whole number of at least %3").arg(name, text)
                    .arg(minimum);
        return false;
    }
    out = v;
    return true;
}

}  // namespace

bool parseShellOptions(const QStringList& args, ShellOptions& out, QString& error) {
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (!isOption(arg)) {
            error = QString("unexpected argument '%1'").arg(arg);
            return false;
        }
        const int eq = arg.indexOf('=');
        const QString name = eq < 0 ? arg : arg.left(eq);
        const bool hasInline = eq >= 0;
        const QString inlineValue = hasInline ? arg.mid(eq + 1) : QString();
        QString value;

        if (name == "--help" || name == "-h") {
            out.help = true;
        } else if (name == "--root") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            out.rootDir = value;
        } else if (name == "--user") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            out.userName = value;
        } else if (name == "--library") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            out.libraryPath = value;
        } else if (name == "--market-time") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            QTime t = QTime::fromString(value, "HH:mm:ss");
            if (!t.isValid()) t = QTime::fromString(value, "HH:mm");
            if (!t.isValid()) {
                error = QString("--market-time: '%1' is not a time HH:MM:SS").arg(value);
                return false;
            }
            out.marketTime = t;
        } else if (name == "--ticks") {
            // Every following argument up to the next option is a file.
            if (hasInline) {
                if (inlineValue.isEmpty()) {
                    error = "--ticks needs at least one file";
                    return false;
                }
                out.tickFiles << inlineValue;
            }
            while (i + 1 < args.size() && !isOption(args[i + 1])) out.tickFiles << args[++i];
            if (out.tickFiles.isEmpty()) {
                error = "--ticks needs at least one file";
                return false;
            }
        } else if (name == "--open") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            for (const QString& part : value.split(',', Qt::SkipEmptyParts)) {
                out.openExports << part.trimmed();
            }
        } else if (name == "--screenshot") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            out.screenshotDir = value;
        } else if (name == "--quit-after") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            if (!parseInt(name, value, 0, out.quitAfterMs, error)) return false;
        } else if (name == "--measure-busy") {
            if (!takeValue(args, i, inlineValue, hasInline, value, error)) return false;
            if (!parseInt(name, value, 1, out.measureBusyMs, error)) return false;
        } else {
            error = QString("unknown option '%1'").arg(name);
            return false;
        }
    }
    return true;
}

QString shellUsage() {
    return QStringLiteral(
        "Usage: helmsman [options]\n"
        "  --root DIR                 root directory (default: the user's data directory)\n"
        "  --user NAME                user name (default: demo)\n"
        "  --market-time HH:MM:SS     start the process clock at this local time today\n"
        "  --ticks FILE...            replay recorded ticks instead of the random walk\n"
        "  --open EXPORT[,EXPORT...]  call these tool exports after start-up (Options: the\n"
        "                             options dialog)\n"
        "  --screenshot DIR           write one PNG per visible top-level window\n"
        "  --quit-after MS            quit after this many milliseconds\n"
        "  --measure-busy MS          print the UI thread's busy share over MS, then quit\n"
        "  --library FILE             load this add-in library file instead\n");
}

std::int64_t marketTimeOffsetMs(const QTime& target, std::int64_t nowMs) {
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(nowMs, Qt::LocalTime);
    const QDateTime wanted(now.date(), target, Qt::LocalTime);
    return wanted.toMSecsSinceEpoch() - nowMs;
}
