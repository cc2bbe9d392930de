#include "apps/zelmodel/ZelModelRun.h"

#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelText.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QJsonObject>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr qint64 ProgressInterval = 100; // milliseconds
constexpr qsizetype LongestSentence = 4000;

std::atomic<bool> interrupted = false;

void write(std::FILE *stream, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

} // namespace

ZelModelRun::ZelModelRun(const ZelModelCommand &command, const QCommandLineParser &parser)
    : m_command(command), m_parser(parser), m_arguments(parser.positionalArguments()),
      m_showsProgress(isatty(STDERR_FILENO) != 0)
{
}

bool ZelModelRun::isSet(const char *option) const
{
    return m_parser.isSet(QLatin1String(option));
}

QString ZelModelRun::value(const char *option) const
{
    return m_parser.value(QLatin1String(option));
}

bool ZelModelRun::openModel(const QString &path)
{
    if (m_file.openReadOnly(path))
        return true;
    fail(m_file.errorText());
    return false;
}

bool ZelModelRun::keepsModel(const QString &target)
{
    if (QFileInfo(target) != QFileInfo(m_file.path()))
        return true;
    fail(QLatin1String("'%1' is the model itself; choose another file to write.").arg(target));
    return false;
}

void ZelModelRun::print(const QString &line)
{
    write(stdout, line.toUtf8() + '\n');
}

void ZelModelRun::printJson(const QJsonObject &object)
{
    write(stdout, ZelModelText::indentedJson(object));
}

void ZelModelRun::beginList()
{
    m_hasListed = false;
    write(stdout, "[");
}

void ZelModelRun::printListed(const QJsonObject &object)
{
    write(stdout, (m_hasListed ? ",\n" : "\n") + ZelModelText::json(object));
    m_hasListed = true;
}

void ZelModelRun::endList()
{
    write(stdout, m_hasListed ? "\n]\n" : "]\n");
}

int ZelModelRun::fail(const QString &sentence)
{
    note(sentence);
    return Failed;
}

int ZelModelRun::misuse(const QString &sentence)
{
    note(sentence);
    write(stderr,
        QLatin1String("Usage: %1\n'zelmodel %2 --help' says more.\n")
            .arg(ZelModelCommands::usage(m_command), QLatin1String(m_command.name))
            .toUtf8());
    return WrongUsage;
}

void ZelModelRun::note(const QString &sentence)
{
    clearProgress();
    const QString text = ZelModelText::shortened(sentence, LongestSentence);
    write(stderr, (QLatin1String("zelmodel: ") + ZelModelText::shownLines(text) + u'\n').toUtf8());
}

void ZelModelRun::watchInterrupt()
{
    struct sigaction action = {};
    action.sa_handler = [](int) { interrupted = true; };
    // A second one ends the program at once.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool ZelModelRun::isInterrupted()
{
    return interrupted;
}

bool ZelModelRun::advance(const QString &what, qint64 done, qint64 total)
{
    if (m_showsProgress
        && (!m_sinceProgress.isValid() || m_sinceProgress.elapsed() >= ProgressInterval)) {
        m_sinceProgress.start();
        m_hasProgress = true;
        write(stderr,
            QLatin1String("\r\033[K%1: %2 of %3")
                .arg(what, QString::number(done), QString::number(total))
                .toUtf8());
    }
    return !interrupted;
}

void ZelModelRun::clearProgress()
{
    if (m_hasProgress)
        write(stderr, "\r\033[K");
    m_hasProgress = false;
}
