#pragma once

#include <QString>

class QXmlStreamReader;

/// Guards for reading XML that a file brought: what it costs stays in proportion to its size.
namespace SdcXml {

/// Why the text is not even parsed: it is huge, or it declares entities or attributes of its own,
/// with which a small text can stand for a large one. Empty when nothing is wrong.
QString refusal(const QString &xml);
/// Reads to the root element; false when there is none.
bool readRoot(QXmlStreamReader *reader);
/// Reads to the next child of the element that the reader stands in; false at that element's end.
bool readChild(QXmlStreamReader *reader);
/// Skips the element that the reader stands on. Absurd nesting makes it an error of the reader.
void skipElement(QXmlStreamReader *reader);
/// Reads what follows the root element: a text is well-formed only as a whole.
void readToEnd(QXmlStreamReader *reader);

} // namespace SdcXml
