#pragma once

#include "apps/zelmodel/ZelModelReportPlaces.h"

#include <QString>

class ZelModelReportPage;

/// What stands around the records on every page: head, navigation, the way to the neighbours.
class ZelModelReportFrame
{
public:
    /// The places must outlive it.
    ZelModelReportFrame(const ZelModelReportPlaces &places, const QString &modelName)
        : m_places(places), m_modelName(modelName)
    {
    }

    /// The first page of the report.
    void beginIndex(ZelModelReportPage *page) const;
    /// A part of a chapter, up to its first record.
    void beginPart(ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const;
    void endPart(ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const;
    void end(ZelModelReportPage *page) const;

private:
    void begin(
        ZelModelReportPage *page, const QString &title, const ZelModelReportChapter *current) const;
    void writeHead(ZelModelReportPage *page, const QString &title) const;
    void writeNavigation(ZelModelReportPage *page, const ZelModelReportChapter *current) const;
    void writeParts(ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const;
    void writeContents(
        ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const;

    const ZelModelReportPlaces &m_places;
    QString m_modelName;
};
