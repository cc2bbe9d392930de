#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// Texts from models on their way to a terminal or a script: whatever a model holds, it neither
/// moves the cursor nor ends a line.
namespace ZelModelText {

/// On one line: control characters, line ends and changes of writing direction as "\n", "\u{1b}".
QString shown(const QString &text);
/// The same, but line feeds stay.
QString shownLines(const QString &text);
/// At most `length` characters, the last of which says that there were more.
QString shortened(const QString &text, qsizetype length);
/// Padded with blanks to that width, one blank at least.
QString padded(const QString &text, qsizetype width);
/// A file name for an id, which may hold anything; names that differ, differ in more than case.
QString fileName(const QString &id);

/// On one line, the same characters as JSON escapes.
QByteArray json(const QJsonObject &object);
QByteArray json(const QJsonArray &array);
/// On many lines.
QByteArray indentedJson(const QJsonObject &object);

} // namespace ZelModelText
