#pragma once

#include "apps/zelmodel/ZelModelKinds.h"
#include "zelSpecies/MoleculeTypes.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QSize>
#include <QString>

#include <vector>

class ZelDbSqliteModel;

/// One record of the model as other records of the report know it.
struct ZelModelReportPlace
{
    const ZelModelKind *kind = nullptr;
    QString key; ///< harmless: the anchor, and the name of the picture's file
    QString title;
    QString detail; ///< a parameter's value, a seed's amount, a species written out
    QSize picture; ///< once it was drawn; empty when there is nothing to draw
    int chapter = 0;
    int part = 0;
    std::vector<int> users; ///< records that refer to it, but for the reactions of a species
    std::vector<int> takers; ///< reactions that take the species
    std::vector<int> givers; ///< reactions that give it
};

/// Records of some kinds, in parts of bounded length: a page each.
struct ZelModelReportChapter
{
    const char *file; ///< without suffix
    const char *title;
    const char *about; ///< a sentence beneath the title
    bool isTable; ///< on the first page when it is short
    QList<const ZelModelKind *> kinds;
    int first = 0; ///< of its places
    int count = 0;

    int partCount() const;
    /// Whether it stands on the first page.
    bool isInline() const;
    QString pageName(int part) const;
};

/// What a site may bind.
struct ZelModelReportPartner
{
    int interaction;
    QString site;
};

/// Where each record stands in the report, and which others use it: read once, before the pages are
/// written, so that each of them can be written in one go.
class ZelModelReportPlaces
{
public:
    static constexpr int PartLength = 200;
    static constexpr int LongestInlineTable = 100;
    static constexpr int None = -1;

    /// False when the database refused.
    bool read(const ZelDbSqliteModel &db, const zel::species::MoleculeTypes &catalog);

    const std::vector<ZelModelReportChapter> &chapters() const { return m_chapters; }
    int size() const { return static_cast<int>(m_places.size()); }
    const ZelModelReportPlace &at(int place) const;
    /// None for a record that is not in the report.
    int find(int type, const QString &id) const;
    int parameterNamed(const QString &name) const { return m_parameters.value(name, None); }
    /// The interaction of two sites, in either order.
    int interactionOf(const QString &bst1, const QString &bst2) const;
    /// What the site may bind, in the order of the interactions.
    QList<ZelModelReportPartner> partners(const QString &bst) const
    {
        return m_partners.value(bst);
    }
    /// The molecule of a site.
    int moleculeOf(const zel::species::MoleculeTypes &catalog, const QString &bst) const;
    /// The page and the anchor.
    QString href(int place) const;
    /// What is known only once the record was written.
    void setPicture(int place, const QSize &size);
    void setDetail(int place, const QString &text);

    static QString pictureName(const ZelModelReportPlace &place);

private:
    bool readChapter(const ZelDbSqliteModel &db, int chapter);
    void add(const ZelModelKind &kind, const ZelDbRecord &record, int chapter);
    void addUses(const ZelModelKind &kind, const ZelDbRecord &record, int place);
    void addNames(const QString &expression, int place);
    bool readInteractions(const ZelDbSqliteModel &db, const zel::species::MoleculeTypes &catalog);
    void use(int used, int user);

    std::vector<ZelModelReportChapter> m_chapters;
    std::vector<ZelModelReportPlace> m_places;
    QHash<QPair<int, QString>, int> m_byId;
    QHash<QString, int> m_parameters;
    QHash<QPair<QString, QString>, int> m_interactions;
    QHash<QString, QList<ZelModelReportPartner>> m_partners;
    QHash<QString, QString> m_molCodes; ///< of the complexes, while reading
    QSet<QString> m_shownComplexes; ///< those of which there is a species or a pattern
};
