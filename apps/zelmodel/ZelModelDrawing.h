#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>
#include <QString>

class QPainter;

/// Something drawn as vectors, and the files that can be made of it. The same drawing gives the
/// same bytes in every run.
class ZelModelDrawing
{
public:
    virtual ~ZelModelDrawing() = default;

    /// Whether there is nothing to show.
    bool isNull() const { return size().isEmpty(); }
    /// In units of the drawing, before it is scaled.
    virtual QSize size() const = 0;
    virtual void paint(QPainter *painter) const = 0;

    /// As a file's content; an invalid background is transparent, in a PDF white.
    QByteArray toPng(double scale, const QColor &background) const;
    QByteArray toSvg(double scale, const QColor &background, const QString &title) const;
    QByteArray toPdf(double scale, const QColor &background, const QString &title) const;

private:
    void paintOn(QPainter *painter, const QColor &background) const;
};
