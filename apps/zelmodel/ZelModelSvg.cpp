#include "apps/zelmodel/ZelModelSvg.h"

#include <QByteArrayView>
#include <QFont>
#include <QFontInfo>

namespace {

/// What a group need not say: the defaults, and what the writer's outermost group says for all.
constexpr const char *obvious[] = {" fill-opacity=\"1\"", " stroke-opacity=\"1\"",
    " stroke-width=\"1\"", " stroke-dashoffset=\"0\"",
    " stroke-linecap=\"square\" stroke-linejoin=\"bevel\""};

/// Reads line by line, without the line ends.
class Lines
{
public:
    explicit Lines(QByteArrayView text) : m_rest(text) { }

    bool atEnd() const { return m_rest.isEmpty(); }
    QByteArrayView peek() const { return m_rest.first(length()); }

    QByteArrayView next()
    {
        const QByteArrayView line = peek();
        m_rest = m_rest.sliced(qMin(line.size() + 1, m_rest.size()));
        return line;
    }

private:
    qsizetype length() const
    {
        const qsizetype end = m_rest.indexOf('\n');
        return end < 0 ? m_rest.size() : end;
    }

    QByteArrayView m_rest;
};

void append(QByteArray *to, QByteArrayView line)
{
    to->append(line);
    to->append('\n');
}

QByteArray shortGroup(QByteArrayView line)
{
    QByteArray group = line.toByteArray().trimmed();
    for (const char *const attribute : obvious)
        group.replace(attribute, QByteArray());
    return group;
}

} // namespace

QByteArray ZelModelSvg::compacted(const QByteArray &svg)
{
    QByteArray result;
    result.reserve(svg.size() / 2);
    Lines lines(svg);
    while (!lines.atEnd()) {
        const QByteArrayView line = lines.next();
        // The writer opens a group for each change of its state, in three lines.
        if (!line.startsWith("<g ") || !lines.peek().startsWith("font-family=")) {
            if (!line.isEmpty())
                append(&result, line);
            continue;
        }
        const QByteArrayView font = lines.next(); // every text repeats it
        if (lines.peek() != ">") {
            append(&result, line);
            append(&result, font);
            continue;
        }
        lines.next();
        if (lines.peek() == "</g>")
            lines.next();
        else
            append(&result, shortGroup(line) + '>');
    }
    // The default font has a name that only the maker's machine may know; where the real one is
    // missing, one that is as wide takes its place.
    return result.replace("font-family=\"Sans Serif\"",
        "font-family=\"" + QFontInfo(QFont()).family().toHtmlEscaped().toUtf8()
            + ",Verdana,sans-serif\"");
}

QByteArray ZelModelSvg::withTitle(QByteArray svg, const QString &title)
{
    // The writer would take the title as it is, and puts one of its own before.
    const qsizetype begin = svg.indexOf("<title>");
    const qsizetype end = svg.indexOf("<defs>");
    svg.replace(begin, end - begin,
        (QLatin1String("<title>") + title.toHtmlEscaped() + QLatin1String("</title>\n")).toUtf8());
    // Texts may hold characters that XML does not have.
    svg.removeIf([](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 0x20 && c != '\n' && c != '\t';
    });
    return svg;
}
