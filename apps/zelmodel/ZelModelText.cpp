#include "apps/zelmodel/ZelModelText.h"

#include <QCryptographicHash>
#include <QJsonDocument>

#include <algorithm>

namespace {

constexpr qsizetype LongestFileName = 100;

/// Characters that would steer a terminal or reorder what stands around them.
bool isSteering(QChar c)
{
    const char16_t code = c.unicode();
    return code < 0x20 || (code >= 0x7f && code <= 0x9f) || code == 0x061c
        || (code >= 0x200e && code <= 0x200f) || (code >= 0x2028 && code <= 0x202e)
        || (code >= 0x2066 && code <= 0x2069) || code == 0xfeff
        || (code >= 0xfff9 && code <= 0xfffb) || code >= 0xfffe;
}

QString escaped(QChar c)
{
    switch (c.unicode()) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return QLatin1String("\\u{%1}").arg(QString::number(c.unicode(), 16));
    }
}

QString escapedText(const QString &text, bool keepLines)
{
    if (std::none_of(text.begin(), text.end(), isSteering))
        return text;
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        if (isSteering(c) && !(keepLines && c == u'\n'))
            result += escaped(c);
        else
            result += c;
    }
    return result;
}

QByteArray escapedJson(const QJsonDocument &document, QJsonDocument::JsonFormat format)
{
    // Outside of texts the document holds nothing that steers but its own line feeds.
    const QString plain = QString::fromUtf8(document.toJson(format));
    QString result;
    result.reserve(plain.size());
    for (const QChar c : plain) {
        if (isSteering(c) && c != u'\n')
            result +=
                QLatin1String("\\u") + QString::number(c.unicode(), 16).rightJustified(4, u'0');
        else
            result += c;
    }
    return result.toUtf8();
}

} // namespace

QString ZelModelText::shown(const QString &text)
{
    return escapedText(text, false);
}

QString ZelModelText::shownLines(const QString &text)
{
    return escapedText(text, true);
}

QString ZelModelText::shortened(const QString &text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    // Not in the middle of a character of two code units.
    const qsizetype kept = text.at(length - 2).isHighSurrogate() ? length - 2 : length - 1;
    return text.left(kept) + QChar(0x2026);
}

QString ZelModelText::padded(const QString &text, qsizetype width)
{
    return text.leftJustified(qMax(width - 1, text.size())) + u' ';
}

QString ZelModelText::fileName(const QString &id)
{
    QString name = QString::fromLatin1(
        id.toUtf8().toPercentEncoding(QByteArray(), ".ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    if (name.size() > LongestFileName) {
        name = name.left(LongestFileName) + u'-'
            + QString::fromLatin1(
                QCryptographicHash::hash(id.toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
    }
    return name;
}

QByteArray ZelModelText::json(const QJsonObject &object)
{
    return escapedJson(QJsonDocument(object), QJsonDocument::Compact);
}

QByteArray ZelModelText::json(const QJsonArray &array)
{
    return escapedJson(QJsonDocument(array), QJsonDocument::Compact);
}

QByteArray ZelModelText::indentedJson(const QJsonObject &object)
{
    return escapedJson(QJsonDocument(object), QJsonDocument::Indented);
}
