#pragma once

#include "complex/CpxStage.h"

#include "zelDb/ZelDbTypes.h"

#include <QString>

#include <functional>

class Sdc;
class SdcBstBstCxi;
class SdcBstBstMli;
class SdcCxi;
class SdcMli;

/// The model of CpxStage with interactions and aliases.
struct InteractionStage : CpxStage
{
    /// An interaction of two molecule types, by the same letters, with its molecules drawn.
    SdcMli *mli(const QString &types, ZelScene *scene = nullptr);
    /// The site at an index within a child, which may be a molecule or a complex.
    static SdcBst *site(Sdc *parent, int child, int index);
    /// A bond that nothing owns but the interaction as an object.
    SdcBstBstMli *mliBond(SdcMli *mli, SdcBst *first, SdcBst *second);

    /// Stores a complex with its first molecule's first feature in a state; answers the alias.
    QString alias(
        const QString &types, const QList<Bond> &bonds = {}, int state = ComponentStateDontCare);
    /// An interaction of two stored aliases, each loaded.
    SdcCxi *cxi(const QString &alias1, const QString &alias2);
    /// A bond between two of its sites, with its complexes, added to it.
    SdcBstBstCxi *cxiBond(SdcCxi *cxi, SdcBst *first, SdcBst *second);

    /// All records of interactions and reactions, as lines.
    QStringList records() const;
    /// What was written to the debug output, without the quotes around ids.
    static QString debugText();
    /// What is wrong with the way in which a component refuses to be saved; nothing when it says
    /// so in one line of its saveToDb(), the first component has the reason, and it changes neither
    /// itself, its bond nor the database.
    QString faultOfRefusal(const QList<Sdc *> &sdcs, const std::function<bool()> &save,
        const QString &complaint, bool closeFirst = false);
};
