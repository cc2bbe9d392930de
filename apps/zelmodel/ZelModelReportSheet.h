#pragma once

#include "apps/zelmodel/ZelModelReportPage.h"
#include "apps/zelmodel/ZelModelReportPlaces.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

/// What is said of one record on a page: a heading, a picture, and facts with links to others.
/// Facts of which there is nothing to say are left out.
class ZelModelReportSheet
{
public:
    /// The record ends with the object. Page and places must outlive it.
    ZelModelReportSheet(ZelModelReportPage *page, const ZelModelReportPlaces &places, int place,
        int headingLevel, const ZelDbRecord &record);
    ~ZelModelReportSheet();
    ZelModelReportSheet(const ZelModelReportSheet &) = delete;
    ZelModelReportSheet &operator=(const ZelModelReportSheet &) = delete;

    // Before all facts
    /// Its own picture, which leads to the file, or that there is nothing to draw.
    void picture(const QString &words);
    /// A species of a reaction, whose picture leads to its record.
    void species(int place, const QString &id);

    void fact(const QString &title, const QString &text);
    void fact(const QString &title, const QStringList &texts);
    void codeFact(const QString &title, const QString &text);
    /// Many lines as the author wrote them.
    void proseFact(const QString &title, const QString &text);
    /// A rate, an amount: with the value where it is the name of a parameter.
    void valueFact(const QString &title, const QString &expression);
    void links(const QString &title, const std::vector<int> &places);
    /// Links to those that use it, a fact for each kind.
    void users(const std::vector<int> &places);

    /// A fact whose content the caller writes.
    void openFact(const QString &title);
    void closeFact();
    /// A name, with a link where its record is in the report.
    void mention(int place, const QString &name);

    /// Links with commas between them, and how many more there are.
    static void writeLinks(ZelModelReportPage *page, const ZelModelReportPlaces &places,
        const std::vector<int> &list, std::size_t most);
    static void writeValue(
        ZelModelReportPage *page, const ZelModelReportPlaces &places, const QString &expression);

private:
    void openFacts();
    void image(const ZelModelReportPlace &drawn, const QString &words, double scale);
    void textFact(const char *tag, const QString &title, const QString &text);

    ZelModelReportPage *m_page;
    const ZelModelReportPlaces &m_places;
    int m_place;
    QString m_name;
    QString m_fullName;
    bool m_hasFacts = false;
};
