#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcMolType.h"

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSet>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

class SdcMcp;
class SdcMol;
class ZelDbSqliteModel;

/// What a molecule has gained since it was stored in complexes and interactions, whose layouts show
/// it as it was then, and whose states say nothing of it.
namespace SdcNewParts {

/// The layouts of components that the layout by which a molecule is loaded does not know.
class Layouts
{
public:
    /// Of a molecule that is being made of its type; coordinates are relative to the origin.
    Layouts(SdcMol *mol, const SdcMolType *type, const QPointF &origin)
        : m_mol(mol), m_type(type), m_origin(origin)
    {
    }

    /// To its neighbour, which is placed already, the component stands as in the molecule's own
    /// drawing. Nothing when that does not show it.
    std::optional<SdcLayout> of(const QString &mcpPsiimId, int index);

private:
    SdcMol *m_mol;
    const SdcMolType *m_type;
    QPointF m_origin;
    std::optional<SdcLayoutChildren> m_components; // once it was needed
};

/// A place on a component's rim for a site that its layout does not mention: the nearest, clockwise
/// from where it would stand were all evenly spread, that touches none of the taken ones.
QRectF siteRect(
    const QRectF &mcpRect, qsizetype index, qsizetype count, const QList<QRectF> &taken);

/// What components and their sites cover.
QRectF coveredBy(const QList<SdcMcp *> &components);

/// Molecules that are drawn together, with the layouts that they were loaded by.
using Drawn = std::vector<std::pair<SdcMol *, const SdcLayout *>>;

/// Moves components that the layouts do not know off all others.
void settle(const Drawn &molecules);

/// The ids of a stored molecule's sites and feature states.
QSet<QString> storedParts(const QString &molPsiimId, ZelDbSqliteModel *db);

/// When the stored molecule has other sites or states than before, its stored complexes are well
/// defined no longer: their states say nothing of these. False when the database refuses.
bool unsetWellDefined(const QString &molPsiimId, const QSet<QString> &before, ZelDbSqliteModel *db);

} // namespace SdcNewParts
