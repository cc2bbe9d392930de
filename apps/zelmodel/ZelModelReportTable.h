#pragma once

#include "apps/zelmodel/ZelModelReportPlaces.h"

class ZelModelReportPage;
class ZelModelReportSearch;

/// Writes records that need no more than a row: parameters, observables, initial amounts,
/// compartments and what was kept untranslated.
class ZelModelReportTable
{
public:
    /// The table ends with the object. Everything must outlive it.
    ZelModelReportTable(ZelModelReportPage *page, const ZelModelReportPlaces &places,
        ZelModelReportSearch *search, const ZelModelKind &kind);
    ~ZelModelReportTable();
    ZelModelReportTable(const ZelModelReportTable &) = delete;
    ZelModelReportTable &operator=(const ZelModelReportTable &) = delete;

    void write(int place, const ZelDbRecord &record);

private:
    void nameCell(int place, const ZelDbRecord &record);
    void linkCell(const std::vector<int> &places);
    void cell(const QString &text);
    void codeCell(const QString &text);
    void valueCell(const QString &expression, const QString &unit);

    ZelModelReportPage *m_page;
    const ZelModelReportPlaces &m_places;
    ZelModelReportSearch &m_search;
};
