#pragma once

#include <QLatin1String>
#include <QStringView>

#include <array>

/// Reads XML as this library writes it, several times as fast as the toolkit's reader.
///
/// That is ASCII, elements with attributes in double quotes, white space between them and at most
/// a bare document type before. At anything else, errors included, it stops: isPlain() turns
/// false, and the text is one for QXmlStreamReader. The text must outlive what is read of it.
class SdcXmlScanner
{
    static constexpr int MaxAttributes = 12;
    static constexpr int MaxNesting = 16;

public:
    /// The attributes of one start tag.
    class Attributes
    {
    public:
        /// Null when there is none of that name.
        QStringView value(QLatin1String name) const;

    private:
        friend class SdcXmlScanner;

        struct Attribute
        {
            QStringView name;
            QStringView value;
        };

        std::array<Attribute, MaxAttributes> m_list;
        int m_count = 0;
    };

    explicit SdcXmlScanner(QStringView text);

    bool isPlain() const { return m_plain; }
    QStringView qualifiedName() const { return m_name; }
    const Attributes &attributes() const { return m_attributes; }

    /// Reads to the root element.
    bool readRoot();
    /// Reads to the next child of the element that the scanner stands in; false at its end.
    bool readChild();
    /// Reads to the end of the element that the scanner stands on.
    void skipElement();
    /// Reads what is left; a text that is plain then is well-formed.
    void readToEnd();

private:
    bool fail();
    bool take(char16_t c);
    bool takeWord(QLatin1String word);
    bool skipSpace();
    QStringView takeName();
    bool readStartTag();
    bool readEndTag();
    bool readAttribute();

    const char16_t *m_at;
    const char16_t *m_end;
    QStringView m_name;
    Attributes m_attributes;
    std::array<QStringView, MaxNesting> m_open; // the names of the open elements
    int m_depth = 0;
    bool m_isEmptyElement = false; // the tag just read was both start and end
    bool m_plain = true;
};

/// The steps of SdcXml by a scanner.
namespace SdcXml {

inline bool readRoot(SdcXmlScanner *scanner)
{
    return scanner->readRoot();
}

inline bool readChild(SdcXmlScanner *scanner)
{
    return scanner->readChild();
}

inline void skipElement(SdcXmlScanner *scanner)
{
    scanner->skipElement();
}

inline void readToEnd(SdcXmlScanner *scanner)
{
    scanner->readToEnd();
}

} // namespace SdcXml
