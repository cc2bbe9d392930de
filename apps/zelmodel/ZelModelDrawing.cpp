#include "apps/zelmodel/ZelModelDrawing.h"

#include "apps/zelmodel/ZelModelPng.h"
#include "apps/zelmodel/ZelModelSvg.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace {

constexpr int PdfResolution = 1200;

/// The writer's own moment in place of which one that never changes stands, of the same length.
QByteArray withoutDate(const QByteArray &pdf)
{
    QByteArray result = pdf;
    const qsizetype begin = result.lastIndexOf("/CreationDate (D:");
    if (begin >= 0) {
        for (qsizetype i = begin + 17; i < result.size() && result.at(i) != ')'; ++i) {
            if (result.at(i) >= '0' && result.at(i) <= '9')
                result[i] = '0';
        }
    }
    return result;
}

} // namespace

void ZelModelDrawing::paintOn(QPainter *painter, const QColor &background) const
{
    painter->setRenderHint(QPainter::Antialiasing);
    if (background.isValid())
        painter->fillRect(QRect(QPoint(), size()), background);
    paint(painter);
}

QByteArray ZelModelDrawing::toPng(double scale, const QColor &background) const
{
    QImage image((QSizeF(size()) * scale).toSize().expandedTo(QSize(1, 1)),
        QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    paintOn(&painter, background);
    painter.end();
    return ZelModelPng::bytesOf(image);
}

QByteArray ZelModelDrawing::toSvg(
    double scale, const QColor &background, const QString &title) const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize((QSizeF(size()) * scale).toSize().expandedTo(QSize(1, 1)));
    generator.setViewBox(QRect(QPoint(), size()));
    QPainter painter(&generator);
    paintOn(&painter, background);
    painter.end();
    return ZelModelSvg::withTitle(ZelModelSvg::compacted(buffer.data()), title);
}

QByteArray ZelModelDrawing::toPdf(
    double scale, const QColor &background, const QString &title) const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("zelmodel"));
        writer.setResolution(PdfResolution);
        writer.setPageSize(
            QPageSize(QSizeF(size()) * scale, QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF(0.0, 0.0, 0.0, 0.0));
        QPainter painter(&writer);
        painter.setWindow(QRect(QPoint(), size()));
        paintOn(&painter, background);
    }
    return withoutDate(buffer.data());
}
