#pragma once

#include "zelExchange/import/ZelBnglRules.h"

#include <map>

class ZelDbSqliteModel;

/// The pairs of binding sites that rules join, as molecule interactions: what a modeller may bond
/// by hand afterwards.
class ZelBnglInteractions
{
public:
    ZelBnglInteractions(const ZelBnglModel &model, const ZelBnglTypes &types, ZelDbSqliteModel *db);

    /// Takes the bonds of a rule's patterns, and the rates of the reactions that it is.
    void add(const ZelBnglRule &rule, const std::vector<ZelBnglRules::Reaction> &reactions);
    /// Writes an interaction for each pair of sites, copies included, with its drawing. Adds how
    /// many to the count. False when a record could not be written.
    bool store(int *count);

private:
    /// Type and component, the first of its copies.
    using End = std::pair<int, int>;

    struct Rates
    {
        QString association;
        QString dissociation;
    };

    Rates &ratesOf(const End &end1, const End &end2);
    bool storePair(int type1, int site1, int type2, int site2, const Rates &rates);

    const ZelBnglModel &m_model;
    const ZelBnglTypes &m_types;
    ZelDbSqliteModel *m_db;
    std::map<std::pair<End, End>, Rates> m_pairs;
};
