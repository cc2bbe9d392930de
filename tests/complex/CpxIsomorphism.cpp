#include "complex/CpxIsomorphism.h"

#include <QMap>
#include <QStringList>

namespace {

/// Of one molecule: what it looks like, and at which site of which molecule each of its sites is
/// bound.
struct Node
{
    QString colour;
    QMap<QString, std::pair<int, QString>> partners;
};

QList<Node> nodesOf(const CpxPlan &plan, CpxIsomorphism::Colours colours)
{
    QList<Node> nodes(plan.mols.size());
    for (const CpxPlan::Bond &bond : plan.bonds) {
        for (int i = 0; i < 2; ++i) {
            const CpxPlan::End &partner = bond.at(1 - i);
            nodes[bond.at(i).mol].partners.insert(
                plan.site(bond.at(i)).id, {partner.mol, plan.site(partner).id});
        }
    }
    for (qsizetype i = 0; i < nodes.size(); ++i) {
        QStringList parts{plan.mols.at(i).id};
        for (const CpxPlan::Mcp &mcp : plan.mols.at(i).mcps) {
            const bool withStates = colours == CpxIsomorphism::Colours::States;
            parts.append(withStates && mcp.negated ? QStringLiteral("not") : QString());
            for (int state : mcp.states)
                parts.append(withStates ? QString::number(state) : QString());
            for (const CpxPlan::Site &site : mcp.sites) {
                const bool isBound = nodes.at(i).partners.contains(site.id);
                parts.append(site.id);
                parts.append(withStates
                        ? QString::number(isBound ? BindingStatusBound : site.status)
                        : QString());
            }
        }
        nodes[i].colour = parts.join(u'|');
    }
    return nodes;
}

class Search
{
public:
    Search(const QList<Node> &a, const QList<Node> &b) : m_a(a), m_b(b), m_image(a.size(), -1) { }

    bool run()
    {
        if (m_a.size() != m_b.size())
            return false;
        // Each molecule after a neighbour of it: a wrong guess shows early.
        m_order = {0};
        for (qsizetype i = 0; i < m_order.size(); ++i) {
            for (const auto &[mol, site] : m_a.at(m_order.at(i)).partners) {
                if (!m_order.contains(mol))
                    m_order.append(mol);
            }
        }
        return m_order.size() == m_a.size() && place(0);
    }

private:
    bool place(qsizetype depth)
    {
        if (depth == m_order.size())
            return true;
        const int mol = m_order.at(depth);
        for (int image = 0; image < m_b.size(); ++image) {
            if (m_image.contains(image))
                continue;
            m_image[mol] = image;
            if (fits(mol) && place(depth + 1))
                return true;
            m_image[mol] = -1;
        }
        return false;
    }

    bool fits(int mol) const
    {
        const Node &a = m_a.at(mol);
        const Node &b = m_b.at(m_image.at(mol));
        if (a.colour != b.colour || a.partners.keys() != b.partners.keys())
            return false;
        for (auto it = a.partners.cbegin(); it != a.partners.cend(); ++it) {
            const int image = m_image.at(it.value().first);
            const auto partner = b.partners.value(it.key());
            if (partner.second != it.value().second || (image >= 0 && image != partner.first))
                return false;
        }
        return true;
    }

    QList<Node> m_a;
    QList<Node> m_b;
    QList<int> m_image; // of each molecule of a: the molecule of b that it lies on, or -1
    QList<int> m_order;
};

} // namespace

bool CpxIsomorphism::areSame(const CpxPlan &a, const CpxPlan &b, Colours colours)
{
    return Search(nodesOf(a, colours), nodesOf(b, colours)).run();
}
