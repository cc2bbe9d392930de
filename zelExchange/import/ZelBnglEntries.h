#pragma once

#include <QByteArray>
#include <QString>

/// Tells which texts of a model database can stand in a file: texts that users give are free.
namespace ZelBnglEntries {

/// A value or rate, on one line.
bool isExpression(const QByteArray &text);
/// One entry of a block and nothing else.
bool isEntry(const QByteArray &block, const QByteArray &text);
/// One command and nothing else, perhaps on several lines.
bool isCommand(const QByteArray &text);
/// A label for a rule, as near to the text as can be; empty for an empty text.
QByteArray label(const QString &text);

} // namespace ZelBnglEntries
