#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

class QCommandLineParser;
class QJsonObject;
struct ZelModelCommand;

/// One run of a command: its arguments, the model it works on, and where it writes.
class ZelModelRun
{
public:
    /// What the program answers to its caller.
    enum ExitCode : int {
        AllWell = 0,
        Failed = 1, ///< nothing has changed
        WrongUsage = 2,
        Findings = 3 ///< something was found, or kept untranslated
    };

    ZelModelRun(const ZelModelCommand &command, const QCommandLineParser &parser);

    QString argument(int index) const { return m_arguments.value(index); }
    bool isSet(const char *option) const;
    /// Empty when the option is not given.
    QString value(const char *option) const;

    /// False, with a message, when the file is no model that can be read.
    bool openModel(const QString &path);
    /// The same for a file beside the open one. A save that was cut short is taken back.
    static bool openForReading(ZelDbSqlite *file, const QString &path);
    /// False, with a message, when writing that file would overwrite the open model, or another.
    bool keepsModel(const QString &target);
    static bool isDatabase(const QString &path);
    /// All of it or, with a message, nothing; devices and pipes are written as they are.
    bool writeFile(const QString &path, const QByteArray &bytes);
    ZelDbSqlite &file() { return m_file; }
    ZelDbSqliteModel &db() { return m_db; }

    /// A line, or several, to the standard output; parts from models are made safe before.
    void print(const QString &line);
    void printJson(const QJsonObject &object);
    /// Entries of a list that is written as it is found: an array as JSON.
    void beginList();
    void printListed(const QJsonObject &object);
    void endList();

    /// A sentence for the user on the standard error; made safe. Answers Failed or WrongUsage.
    int fail(const QString &sentence);
    int misuse(const QString &sentence);
    /// A sentence that is no failure.
    void note(const QString &sentence);

    /// What to say when the output is lost, but what the command was for is done.
    void setDone(const QString &sentence) { m_done = sentence; }
    const QString &done() const { return m_done; }

    /// From now on Ctrl-C ends the program, saying that nothing has changed.
    static void endOnInterrupt();
    /// From now on Ctrl-C no longer ends the program: advance() answers false instead.
    void watchInterrupt();
    static bool isInterrupted();
    /// Shows progress where a person watches; false when the user wants to stop.
    bool advance(const QString &what, qint64 done, qint64 total);
    void clearProgress();

private:
    const ZelModelCommand &m_command;
    const QCommandLineParser &m_parser;
    QStringList m_arguments;
    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QElapsedTimer m_sinceProgress;
    QString m_done;
    bool m_showsProgress = false;
    bool m_hasListed = false;
};
