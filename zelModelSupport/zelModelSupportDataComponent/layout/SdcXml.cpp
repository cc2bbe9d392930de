#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXml.h"

#include <QXmlStreamReader>

namespace {

constexpr qsizetype MaxLength = 32 * 1024 * 1024; // characters
constexpr int MaxNesting = 256;

// The toolkit's stream reader takes a document type anywhere.
QXmlStreamReader::TokenType readToken(QXmlStreamReader *reader)
{
    if (reader->readNext() == QXmlStreamReader::DTD)
        reader->raiseError(QStringLiteral("a document type stands where none may stand"));
    return reader->tokenType();
}

} // namespace

namespace SdcXml {

QString refusal(const QString &xml)
{
    if (xml.size() > MaxLength)
        return QStringLiteral("it is longer than %1 characters").arg(MaxLength);
    // Both words are such declarations wherever they are no mere comment, which nobody writes.
    if (xml.contains(QLatin1String("<!ENTITY")) || xml.contains(QLatin1String("<!ATTLIST")))
        return QStringLiteral("it declares entities or attributes; remove its document type");
    return {};
}

bool readRoot(QXmlStreamReader *reader)
{
    while (!reader->atEnd() && !reader->isDTD() && !reader->isStartElement())
        reader->readNext();
    while (!reader->atEnd() && !reader->isStartElement())
        readToken(reader);
    return reader->isStartElement();
}

bool readChild(QXmlStreamReader *reader)
{
    while (!reader->atEnd()) {
        const QXmlStreamReader::TokenType token = readToken(reader);
        if (token == QXmlStreamReader::StartElement || token == QXmlStreamReader::EndElement)
            return token == QXmlStreamReader::StartElement;
    }
    return false;
}

void skipElement(QXmlStreamReader *reader)
{
    int depth = 1;
    while (depth > 0 && !reader->atEnd()) {
        const QXmlStreamReader::TokenType token = readToken(reader);
        if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::StartElement && ++depth > MaxNesting)
            reader->raiseError(
                QStringLiteral("elements are nested more than %1 deep").arg(MaxNesting));
    }
}

void readToEnd(QXmlStreamReader *reader)
{
    while (!reader->atEnd())
        readToken(reader);
}

} // namespace SdcXml
