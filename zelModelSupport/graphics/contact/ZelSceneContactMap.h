#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

#include <QGraphicsObject>
#include <QHash>
#include <QPainterPath>

#include <vector>

/// The scene that shows a whole model: every molecule once, as it is drawn, with its name, and a
/// line between each two sites that a molecule interaction joins.
///
/// The scene owns the molecules, and nothing of it can be edited; stored drawings stay as they are.
class ZELMODELSUPPORT_EXPORT ZelSceneContactMap : public ZelScene
{
    Q_OBJECT
public:
    /// Two sites that may bind, or one that may bind its like.
    struct Contact
    {
        QPointer<SdcBst> first;
        QPointer<SdcBst> second;
        QString mliPsiimId; ///< the first interaction that joins them
    };

    explicit ZelSceneContactMap(QObject *parent = nullptr);
    ~ZelSceneContactMap() override;

    /// Shows the model in place of what is shown, molecules in rows. What is missing is reported
    /// and the rest is shown. False when there is no molecule.
    bool load(ZelDbSqliteModel *db);

    /// In the order of creation; null where a host has destroyed one.
    const QList<QPointer<SdcMol>> &getListSdcMol() const { return m_mols; }
    const std::vector<Contact> &contacts() const { return m_contacts; }
    /// How many molecules and bonds of interactions are left out, since the model does not hold
    /// what they refer to.
    int getMissingCount() const { return m_missingCount; }

    // For those who place molecules: turn them, choose names, move them, draw.
    /// Finds places for the names anew: within their components where they fit, else beside them.
    void updateNames();
    /// What the names beside the molecule's ellipses cover.
    QList<QRectF> getNameRects(int mol) const;
    /// Moves a molecule with its names.
    void moveMol(int mol, const QPointF &delta);
    /// Draws names and lines anew for where the molecules are.
    void updateMap();

    /// The lines in the order of the contacts, in scene coordinates.
    const std::vector<QPainterPath> &paths() const { return m_paths; }
    /// All that is shown, with a margin.
    QRectF getMapRect() const;

private:
    struct Name
    {
        int mol = 0;
        QRectF rect;
        QString text;
        double pixels = 0.0;
        bool isBold = false;
        bool isInside = false; ///< of its component
        QColor color;
    };
    struct Drawn; // where everything of the molecules is

    void clearMap();
    void loadContacts(ZelDbSqliteModel *db);
    void moveToRows();
    void nameMol(int mol, const Drawn &drawn);
    void nameSites(const Drawn &drawn);
    void addName(const Name &name);
    std::vector<Name>::const_iterator firstName(int mol) const;
    void routeContacts(const Drawn &drawn);

    QList<QPointer<SdcMol>> m_mols;
    std::vector<Contact> m_contacts;
    QHash<QString, QString> m_copyNames; ///< by component: the name that copies share
    int m_missingCount = 0;
    std::vector<Name> m_names; // in the order of the molecules
    std::vector<Name> m_siteNames;
    std::vector<QPainterPath> m_paths;
    QPointer<QGraphicsObject> m_nameLayer;
    QPointer<QGraphicsObject> m_lineLayer;
};
