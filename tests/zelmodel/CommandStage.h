#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// What the program answered.
struct CommandResult
{
    int code = -1; ///< -1 when it did not end by itself
    QString out;
    QString err;

    QStringList lines() const;
    QJsonArray list() const;
    QJsonObject object() const;
};

/// A temporary folder in which the real program runs.
class CommandStage
{
public:
    QString path(const QString &name) const { return m_dir.filePath(name); }
    /// The files of the folder, sorted.
    QStringList files() const;
    QByteArray content(const QString &name) const;
    void write(const QString &name, const QByteArray &bytes) const;

    CommandResult run(const QStringList &arguments) const;
    /// A script of the shell, to which the program is "$zelmodel".
    CommandResult shell(const QString &script) const;
    /// Makes a model of a file of the BioNetGen language; false when nothing was imported.
    bool importModel(const QString &name, const QByteArray &source) const;
    /// Makes a model with a molecule, a species, a parameter and what else has a name or a text,
    /// all of which are called like the text.
    bool makeModelCalled(const QString &name, const QString &text) const;
    /// Changes a model without the library.
    bool execute(const QString &name, const QStringList &statements) const;
    /// A model that is all in: two molecules, three species, reactions for each of them.
    static QByteArray source();

private:
    CommandResult start(const QString &program, const QStringList &arguments) const;

    QTemporaryDir m_dir;
};
