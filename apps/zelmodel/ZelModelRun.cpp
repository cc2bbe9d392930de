#include "apps/zelmodel/ZelModelRun.h"

#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelText.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QSaveFile>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 ProgressInterval = 100; // milliseconds
constexpr qsizetype LongestSentence = 4000;
constexpr char EraseLine[] = "\r\033[K";
constexpr char SqliteMagic[] = "SQLite format 3";

std::atomic<bool> interrupted = false;
std::atomic<bool> hasProgress = false;

void write(std::FILE *stream, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

/// Only what a signal handler may do.
void endInterrupted(int /*signal*/)
{
    const auto say = [](const char *text, std::size_t length) {
        return ::write(STDERR_FILENO, text, length) >= 0;
    };
    constexpr char Sentence[] = "zelmodel: Interrupted; nothing has changed.\n";
    if (hasProgress)
        say(EraseLine, sizeof(EraseLine) - 1);
    say(Sentence, sizeof(Sentence) - 1);
    ::_exit(ZelModelRun::Failed);
}

void handleInterrupts(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    // A second one ends the program at once.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM}) {
        // Who starts a command in the background may have it ignore Ctrl-C.
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

/// Holds interrupts back while a file has only a part of its content.
class InterruptBlocker
{
public:
    InterruptBlocker()
    {
        sigset_t blocked;
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGINT);
        sigaddset(&blocked, SIGTERM);
        sigprocmask(SIG_BLOCK, &blocked, &m_before);
    }
    ~InterruptBlocker() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }
    InterruptBlocker(const InterruptBlocker &) = delete;
    InterruptBlocker &operator=(const InterruptBlocker &) = delete;

private:
    sigset_t m_before = {};
};

/// Links lead to the same file as well.
bool isSameFile(const QString &path1, const QString &path2)
{
    struct stat file1 = {};
    struct stat file2 = {};
    return ::stat(QFile::encodeName(path1).constData(), &file1) == 0
        && ::stat(QFile::encodeName(path2).constData(), &file2) == 0 && file1.st_dev == file2.st_dev
        && file1.st_ino == file2.st_ino;
}

/// The reason why not, else empty.
QString writtenWhole(const QString &path, const QByteArray &bytes)
{
    const InterruptBlocker blocker;
    QSaveFile file(path);
    // What is still to be flushed when it commits may fail unnoticed.
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
        && file.flush() && file.commit();
    return written ? QString() : file.errorString();
}

/// A device or pipe is no file that another could take the place of.
QString writtenAsItIs(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
        && file.write(bytes) == bytes.size();
    return written ? QString() : file.errorString();
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
    if (openForReading(&m_file, path))
        return true;
    fail(m_file.errorText());
    return false;
}

bool ZelModelRun::openForReading(ZelDbSqlite *file, const QString &path)
{
    if (file->openReadOnly(path))
        return true;
    // What a save left when it was cut short can be taken back by a connection that may write.
    return file->error() == ZelDbSqlite::ReadOnly && file->open(path) && file->openReadOnly(path);
}

bool ZelModelRun::keepsModel(const QString &target)
{
    if (isSameFile(target, m_file.path())) {
        fail(QLatin1String("'%1' is the model itself; choose another file to write.").arg(target));
        return false;
    }
    if (isDatabase(target)) {
        fail(QLatin1String("'%1' is a model, or another database; choose another file to write.")
                 .arg(target));
        return false;
    }
    return true;
}

bool ZelModelRun::isDatabase(const QString &path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)
        && file.read(sizeof(SqliteMagic) - 1) == SqliteMagic;
}

bool ZelModelRun::writeFile(const QString &path, const QByteArray &bytes)
{
    const QFileInfo info(path);
    const bool isSpecial = info.exists() && !info.isFile() && !info.isDir();
    const QString reason = isSpecial ? writtenAsItIs(path, bytes) : writtenWhole(path, bytes);
    if (reason.isEmpty())
        return true;
    fail(QLatin1String("'%1' cannot be written (%2); check its folder and the room that is left.")
             .arg(path, reason));
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

void ZelModelRun::endOnInterrupt()
{
    handleInterrupts(endInterrupted);
}

void ZelModelRun::watchInterrupt()
{
    handleInterrupts([](int) { interrupted = true; });
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
        hasProgress = true;
        write(stderr,
            EraseLine
                + QLatin1String("%1: %2 of %3")
                      .arg(what, QString::number(done), QString::number(total))
                      .toUtf8());
    }
    return !interrupted;
}

void ZelModelRun::clearProgress()
{
    if (hasProgress.exchange(false))
        write(stderr, EraseLine);
}
