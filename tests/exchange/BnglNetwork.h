#pragma once

#include "zelExchange/bngl/ZelBnglModel.h"

#include <QHash>
#include <QMap>
#include <QStringList>

#include <set>
#include <vector>

/// The reaction network of a model, found by applying each rule to all species in turn: plain and
/// slow, as an oracle. A site holds one bond; compartments are names that patterns may ask for.
class BnglNetwork
{
public:
    struct Limits
    {
        int iterations = 100;
        int species = 1000;
        QHash<QByteArray, int> molecules; ///< most of a name in one species
    };

    BnglNetwork(const ZelBnglModel &model, const Limits &limits);
    ~BnglNetwork();
    Q_DISABLE_COPY(BnglNetwork)

    /// Canonical texts, sorted.
    QStringList species() const;
    /// "reactants -> products rate" to the factor before the rate; the rate without blanks.
    const QMap<QString, double> &reactions() const { return m_reactions; }

    struct Site
    {
        quint32 name = 0;
        quint32 state = 0;
        int mol = -1; ///< partner
        int site = -1;
    };
    struct Mol
    {
        quint32 name = 0;
        quint32 compartment = 0;
        std::vector<Site> sites;
    };
    using Species = std::vector<Mol>;

    /// The text of one species of the model, to find it in a list.
    QString textOf(const ZelBnglPattern &pattern) const;

private:
    struct Rule;
    struct Match;

    Species speciesOf(const ZelBnglPattern &pattern) const;
    void addRules(const ZelBnglRule &rule);
    void apply(const Rule &rule);
    void react(const Rule &rule, const std::vector<const Match *> &matches,
        const std::vector<int> &reactants);
    QString canonical(const Species &species) const;
    int add(const Species &species);
    bool isWithin(const Species &species) const;

    const ZelBnglModel &m_model;
    Limits m_limits;
    std::vector<Rule> m_rules;
    std::vector<Species> m_species;
    size_t m_active = 0; ///< species that rules apply to; what they make waits for the next turn
    QHash<QString, int> m_index;
    QStringList m_texts;
    std::set<std::vector<int>>
        m_images; ///< of the rule that is applied: reactants and what changes
    QMap<QString, double> m_reactions;
};
