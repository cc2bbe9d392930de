#pragma once

#include "zelExchange/export/ZelBnglAliases.h"
#include "zelExchange/export/ZelBnglReactions.h"

#include <array>
#include <set>

/// The reactions of a model database as rules of the language. Two that undo each other and have
/// one name are one rule that goes both ways.
class ZelBnglRecordRules
{
public:
    /// Two components that a rule joins: type and group of the one with the lesser ones first.
    using Bond = std::array<int, 4>;

    ZelBnglRecordRules(ZelDbSqliteModel *db, const ZelBnglMolecules &molecules,
        ZelBnglAliases *aliases, ZelExportReport *report);

    void read();
    /// The entries of the block, in the order of the records.
    QList<QByteArray> entries() const;
    bool joins(const Bond &bond) const { return m_bonds.contains(bond); }
    Bond bondOf(int type1, int component1, int type2, int component2) const;

private:
    struct Rule
    {
        QByteArray label;
        ZelBnglRuleGraph::Text text;
        QByteArray rate;
        QByteArray backRate; ///< of one that goes both ways
    };

    void readAssociation(const QString &psiimId);
    void readDissociation(const QString &psiimId);
    void readTransformation(const QString &psiimId);
    void readProduction(const QString &psiimId);
    void readDegradation(const QString &psiimId);
    /// Begins the report of a record.
    void begin(const char *kind, const QString &psiimId, const ZelDbRecord &record);
    /// The pattern of an alias; null, after saying why, when the language cannot say it.
    const ZelBnglGraph *pattern(const QString &cpaPsiimId);
    bool findSite(const ZelBnglGraph &pattern, const ZelDbRecord &record, int posColumn,
        int siteColumn, ZelBnglReactions::End *end);
    /// The one rule; of several the first by text, of none nothing, which is said.
    void addOneOf(const std::vector<ZelBnglRuleGraph> &rules, const QString &whyNone,
        const QString &whySeveral, const QString &rate);
    void add(const ZelBnglRuleGraph &rule, const QString &rate);
    QByteArray rateText(const QString &rate);
    void checkProduct(const ZelBnglGraph &product);
    void leaveOut(const QString &reason) { m_report.notes.append({m_item, reason, true}); }
    void note(const QString &reason) { m_report.notes.append({m_item, reason}); }

    ZelDbSqliteModel *m_db;
    const ZelBnglMolecules &m_molecules;
    ZelBnglAliases &m_aliases;
    ZelExportReport &m_report;
    QString m_item; ///< the record that is read, for the report
    QByteArray m_label;
    std::vector<Rule> m_rules;
    QHash<QByteArray, qsizetype> m_open; ///< rules that may still go back, by label and text
    std::set<Bond> m_bonds;
};
