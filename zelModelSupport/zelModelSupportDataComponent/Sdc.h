#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/ZelModelSupportExport.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QStandardItem>
#include <QString>
#include <QStringView>
#include <QTransform>

#include <optional>
#include <utility>
#include <vector>

class QDomDocument;
class QDomElement;
class QGraphicsItem;
class QGraphicsScene;
class SdcBst;
class SdcBstBst;
class SdcBstBstCpx;
class SdcBstBstCxi;
class SdcBstBstMli;
class SdcBstSet;
class SdcCel;
class SdcCpx;
class SdcCxi;
class SdcMcp;
class SdcMcpTag;
class SdcMcpTagSet;
class SdcMli;
class SdcMol;
class SdcTrn;
class ZelDbSqliteModel;
class ZelEllipseItem;

/// Type codes of data components, as written to the graphics info.
namespace SdcType {
enum Code : int {
    None = -1,
    Bst = 0,
    Mcp = 1,
    Mol = 2,
    Mli = 3,
    Cpx = 4,
    Cxi = 5,
    Cel = 7,
    McpTag = 19,
    McpTagSet = 20,
    BstSet = 21
};
}

/// Base of every data component: a QObject, a row of an item model, and a node of the model's tree.
///
/// Children that are rows of this item are owned by it; other children and bonds are not. A
/// component never deletes the graphics items that draw it. Children lists may hold null.
class ZELMODELSUPPORT_EXPORT Sdc : public QObject, public QStandardItem
{
    Q_OBJECT
public:
    /// The database model is not owned and may be null.
    explicit Sdc(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~Sdc() override;

    /// Position among the parent's children; -1 without a parent or when not found there.
    virtual int getPosIndex() const;
    virtual Sdc *getParentSdc();
    virtual Sdc *getTopParentSdc();
    virtual QString getProperty(int key) const;
    virtual int getSdcType() const;
    virtual bool isHighlighted();
    /// Stores the value; emits propertyChanged() and then signal_changed() when it differs.
    virtual void setProperty(int key, const QString &value);
    virtual void clearProperty(int key);
    virtual QRectF getBoundingRect(const QPointF &pos);
    virtual QList<Sdc *> getListSdcChildren();
    /// Appends the child; with addToItemModel it becomes this item's last row and is owned by it.
    virtual void addSdcChild(Sdc *child, bool addToItemModel);
    /// Takes the child out of the list and out of the rows; the caller owns it afterwards. The
    /// child keeps its parent pointer.
    virtual void removeSdcChild(Sdc *child);
    virtual void setParentSdc(Sdc *parentSdc);
    virtual bool hasSdcChild() const;
    virtual void removeSelfFromParent();
    virtual QString getPsiimId() const;
    virtual void updatePosIndex();
    virtual void updateStandardItemText();
    /// Null when the index is out of range.
    virtual Sdc *getChildSdcAtIndex(int index);
    /// The n-th child (from 1) that carries the id; null when there are fewer.
    virtual Sdc *getChildSdcFromPsiimId(const QString &psiimId, int n);

    virtual QList<SdcMcp *> getListSdcMcp();
    virtual QList<SdcBst *> getListSdcBst();
    virtual QList<SdcMol *> getListSdcMol();
    virtual QList<SdcCpx *> getListSdcCpx();
    virtual SdcCpx *getParentSdcCpx();
    virtual SdcMol *getParentSdcMol();
    virtual QString getSdcName() const;
    virtual QString getDisplayName(bool withName, bool withIndex) const;
    /// The layout XML of this component and its subtree, in scene units.
    virtual QString getGraphicsInfo();
    /// Writes this component's element into parentElement; rectangles are relative to refPos.
    virtual void recordGraphicsInfoToDomDoc(
        QDomDocument &doc, QDomElement &parentElement, const QPointF &refPos);
    virtual QPointF getSdcScenePos();
    virtual QRectF getSdcSceneRectF();
    virtual void highlightChildSdc(Sdc *target);
    /// Destroys the child rows and empties properties. For components that stand alone: one that
    /// sits in a parent's list would stay listed there without knowing its parent.
    virtual void reset();
    /// True when there is no child other than null.
    virtual bool isEmpty();

    /// A graphics item that stands for the whole component; null: no class has one yet.
    virtual QGraphicsItem *getGroupGraphicsItem();
    /// Turns the drawing by an angle in degrees, clockwise on screen, about its centre.
    virtual void rotateSdc(double angle);
    virtual void updateHighlight();
    virtual bool isConsistentToDb();
    virtual Sdc *toSdc();

    virtual SdcBst *toSdcBst();
    virtual bool isSdcBst() const;
    virtual SdcMcp *toSdcMcp();
    virtual bool isSdcMcp() const;
    virtual SdcMol *toSdcMol();
    virtual bool isSdcMol() const;
    virtual SdcMli *toSdcMli();
    virtual bool isSdcMli() const;
    virtual SdcCpx *toSdcCpx();
    virtual bool isSdcCpx() const;
    virtual SdcCxi *toSdcCxi();
    virtual bool isSdcCxi() const;
    virtual SdcTrn *toSdcTrn();
    virtual bool isSdcTrn() const;
    virtual SdcBstBst *toSdcBstBst();
    virtual bool isSdcBstBst() const;
    virtual SdcBstBstMli *toSdcBstBstMli();
    virtual bool isSdcBstBstMli() const;
    virtual SdcBstBstCpx *toSdcBstBstCpx();
    virtual bool isSdcBstBstCpx() const;
    virtual SdcBstBstCxi *toSdcBstBstCxi();
    virtual bool isSdcBstBstCxi() const;
    virtual SdcCel *toSdcCel(); ///< for a host's own class of type code Cel
    virtual bool isSdcCel() const;
    virtual SdcMcpTag *toSdcMcpTag();
    virtual bool isSdcMcpTag() const;
    virtual SdcMcpTagSet *toSdcMcpTagSet();
    virtual bool isSdcMcpTagSet() const;
    virtual SdcBstSet *toSdcBstSet();
    virtual bool isSdcBstSet() const;

    /// Emits signal_changed() here and on every ancestor.
    virtual void setChanged();
    /// The scene of the first component's ellipse item; null when that has none.
    virtual QGraphicsScene *getScene();
    virtual void setBstBindingStatusEnabled(bool enabled);
    virtual bool isBstBindingStatusDisplayEnabled();
    virtual ZelEllipseItem *getZelEllipseItem();
    virtual void setAllMcpFeatureValue(ComponentStateType value);

public slots:
    virtual void setHighlight(bool status, bool extendable);

public:
    virtual void setSdcType(int type);
    /// Stores the name and empties the short name: set the name first, the short name after it.
    virtual void setSdcName(const QString &name);
    /// Empty, with a debug line, for kinds that the layout XML does not hold.
    virtual QString getDomXmlTag() const;

    int getPrevIndex() const { return m_prevIndex; }
    void setPrevIndex(int index) { m_prevIndex = index; }
    void updateCurrentIndexToPrevIndex();
    /// Swaps two children in the list; rows and texts stay as they are.
    void switchChildrenBetween2Indices(int i, int j);
    void notifyChildSdcAdded(Sdc *child);
    QTransform getTransform() const { return m_transform; }
    void setTransform(const QTransform &transform) { m_transform = transform; }
    void multiplyTransformBy(const QTransform &transform) { m_transform *= transform; }
    ZelDbSqliteModel *getZelDbSqliteModel() const;
    void setZelDbSqliteModel(ZelDbSqliteModel *model);
    QHash<int, QString> getProperties() const;
    /// Why the last save of this component was refused, as a sentence for the user; empty after one
    /// that was not, and before the first.
    QString getRefusal() const { return m_refusal; }
    /// For the saves; kept as toSentence() makes it.
    void setRefusal(const QString &reason) { m_refusal = toSentence(reason); }
    /// "it needs a name" as "It needs a name."
    static QString toSentence(const QString &reason);
    /// The id and any property without a copy: valid until properties change.
    QStringView getPsiimIdView() const
    {
        return m_psiimId ? QStringView(*m_psiimId) : QStringView();
    }
    QStringView getPropertyView(int key) const;
    /// The children without a copy: valid until they change.
    const QList<Sdc *> &sdcChildren() const { return m_children; }
    /// Whether the property was ever set, be it to an empty text.
    bool hasProperty(int key) const;
    void clearProperties();
    /// Sets properties of a component that was just made: nobody can listen yet, nothing is said.
    void initProperties(const QList<std::pair<int, QString>> &properties);
    /// Kind 0: some feature is "Don't Care"; 1: some component is negated; 2: either.
    bool hasTagState(int kind);
    bool hasTagDontCare();
    bool hasTagNegation();
    bool hasTagDontCareOrNegation();
    void setAllMcpStateType(int type, bool half);
    void setAllBstStatus(BindingStatusType status);
    /// Copies the properties to target and on to the children, paired by index while both exist
    /// and are of one type.
    void copyPropertiesTo(Sdc *target);

    static QList<SdcBstBst *> toListSdcBstBst(const QList<SdcBstBstCpx *> &list);
    /// Ascending psiimId; equal ids keep their order.
    static QList<Sdc *> getSortedSdcListByPsiimId(const QList<Sdc *> &list);
    static QList<SdcBst *> getSortedSdcBstListByPsiimId(const QList<SdcBst *> &list);

signals:
    void sdcBstRemoved(SdcBst *sdcBst);
    void sdcMcpRemoved(SdcMcp *sdcMcp);
    void childSdcAdded(Sdc *sdc);
    void propertyChanged(int key, QString value);
    void signal_changed();

public slots:
    void setHighlight(bool status);

protected:
    /// For the concrete kinds: type code and name from the start.
    Sdc(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent, int type, const QString &name);

    /// Empties the list without touching rows, texts or the children.
    void clearChildrenList();
    /// Replaces the order of the list; rows and texts stay as they are.
    void setChildrenList(const QList<Sdc *> &list);
    /// For a child that has left the list: its parent is again one that still lists it, else none.
    void releaseChild(Sdc *child);

private:
    friend class SdcCpxReadAhead;

    void childListChangedFrom(int index);
    void leaveItemParent();
    void forgetDyingChild(Sdc *child);
    void tidyAfterDeath();
    void removeEmptyRows();

    std::vector<std::pair<int, QString>> m_properties; // all but the id
    QList<QPointer<Sdc>> m_otherParents; // former parents whose lists hold this component still
    bool m_highlighted = false;
    bool m_hasEmptyRows = false;
    bool m_tidyPending = false;
    bool m_dying = false;
    QPointer<ZelDbSqliteModel> m_zelDbSqliteModel;
    int m_sdcType = SdcType::None;
    QString m_sdcName;
    QString m_refusal;
    QTransform m_transform;
    int m_prevIndex = -1;
    mutable int m_indexHint = -1; // where the parent's list held this component when last asked
    // What walks through many components read lies together, next to what the kinds add.
    QPointer<Sdc> m_parentSdc;
    std::optional<QString> m_psiimId; // none until it is set
    QList<Sdc *> m_children;
};
