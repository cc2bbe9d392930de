#pragma once

#include "zelExchange/export/ZelBnglRuleGraph.h"
#include "zelExchange/import/ZelBnglInstance.h"
#include "zelExchange/import/ZelBnglTypes.h"

#include <QSet>

/// Tells which rules one of the model's reactions says exactly.
class ZelBnglRules
{
public:
    enum class Kind { Association, Dissociation, Transformation, Production, Degradation };

    static constexpr quint32 None = 0xffffffff;

    /// One reaction; its patterns and components are those of the file.
    struct Reaction
    {
        Kind kind = Kind::Transformation;
        quint32 from[2] = {None, None}; ///< patterns
        quint32 to[2] = {None, None};
        quint32 site1 = None; ///< components that an association joins, in the order of `from`,
                              ///< or that a dissociation parts
        quint32 site2 = None;
        ZelBnglText rate;
    };

    ZelBnglRules(const ZelBnglModel &model, const ZelBnglTypes &types);

    /// The reactions of a rule: one, or two of a reversible one. The reason why the rule is no such
    /// reaction, empty when it is.
    QString read(const ZelBnglRule &rule, std::vector<Reaction> *reactions) const;

private:
    QString readOneWay(ZelBnglRange from, ZelBnglRange to, ZelBnglText rate,
        std::vector<Reaction> *reactions) const;
    QString checkPatterns(
        const std::vector<quint32> &patterns, std::vector<ZelBnglInstance> *instances) const;
    /// Why the reaction's patterns alone do not tell what the rule does.
    QString checkClarity(const Reaction &reaction, const std::vector<ZelBnglInstance> &from,
        const std::vector<ZelBnglInstance> &to, int changes) const;
    ZelBnglGraph graphOf(const ZelBnglInstance &instance) const;
    QString checkRate(ZelBnglText rate) const;

    const ZelBnglModel &m_model;
    const ZelBnglTypes &m_types;
    ZelBnglGraphTypes m_graphTypes;
    QSet<quint32> m_variables; ///< functions and observables
};
