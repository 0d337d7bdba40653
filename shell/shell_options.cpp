#include "shell/shell_options.h"

#include <QCommandLineParser>
#include <QDateTime>

namespace {

bool isOption(const QString& s) {
    return s.startsWith("--");
}

// The options, described once for parsing and for --help alike.
struct ShellParser {
    QCommandLineParser parser;
    QCommandLineOption help = parser.addHelpOption();
    QCommandLineOption root{"root",
                            "The host's root directory; Helmsman's files go to "
                            "DIR/user/<user> (default: the user's data directory).",
                            "DIR"};
    QCommandLineOption user{"user", "The user name (default: demo).", "NAME"};
    QCommandLineOption marketTime{"market-time",
                                  "Start the process clock at this local time today.", "HH:MM:SS"};
    QCommandLineOption ticks{"ticks",
                             "Replay recorded ticks instead of the random walk; every following "
                             "argument up to the next option is a file.",
                             "FILE..."};
    QCommandLineOption open{"open",
                            "Call these tool exports after start-up (Options: the options "
                            "dialog).",
                            "EXPORT[,EXPORT...]"};
    QCommandLineOption screenshot{"screenshot", "Write one PNG per visible window to DIR.", "DIR"};
    QCommandLineOption quitAfter{"quit-after", "Quit after MS milliseconds.", "MS"};
    QCommandLineOption measureBusy{"measure-busy",
                                   "Print the UI thread's busy share over MS, then quit.", "MS"};
    QCommandLineOption library{"library", "Load this add-in library file instead.", "FILE"};

    ShellParser() {
        parser.setApplicationDescription(
            "The desk: a simulated exchange with the Helmsman add-in loaded by name.");
        parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        for (const QCommandLineOption* o : {&root, &user, &marketTime, &ticks, &open, &screenshot,
                                            &quitAfter, &measureBusy, &library}) {
            parser.addOption(*o);
        }
    }

    // Names of the options that take a value, with their dashes.
    bool takesValue(const QString& name) const {
        for (const QCommandLineOption* o : {&root, &user, &marketTime, &ticks, &open, &screenshot,
                                            &quitAfter, &measureBusy, &library}) {
            if (name == "--" + o->names().constFirst()) return true;
        }
        return false;
    }
};

bool parseInt(const QString& name, const QString& text, int minimum, int& out, QString& error) {
    bool ok = false;
    const int v = text.toInt(&ok);
    if (!ok || v < minimum) {
        error =
            QString("%1: '%2' is not a whole number of at least %3").arg(name, text).arg(minimum);
        return false;
    }
    out = v;
    return true;
}

// Brings the argument list into the parser's form. "--ticks a b" names several files, which
// the parser reads as "--ticks a --ticks b"; an option whose value would be the next option
// ("--user --root /r") is refused here, where the parser would swallow "--root" as the name.
bool normalise(const ShellParser& p, const QStringList& args, QStringList& out, QString& error) {
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        out << arg;
        const QString name = arg.section('=', 0, 0);
        if (!isOption(arg) || !p.takesValue(name)) continue;
        if (!arg.contains('=')) {
            if (i + 1 >= args.size() || isOption(args[i + 1])) {
                error = name == "--ticks" ? QString("--ticks needs at least one file")
                                          : QString("%1 needs a value").arg(name);
                return false;
            }
            out << args[++i];
        }
        if (name != "--ticks") continue;
        while (i + 1 < args.size() && !isOption(args[i + 1])) out << "--ticks" << args[++i];
    }
    return true;
}

}  // namespace

bool parseShellOptions(const QStringList& args, ShellOptions& out, QString& error) {
    ShellParser p;
    QStringList argv{"helmsman"};
    if (!normalise(p, args, argv, error)) return false;
    if (!p.parser.parse(argv)) {
        const QStringList unknown = p.parser.unknownOptionNames();
        error = unknown.isEmpty() ? p.parser.errorText()
                                  : QString("unknown option '--%1'").arg(unknown.constFirst());
        return false;
    }
    if (!p.parser.positionalArguments().isEmpty()) {
        error =
            QString("unexpected argument '%1'").arg(p.parser.positionalArguments().constFirst());
        return false;
    }
    // The last of a repeated option counts, as it always has.
    auto value = [&](const QCommandLineOption& o, QString& into) {
        if (!p.parser.isSet(o)) return true;
        into = p.parser.value(o);
        if (into.isEmpty()) {
            error = QString("--%1 needs a non-empty value").arg(o.names().constFirst());
            return false;
        }
        return true;
    };

    out.help = p.parser.isSet(p.help) || p.parser.isSet("help-all");
    QString text;
    if (!value(p.root, out.rootDir) || !value(p.user, out.userName) ||
        !value(p.library, out.libraryPath) || !value(p.screenshot, out.screenshotDir)) {
        return false;
    }
    if (p.parser.isSet(p.marketTime)) {
        if (!value(p.marketTime, text)) return false;
        QTime t = QTime::fromString(text, "HH:mm:ss");
        if (!t.isValid()) t = QTime::fromString(text, "HH:mm");
        if (!t.isValid()) {
            error = QString("--market-time: '%1' is not a time HH:MM:SS").arg(text);
            return false;
        }
        out.marketTime = t;
    }
    for (const QString& file : p.parser.values(p.ticks)) {
        if (file.isEmpty()) {
            error = "--ticks needs at least one file";
            return false;
        }
        out.tickFiles << file;
    }
    for (const QString& list : p.parser.values(p.open)) {
        for (const QString& part : list.split(',', Qt::SkipEmptyParts)) {
            out.openExports << part.trimmed();
        }
    }
    if (p.parser.isSet(p.quitAfter)) {
        if (!value(p.quitAfter, text) || !parseInt("--quit-after", text, 0, out.quitAfterMs, error))
            return false;
    }
    if (p.parser.isSet(p.measureBusy)) {
        if (!value(p.measureBusy, text) ||
            !parseInt("--measure-busy", text, 1, out.measureBusyMs, error))
            return false;
    }
    return true;
}

QString shellUsage() {
    ShellParser p;
    return p.parser.helpText();
}

std::int64_t marketTimeOffsetMs(const QTime& target, std::int64_t nowMs) {
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(nowMs, Qt::LocalTime);
    const QDateTime wanted(now.date(), target, Qt::LocalTime);
    return wanted.toMSecsSinceEpoch() - nowMs;
}
