// Models from the command line: the commands stand in the table of ZelModelCommand.cpp.
#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelManual.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QHashSeed>
#include <QLoggingCategory>

#include <csignal>
#include <cstdio>
#include <memory>

namespace {

bool print(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream)
        == static_cast<std::size_t>(bytes.size());
}

int misuse(const QString &sentence)
{
    print(stderr,
        QLatin1String("zelmodel: %1\n'zelmodel --help' lists the commands.\n")
            .arg(ZelModelText::shown(sentence)));
    return ZelModelRun::WrongUsage;
}

/// `done` receives what has been done even if the output is lost.
int runCommand(const ZelModelCommand &command, const QStringList &arguments, QString *done)
{
    QCommandLineParser parser;
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QString()});
    for (const ZelModelOption &option : command.options) {
        QStringList names{QLatin1String(option.name)};
        if (option.letter)
            names.append(QString(QLatin1Char(option.letter)));
        parser.addOption(QCommandLineOption(names, QString(), QLatin1String(option.value)));
    }
    const bool parsed = parser.parse(arguments);
    ZelModelRun run(command, parser);
    if (parser.isSet(QStringLiteral("help"))) {
        print(stdout, ZelModelCommands::help(command));
        return ZelModelRun::AllWell;
    }
    if (!parsed)
        return run.misuse(parser.errorText());
    const qsizetype count = parser.positionalArguments().size();
    if (count < command.leastArguments)
        return run.misuse(QStringLiteral("Something is missing."));
    if (parser.positionalArguments().contains(QString()))
        return run.misuse(QStringLiteral("An argument is empty; say what is meant."));
    if (count > command.mostArguments) {
        return run.misuse(QLatin1String("'%1' is too much.")
                              .arg(parser.positionalArguments().at(command.mostArguments)));
    }
    ZelModelRun::endOnInterrupt();
    const int code = command.run(run);
    run.clearProgress();
    *done = run.done();
    return code;
}

int runProgram(const QStringList &arguments, QString *done)
{
    const QString first = arguments.value(1);
    if (arguments.size() < 2)
        return misuse(QStringLiteral("A command is missing."));
    if (first == QLatin1String("--help") || first == QLatin1String("-h")
        || (first == QLatin1String("help") && arguments.size() == 2)) {
        print(stdout, ZelModelCommands::overview());
        return ZelModelRun::AllWell;
    }
    if (first == QLatin1String("--version")) {
        print(stdout, QLatin1String("zelmodel %1\n").arg(QCoreApplication::applicationVersion()));
        return ZelModelRun::AllWell;
    }
    // For the build: the table as manual pages and as completion files.
    if (first == QLatin1String("--write-manual") && arguments.size() == 3)
        return ZelModelManual::write(arguments.at(2)) ? ZelModelRun::AllWell : ZelModelRun::Failed;
    if (first == QLatin1String("help")) {
        if (const ZelModelCommand *const command = ZelModelCommands::find(arguments.at(2))) {
            print(stdout, ZelModelCommands::help(*command));
            return ZelModelRun::AllWell;
        }
        return misuse(QLatin1String("There is no command '%1'.").arg(arguments.at(2)));
    }
    const ZelModelCommand *const command = ZelModelCommands::find(first);
    return command ? runCommand(*command, arguments.mid(1), done)
                   : misuse(QLatin1String("There is no command '%1'.").arg(first));
}

/// Drawing needs fonts and a platform; everything else starts in a fraction of the time without.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv)
{
    const ZelModelCommand *const command =
        argc > 1 ? ZelModelCommands::find(QString::fromLocal8Bit(argv[1])) : nullptr;
    if (!command || !command->draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    // Pictures never need a display, and must not differ from one to the next.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "1");
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

int main(int argc, char **argv)
{
    // The same command writes the same bytes: layouts are written in the order of hashes.
    QHashSeed::setDeterministicGlobalSeed();
    // What the libraries report to developers; QT_LOGGING_RULES brings it back.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.warning=false"));
    const std::unique_ptr<QCoreApplication> app = makeApplication(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Zel"));
    QCoreApplication::setApplicationName(QStringLiteral("zelmodel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZEL_VERSION));
    // A file that grows too large is an error like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    QString done;
    const int code = runProgram(QCoreApplication::arguments(), &done);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return code;
    print(stderr,
        QLatin1String("zelmodel: The output cannot be written; check that its disk has room%1.\n")
            .arg(done.isEmpty() ? QString() : QLatin1String("; ") + ZelModelText::shown(done)));
    return ZelModelRun::Failed;
}
