#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

class ZelEllipseItemBst;

/// A binding site of a molecule component, numbered over its whole molecule.
///
/// The ellipse item is not owned. A site that dies leaves its bonds.
class ZELMODELSUPPORT_EXPORT SdcBst : public Sdc
{
    Q_OBJECT
public:
    explicit SdcBst(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcBst() override;

    /// The component set here, else the parent when that is a component.
    SdcMcp *getParentMcp();
    void setParentMcp(SdcMcp *mcp);
    void setZelEllipseItemBst(ZelEllipseItemBst *item);
    ZelEllipseItemBst *getZelEllipseItemBst() const;

    /// The effective status: Bound while a bond of the enclosing complex holds the site, else the
    /// status that was set.
    BindingStatusType getBindingStatus();
    void setBindingStatus(BindingStatusType status);
    /// The status that was set, also while a bond hides it.
    BindingStatusType getStoredBindingStatus() const { return m_bindingStatus; }
    void updateDisplayBstBindingStatus();
    bool isBound();
    bool isUnbound();
    bool isDontCareBindingStatus();
    QString getBindingStatusName();
    /// The name that a status is shown by; any unknown one is "Don't Care".
    static QString bindingStatusName(int status);
    bool isInCpxBinding();
    /// Tells editors whether they may change the status; setBindingStatus() itself never refuses.
    void setAllowChangeBindingStatus(bool allow) { m_allowChangeBindingStatus = allow; }
    bool isAllowChangeBindingStatus() const { return m_allowChangeBindingStatus; }
    void setAlwaysHighlight(bool always) { m_alwaysHighlight = always; }
    bool isAlwaysHighlighted() const { return m_alwaysHighlight; }
    /// True when both lie in one scene and their rims are at most the larger site's diameter apart.
    bool closeToBst(SdcBst *other);

    /// The running number of the site over its molecule, from 1; 0 outside a molecule.
    int getDisplayIndex();
    void updateBstLabel();
    QString getBstLabelText();
    /// A name that no other site of the molecule has: "<component>_site_<number>", counted on when
    /// taken. Without ignoreExistingName a name that the site has is kept.
    QString bstGetDefaultName(bool ignoreExistingName);

    /// The bonds that hold this site, of any kind, in no fixed order.
    QList<SdcBstBst *> getListSdcBstBst() const { return m_bonds; }

    void updatePosIndex() override;
    SdcMol *getParentSdcMol() override;
    QRectF getSdcSceneRectF() override;
    SdcBst *toSdcBst() override;
    bool isSdcBst() const override;
    bool isBstBindingStatusDisplayEnabled() override;
    ZelEllipseItem *getZelEllipseItem() override;
    using Sdc::setHighlight;
    void setHighlight(bool status, bool extendable) override;

private:
    friend class SdcBstBst;

    BindingStatusType m_bindingStatus = BindingStatusUnspecified;
    QPointer<SdcMcp> m_parentMcp;
    QList<SdcBstBst *> m_bonds; // kept by the bonds
    QPointer<ZelEllipseItemBst> m_zelEllipseItemBst;
    bool m_allowChangeBindingStatus = true;
    bool m_alwaysHighlight = false;
};
