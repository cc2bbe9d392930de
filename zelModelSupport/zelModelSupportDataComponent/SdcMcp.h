#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

class ZelEllipseItemMcp;
class ZelRectItemMcpSticky;

/// A molecule component (domain): features, binding sites and the state code of its features.
///
/// Its children are its binding sites. The ellipse item is not owned.
class ZELMODELSUPPORT_EXPORT SdcMcp : public Sdc
{
    Q_OBJECT
public:
    explicit SdcMcp(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcMcp() override;

    void setZelEllipseItemMcp(ZelEllipseItemMcp *item);
    ZelEllipseItemMcp *getZelEllipseItemMcp() const;

    /// The side of the ellipse on which the stickies lie: 0 and 1 alike, 1 to 4 in rotation order.
    int getTagDirectionCode() const { return m_tagDirectionCode; }
    void setTagDirectionCode(int code);
    /// Side of a sticky, scene units.
    double getTagSize() const { return m_tagSize; }
    void setTagSize(double size);
    /// Gap between stickies, scene units.
    double getTagGap() const { return m_tagGap; }
    void setTagGap(double gap);
    /// Type 0 steps to the next side, 1 to the one before, 2 mirrors.
    void changeTagDirectionCode(int directionChageType);

    /// Sets are not owned; a set that dies, or becomes another component's, leaves its component.
    SdcBstSet *getSdcBstSet() const;
    void setSdcBstSet(SdcBstSet *set);
    void removeSdcBstSet();
    SdcMcpTagSet *getSdcMcpTagSet() const;
    void setSdcMcpTagSet(SdcMcpTagSet *set);
    void removeSdcMcpTagSet();
    void addSdcBst(SdcBst *sdcBst);
    /// Takes the site out, unowned afterwards, and emits sdcBstRemoved().
    void removeSdcBst(SdcBst *sdcBst);
    /// Lists the feature, unowned, and does not become its component; one that dies leaves.
    void addSdcTag(SdcMcpTag *tag);
    void removeSdcTag(SdcMcpTag *tag);
    QList<SdcMcpTag *> getListSdcMcpTags() const;
    /// True when the trimmed name is not empty and no tag other than except carries it.
    bool isUniqueTag(const QString &name, SdcMcpTag *except) const;
    /// Makes a feature with its sticky and lays the row out; needs an ellipse item.
    void addTag(const QString &name, const QString &colorName);
    /// As above; with layout false the caller lays the row out when all features are there.
    SdcMcpTag *addTag(const QString &name, const QString &colorName, bool layout);

    QList<ZelRectItemMcpSticky *> getListSticky() const;
    void setAllStickyState(int state);
    /// True when two or more features are On or Off.
    bool hasMultipleTagsNotDontCare() const;

    /// Feature names joined with ";", Off followed by "(-)", Don't Care by "(0)".
    QString getMcpStateCode() const;
    void updateStatePropertyFromSticky();
    /// As above, by who knows the names of the stored features: stickies of others are reported.
    void updateStatePropertyFromSticky(const QStringList &storedNames);
    /// Makes the stickies those of the stored component type, in stored order, all On.
    void updateStickyFromDbAsActivated();
    void updateMcpNot();

    QList<SdcMcp *> getListNeighborSdcMcps() const;
    int getNumOfNeigbhors() const;
    /// Angle in radians, counter-clockwise on screen, from this item to each neighbour and site.
    QHash<Sdc *, double> getHashSdc2AngleAroundThis();

    SdcMol *getParentSdcMol() override;
    QRectF getSdcSceneRectF() override;
    bool isEmpty() override;
    void updateHighlight() override;
    SdcMcp *toSdcMcp() override;
    bool isSdcMcp() const override;
    ZelEllipseItem *getZelEllipseItem() override;
    void setAllMcpFeatureValue(ComponentStateType value) override;
    using Sdc::setHighlight;
    void setHighlight(bool status, bool extendable) override;

private:
    QPointer<ZelEllipseItemMcp> m_zelEllipseItemMcp;
    int m_tagDirectionCode = 0;
    double m_tagSize = 8.0;
    double m_tagGap = 2.0;
    QPointer<SdcBstSet> m_bstSet;
    QPointer<SdcMcpTagSet> m_tagSet;
    QList<QPointer<SdcMcpTag>> m_tags; // one that is only listed dies without leaving the list
};
