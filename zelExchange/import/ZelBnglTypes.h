#pragma once

#include "zelExchange/bngl/ZelBnglLexer.h"
#include "zelExchange/bngl/ZelBnglModel.h"

#include <QHash>

#include <vector>

/// A component of a molecule type. Components of one name are copies of each other: they have the
/// same states, and which of them is which does not matter.
struct ZelBnglTypeSite
{
    quint32 name = ZelBnglNames::None;
    QString shortName; ///< unique in the molecule: "b", "b_2", "b_3"
    std::vector<quint32> states; ///< names
    int group = 0; ///< index of the first copy
    bool canBind = false;
    QString mcpPsiimId;
    QString bstPsiimId; ///< empty when it cannot bind
};

struct ZelBnglType
{
    quint32 name = ZelBnglNames::None;
    quint32 offset = 0; ///< of its declaration, or of its first use
    bool isDeclared = false;
    std::vector<ZelBnglTypeSite> sites;
    QString psiimId;

    /// Index of the first component of that name, -1 without one.
    int findGroup(quint32 name) const;
};

/// The molecule types of a file: the declared ones, and those that patterns use without declaring
/// them. The order of undeclared types and of their components does not depend on how the file
/// orders its patterns.
class ZelBnglTypes
{
public:
    /// Most components of a molecule, and most components and features together: what is drawn.
    static constexpr int MaxSites = 200;
    static constexpr int MaxParts = 1000;

    explicit ZelBnglTypes(const ZelBnglModel &model);

    /// Why the types cannot be used; without a message when they can.
    const ZelBnglFault &fault() const { return m_fault; }

    /// -1 for a name that is no molecule's.
    int find(quint32 name) const { return m_index.value(name, -1); }

    std::vector<ZelBnglType> types;

private:
    bool declare(const ZelBnglModel &model);
    bool infer(const ZelBnglModel &model);
    void nameSites(const ZelBnglModel &model);
    void findStates(const ZelBnglModel &model);
    void addUse(const ZelBnglModel &model, const ZelBnglMolecule &molecule);
    bool checkParts(const ZelBnglModel &model, const ZelBnglType &type, size_t parts, size_t most);

    QHash<quint32, int> m_index; ///< by name
    ZelBnglFault m_fault;
};
