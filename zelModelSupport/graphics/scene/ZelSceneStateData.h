#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/graphics/scene/ZelSceneStateIdentity.h"

#include <QBrush>
#include <QColor>
#include <QHash>
#include <QList>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QSharedData>
#include <QString>

#include <utility>
#include <vector>

class Sdc;
class SdcBst;
class SdcBstBst;
class SdcCpx;
class SdcMcp;
class SdcMol;

/// What a state of a scene consists of, and how the living parts of a scene are found.
namespace zel::state {

/// The side of a component on which its features stand: codes 0 and 1 are the same side.
struct SideCode
{
    int code = 0;
    friend bool operator==(SideCode a, SideCode b)
    {
        return (a.code == 0 ? 1 : a.code) == (b.code == 0 ? 1 : b.code);
    }
};

/// Without the id, which is the identity's.
using Properties = QHash<int, QString>;
using Backbones = std::vector<std::pair<int, int>>;

struct EllipseState
{
    QRectF rect;
    QPointF pos; // in the parent item's coordinates
    QPen pen;
    QBrush brush;
    bool operator==(const EllipseState &) const = default;
};

struct StickyState
{
    Identity identity; // of its feature
    QString name;
    Properties properties; // of its feature
    QColor color;
    int state = 0;
    bool half = false;
    bool active = true;
    QPen pen;
    QBrush brush;
    double opacity = 1.0;
    QRectF rect;
    QPointF pos;
    bool operator==(const StickyState &) const = default;
};

struct SiteState
{
    Identity identity;
    Properties properties;
    bool drawn = false;
    EllipseState ellipse;
    BindingStatusType status = BindingStatusUnspecified;
    bool allowChange = true;
    bool alwaysHighlighted = false;
    bool inSet = false;
    bool operator==(const SiteState &) const = default;
};

struct ComponentState
{
    Identity identity;
    Properties properties;
    bool drawn = false;
    EllipseState ellipse;
    SideCode tagDirectionCode;
    double tagSize = 0.0;
    double tagGap = 0.0;
    bool hasTagSet = false;
    bool hasSiteSet = false;
    QList<StickyState> stickies;
    std::vector<int> features; // the component's features in their order, as indices of stickies
    QList<SiteState> sites;
    bool operator==(const ComponentState &) const = default;
};

struct MoleculeState
{
    Identity identity;
    Properties properties;
    int complex = -1; // index among the complexes of an interaction; -1 outside of one
    QList<ComponentState> components;
    Backbones backbones; // ascending pairs of indices of components
    bool operator==(const MoleculeState &) const = default;
};

/// One of the complexes of an interaction.
struct ComplexState
{
    Identity identity;
    Properties properties;
    bool operator==(const ComplexState &) const = default;
};

/// The complex or interaction that the scene edits. There is none before a scene has made it.
struct OwnState
{
    Identity identity;
    Properties properties;
    bool exists = false;
};
bool operator==(const OwnState &a, const OwnState &b);

struct BondState
{
    std::pair<int, int> sites; // counted over all molecules
    bool ofInteraction = false;
    Identity identity;
    Properties properties;
    bool operator==(const BondState &) const = default;
};

/// The complex or interaction that the scene edits; null for another one.
Sdc *ownOf(ZelScene *scene);
/// The molecules of a scene: those of its data component, else those that it shows.
QList<SdcMol *> moleculesOf(ZelScene *scene);
QList<SdcBst *> sitesOf(const QList<SdcMol *> &molecules);
/// The complexes of the interaction that the scene shows.
QList<SdcCpx *> complexesOf(ZelScene *scene);
/// The bonds of the complexes to which the molecules belong, then those of the interaction.
QList<SdcBstBst *> bondsOf(ZelScene *scene, const QList<SdcMol *> &molecules);
/// The backbone lines as they are drawn now.
Backbones backbonesOf(const QList<SdcMcp *> &components);

} // namespace zel::state

class ZelSceneStateData : public QSharedData
{
public:
    zel::state::OwnState own;
    QList<zel::state::ComplexState> complexes;
    QList<zel::state::MoleculeState> molecules;
    QList<zel::state::BondState> bonds;
};
