#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QDomElement;
class QSize;
class QStandardItem;
class SdcMcp;
class ZelDbSqliteModel;

/// Geometry of sets of components, readers of the layout XML, and what lists of records show:
/// pictures and descriptions.
namespace zgs {

/// Turns the components with their sites and features by an angle in degrees, clockwise on
/// screen, about the centre of their joint rectangle. With checkCollision a turn that would
/// collide is undone and the user told. False when nothing is turned in the end.
ZELMODELSUPPORT_EXPORT bool rotate(
    const QList<SdcMcp *> &listSdcMcp, double angle, bool checkCollision);

/// Mirrors the components about the vertical line through the centre of their joint rectangle;
/// otherwise as rotate().
ZELMODELSUPPORT_EXPORT bool flipY(const QList<SdcMcp *> &listSdcMcp, bool checkCollision);

/// Whether a component or one of its sites collides with something outside the set. Components
/// that are in no scene count as colliding.
ZELMODELSUPPORT_EXPORT bool collidingWithOtherEllipse(const QList<SdcMcp *> &listSdcMcp);

/// The rectangle in a "boundingRect" element, in scene units.
ZELMODELSUPPORT_EXPORT QRectF getBoundingRectFromElt(const QDomElement &domEltBoundingRect);

/// The only child element of that tag and position index; null when there is none or several.
ZELMODELSUPPORT_EXPORT QDomElement getEltChildSdcAtPosIndex(
    const QDomElement &domElt, const QString &childTag, const QString &posIndex);

/// Width in pixels of the operator sign between two pictures of this size.
ZELMODELSUPPORT_EXPORT int getOperatorWidth(const QSize &size);

/// The kinds of records that createItem() lists.
enum ListedKind : int {
    ListedMol = 2,
    ListedMli = 3,
    ListedCpx = 4,
    ListedTrn = 6,
    ListedCpa = 13,
    ListedCad = 14,
    ListedCai = 15,
    ListedPdn = 18
};

/// The list entry of a record, owned by the caller: its description, for a reaction with its
/// picture at that size of each species, and "<tag>;<psiimId>" as user data.
///
/// The note stands behind the details; that of an alias takes the place of its degradation rate.
/// With checkShow an alias that is set not to show is greyed out. The unnamed arguments are not
/// used. An unknown record is reported and gives an entry without name and picture.
ZELMODELSUPPORT_EXPORT QStandardItem *createItem(ZelDbSqliteModel *zelDbSqliteModel,
    const QSize &complexSize, const QString &, const QString &psiimId, int kind, bool withPrefix,
    const QString &note, bool checkShow, const QStringList &, QHash<QString, QPixmap> *psiim2Pixmap,
    const QStringList &);

/// The list entry of a degradation, in the same manner.
ZELMODELSUPPORT_EXPORT QStandardItem *createDegradationItem(ZelDbSqliteModel *zelDbSqliteModel,
    const QSize &complexSize, const QString &psiimId, bool withPrefix, const QString &note,
    QHash<QString, QPixmap> *psiim2Pixmap);

/// The kinds of getPixMapFromSdcPsiimId(); any other number means a molecule.
enum PictureKind : int { PictureMol = 0, PictureMli = 4, PictureCpx = 5, PictureCpa = 6 };

/// The picture of one record on a transparent ground; that of a molecule interaction is three
/// times as wide as the size. Null, with a report, when nothing can be shown of it.
///
/// Sizes are in pixels of a screen without scaling; where the application's screens have more,
/// the picture has as many and its device pixel ratio says so.
ZELMODELSUPPORT_EXPORT QPixmap getPixMapFromSdcPsiimId(
    const QString &psiimId, int kind, const QSize &size, ZelDbSqliteModel *zelDbSqliteModel);

// The pictures of reactions: those of their species at complexSize with signs between them. A
// species that cannot be shown is reported and its place stays empty; with none at all the picture
// is null.
//
// The cache belongs to the caller and may be null. The picture of an alias is kept under its
// psiimId, where the caller removes it after a change of the alias or its complex; the reaction's
// own is kept under a key that changes with those of its species.
ZELMODELSUPPORT_EXPORT QPixmap getPixMapForProduction(const QString &psiimId,
    const QSize &complexSize, ZelDbSqliteModel *zelDbSqliteModel,
    QHash<QString, QPixmap> *psiim2Pixmap);
ZELMODELSUPPORT_EXPORT QPixmap getPixMapForTransformation(const QString &psiimId,
    const QSize &complexSize, ZelDbSqliteModel *zelDbSqliteModel,
    QHash<QString, QPixmap> *psiim2Pixmap);
ZELMODELSUPPORT_EXPORT QPixmap getPixMapForAssociation(const QString &psiimId,
    const QSize &complexSize, ZelDbSqliteModel *zelDbSqliteModel,
    QHash<QString, QPixmap> *psiim2Pixmap);
ZELMODELSUPPORT_EXPORT QPixmap getPixMapForDissociation(const QString &psiimId,
    const QSize &complexSize, ZelDbSqliteModel *zelDbSqliteModel,
    QHash<QString, QPixmap> *psiim2Pixmap);
/// The species and an arrow to the empty set.
ZELMODELSUPPORT_EXPORT QPixmap getPixMapForDegradation(const QString &psiimId,
    const QSize &complexSize, ZelDbSqliteModel *zelDbSqliteModel,
    QHash<QString, QPixmap> *psiim2Pixmap);

} // namespace zgs
