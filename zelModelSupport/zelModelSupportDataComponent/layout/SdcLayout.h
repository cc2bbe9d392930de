#pragma once

#include <QList>
#include <QMultiHash>
#include <QRectF>
#include <QString>

#include <optional>
#include <utility>

class QDomElement;

/// What the layout says of one component: the readable part of its element.
///
/// Layouts come from files: numbers are checked, nesting deeper than any component's is left out.
struct SdcLayout
{
    /// SdcType::Cpx, Mol, Mcp or Bst; None for an empty layout. Other elements are left out.
    int sdcType = -1;
    QString psiimId;
    int posIndex = -1; ///< -1 when there is none
    /// Relative to the parent's; only when it can be drawn.
    std::optional<QRectF> rect;
    /// The top left corner as written, whatever the extent; (0, 0) when it is unusable.
    QPointF topLeft;
    int tagDirectionCode = 0;
    /// Side and gap of the stickies, when both are usable.
    std::optional<std::pair<double, double>> tagSizeAndGap;
    QList<SdcLayout> children;

    bool isNull() const { return sdcType < 0; }

    static SdcLayout fromElement(const QDomElement &element);
    /// The first element of that type below the root; null when there is none or, with the reason
    /// in error, when the text is no well-formed XML.
    static SdcLayout fromXml(const QString &xml, int sdcType, QString *error);
};

/// The child layouts of one type, found by position index; the order breaks ties. The parent must
/// outlive it.
class SdcLayoutChildren
{
public:
    SdcLayoutChildren(const SdcLayout &parent, int sdcType);

    /// The one at that position that carries the id, else the first there, else the one that
    /// stands at that place among its siblings, else an empty layout.
    const SdcLayout &find(const QString &psiimId, int index) const;

private:
    const QList<SdcLayout> *m_regular = nullptr; // when each stands at its position
    QMultiHash<int, const SdcLayout *> m_byPosIndex;
    QList<const SdcLayout *> m_inOrder;
};
