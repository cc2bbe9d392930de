#pragma once

#include <QByteArray>

#include <vector>

/// A molecule type as the language has it.
struct ZelBnglGraphType
{
    /// Components of one name are copies of each other, which need not stand together.
    struct Component
    {
        QByteArray name;
        int group = 0; ///< index of the first copy
        std::vector<QByteArray> states;
        bool canBind = false;
    };

    QByteArray name;
    std::vector<Component> components;
};

using ZelBnglGraphTypes = std::vector<ZelBnglGraphType>;

/// A species or pattern over molecule types: every component of every molecule, with what is left
/// open.
struct ZelBnglGraph
{
    enum BondKind { Unbound, AnyBond, Bound, Bonded };

    static constexpr int None = -1;

    struct Site
    {
        int state = None; ///< index into the component's states; none when it is left open
        BondKind bond = AnyBond;
        int partnerMol = None; ///< when bonded
        int partnerSite = None;

        void unbind() { *this = {state, Unbound, None, None}; }
    };

    struct Mol
    {
        int type = None;
        QByteArray compartment;
        std::vector<Site> sites; ///< as the type's components
    };

    std::vector<Mol> mols;

    Site &site(int mol, int site)
    {
        return mols[static_cast<size_t>(mol)].sites[static_cast<size_t>(site)];
    }
    void bond(int mol1, int site1, int mol2, int site2);
    /// For each molecule, the first of those that bonds join it to.
    std::vector<int> parts() const;
    bool isConnected() const;
    /// Whether it leaves nothing open.
    bool isSpecies(const ZelBnglGraphTypes &types) const;
    /// Appends the molecules of another one; its first molecule comes to stand at the result.
    int append(const ZelBnglGraph &other);
};

/// A rule: the same molecules before and after, one that is not there on one side without a type.
struct ZelBnglRuleGraph
{
    enum Side { Before, After };

    /// One text for all ways to build one rule.
    struct Text
    {
        QByteArray left;
        QByteArray right;

        QByteArray joined() const { return left + " -> " + right; }
    };

    ZelBnglGraph sides[2];

    ZelBnglRuleGraph reversed() const { return {{sides[After], sides[Before]}}; }
    Text text(const ZelBnglGraphTypes &types) const;
    /// The text of a pattern alone, "0" for an empty one.
    static QByteArray text(const ZelBnglGraphTypes &types, const ZelBnglGraph &pattern);
};
