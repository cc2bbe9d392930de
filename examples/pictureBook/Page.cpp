#include "Page.h"

#include "Stage.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>
#include <QtMath>

#include <algorithm>
#include <memory>

namespace {

constexpr int PageWidth = 1000;
constexpr int Margin = 48;
constexpr int Gap = 20;
constexpr int Padding = 18; // between a figure's frame and its drawing
constexpr int CaptionGap = 8;
constexpr QColor Ink(0x22, 0x26, 0x2b);
constexpr QColor SoftInk(0x5b, 0x63, 0x6d);
constexpr QColor Frame(0xdf, 0xe2, 0xe6);

QFont pageFont(int pixels, bool bold = false)
{
    QFont font;
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

int heightOf(const QString &text, const QFont &font, int width)
{
    if (text.isEmpty())
        return 0;
    return QFontMetrics(font)
        .boundingRect(0, 0, width, 10000, Qt::TextWordWrap | Qt::AlignHCenter, text)
        .height();
}

/// Where everything of one page goes. The stages live as long as the layout, so that the page can
/// be drawn to several devices.
class Layout
{
public:
    explicit Layout(const Page &page) : m_page(page)
    {
        for (const Figure &figure : page.figures) {
            m_stages.push_back(std::make_unique<Stage>());
            figure.draw(*m_stages.back());
        }
        const int columns = std::max(page.columns, 1);
        m_cellWidth = (PageWidth - 2 * Margin - (columns - 1) * Gap) / columns;
        m_zoom = page.zoom;
        for (const auto &stage : m_stages)
            m_zoom = std::min(m_zoom, (m_cellWidth - 2 * Padding) / stage->bounds().width());

        m_top = Margin + heightOf(page.title, pageFont(24, true), PageWidth);
        const int textWidth = PageWidth - 2 * Margin;
        if (!page.text.isEmpty())
            m_top += 8 + heightOf(page.text, pageFont(14), textWidth);
        m_top += 24;
        int y = m_top;
        for (qsizetype first = 0; first < page.figures.size(); first += columns) {
            const qsizetype end = std::min(first + columns, page.figures.size());
            Row row{y, 0};
            int caption = 0;
            for (qsizetype i = first; i < end; ++i) {
                const auto index = static_cast<std::size_t>(i);
                const double drawn = m_stages.at(index)->bounds().height() * m_zoom;
                row.height = std::max(row.height, qCeil(drawn) + 2 * Padding);
                caption = std::max(
                    caption, heightOf(page.figures.at(i).caption, pageFont(13), m_cellWidth));
            }
            m_rows.append(row);
            y += row.height + (caption > 0 ? CaptionGap + caption : 0) + Gap;
        }
        m_size = QSize(PageWidth, y + 24 + Margin / 2);
    }

    QSize size() const { return m_size; }

    void draw(QPainter *painter, const QString &footer) const
    {
        painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        painter->fillRect(QRect(QPoint(), m_size), Qt::white);
        const int width = PageWidth - 2 * Margin;
        painter->setPen(Ink);
        painter->setFont(pageFont(24, true));
        painter->drawText(QRect(Margin, Margin - 8, width, 40), Qt::AlignLeft, m_page.title);
        painter->setPen(SoftInk);
        painter->setFont(pageFont(14));
        painter->drawText(QRect(Margin, Margin + 32, width, m_top), Qt::TextWordWrap, m_page.text);

        const int columns = std::max(m_page.columns, 1);
        for (qsizetype i = 0; i < m_page.figures.size(); ++i) {
            const Row row = m_rows.at(i / columns);
            const int x = Margin + static_cast<int>(i % columns) * (m_cellWidth + Gap);
            drawFigure(painter, i, QRect(x, row.top, m_cellWidth, row.height));
        }

        painter->setPen(SoftInk);
        painter->setFont(pageFont(12));
        painter->drawText(
            QRect(Margin, m_size.height() - Margin, width, 20), Qt::AlignRight, footer);
    }

private:
    struct Row
    {
        int top = 0;
        int height = 0;
    };

    void drawFigure(QPainter *painter, qsizetype i, const QRect &cell) const
    {
        painter->setPen(Frame);
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(cell).adjusted(0.5, 0.5, -0.5, -0.5), 4.0, 4.0);

        // The source is the whole cell, so that halos and wide pens are not cut. The scene's
        // origin falls on a whole pixel, which keeps straight edges sharp.
        Stage &stage = *m_stages.at(static_cast<std::size_t>(i));
        QRectF source(QPointF(), QSizeF(cell.size()) / m_zoom);
        source.moveCenter(stage.bounds().center());
        source.moveTopLeft((source.topLeft() * m_zoom).toPoint().toPointF() / m_zoom);
        painter->save();
        stage.scene().render(painter, cell, source);
        painter->restore();

        painter->setPen(Ink);
        painter->setFont(pageFont(13));
        painter->drawText(QRect(cell.left(), cell.bottom() + CaptionGap, m_cellWidth, 200),
            Qt::TextWordWrap | Qt::AlignHCenter | Qt::AlignTop, m_page.figures.at(i).caption);
    }

    const Page &m_page;
    std::vector<std::unique_ptr<Stage>> m_stages;
    QList<Row> m_rows;
    QSize m_size;
    double m_zoom = 1.0;
    int m_cellWidth = 0;
    int m_top = 0;
};

} // namespace

QString writePage(const Page &page, const QString &folder, const QString &footer)
{
    const Layout layout(page);
    const QString base = folder + u'/' + page.name;
    const auto cannotWrite = [](const QString &path) {
        return QString("Cannot write %1: check that the folder exists and may be written to.")
            .arg(path);
    };
    for (const int scale : {1, 2}) {
        QImage image(layout.size() * scale, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.scale(scale, scale);
        layout.draw(&painter, footer);
        painter.end();
        const QString path = base + (scale == 1 ? ".png" : "@2x.png");
        if (!image.save(path))
            return cannotWrite(path);
    }
    QSvgGenerator svg;
    svg.setFileName(base + ".svg");
    svg.setSize(layout.size());
    svg.setViewBox(QRect(QPoint(), layout.size()));
    svg.setResolution(96); // as the images, so that point sizes agree
    svg.setTitle(page.title);
    svg.setDescription(page.text);
    QPainter painter;
    if (!painter.begin(&svg))
        return cannotWrite(svg.fileName());
    layout.draw(&painter, footer);
    painter.end();
    return {};
}
