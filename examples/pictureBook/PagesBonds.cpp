#include "Pages.h"
#include "Stage.h"

#include <zelModelSupport/graphics/ZelEllipseItemBst.h>
#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelLineItemBstBstCpx.h>
#include <zelModelSupport/graphics/ZelLineItemBstBstCxi.h>
#include <zelModelSupport/graphics/ZelLineItemBstBstMli.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBst.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

namespace {

const QColor blue("#cfe3f5");
const QColor rose("#f7d9e3");

/// Two molecules whose sites lie gap units apart (overlap when negative), joined by a bond.
template <typename Line, typename Bond>
ZelLineItemBstBst *drawBond(Stage &stage, double gap, double rise = 0.0)
{
    const double shift = 20.0 + (12.0 + gap) / 2.0;
    SdcMcp *const a = stage.addMcp({-shift, rise / 2.0}, {40, 32}, blue);
    SdcMcp *const b = stage.addMcp({shift, -rise / 2.0}, {40, 32}, rose);
    return stage.addBond<Line, Bond>(stage.addBst(a, 0.0), stage.addBst(b, 180.0));
}

template <typename Line, typename Bond>
void addKind(Page &page, const QString &kind)
{
    page.figures +=
        Figure{kind + ", apart", [](Stage &stage) { drawBond<Line, Bond>(stage, 26.0); }};
    page.figures +=
        Figure{kind + ", slanting", [](Stage &stage) { drawBond<Line, Bond>(stage, 12.0, 40.0); }};
    page.figures +=
        Figure{kind + ", close", [](Stage &stage) { drawBond<Line, Bond>(stage, 4.0); }};
    page.figures += Figure{
        kind + ", sites that overlap", [](Stage &stage) { drawBond<Line, Bond>(stage, -5.0); }};
}

Page bondsPage()
{
    Page page{"bonds", "Bonds between binding sites",
        "A bond runs from rim to rim on the straight line between the centres of its sites. Bonds "
        "of complexes are blue, those of interactions black.",
        4, 1.7, {}};
    addKind<ZelLineItemBstBstMli, SdcBstBstMli>(page, "Molecule interaction");
    addKind<ZelLineItemBstBstCpx, SdcBstBstCpx>(page, "Complex");
    addKind<ZelLineItemBstBstCxi, SdcBstBstCxi>(page, "Complex interaction");
    page.figures += Figure{
        "Highlighted bond of a molecule interaction", [](Stage &stage) {
            drawBond<ZelLineItemBstBstMli, SdcBstBstMli>(stage, 26.0)->setHighlight(true, false);
        }};
    page.figures += Figure{
        "Highlighted bond of a complex", [](Stage &stage) {
            drawBond<ZelLineItemBstBstCpx, SdcBstBstCpx>(stage, 26.0)->setHighlight(true, false);
        }};
    page.figures += Figure{
        "Highlighted with its sites", [](Stage &stage) {
            drawBond<ZelLineItemBstBstCxi, SdcBstBstCxi>(stage, 26.0)->setHighlight(true, true);
        }};
    page.figures += Figure{"A bond over another component", [](Stage &stage) {
                               drawBond<ZelLineItemBstBstCpx, SdcBstBstCpx>(stage, 40.0);
                               stage.addMcp({0, 4}, {24, 20});
                           }};
    return page;
}

Page backbonesPage()
{
    Page page{"backbones", "Lines between the components of a molecule",
        "A dotted line joins neighbours from rim to rim. Nothing is drawn where they overlap.", 3,
        2.2, {}};
    const auto pair = [&page](const QString &caption, const QPointF &offset, const QSizeF &second) {
        page.figures += Figure{caption, [=](Stage &stage) {
                                   SdcMol *const mol = stage.addMol("M", blue);
                                   SdcMcp *const a = stage.addMcp(mol, {}, {46, 32});
                                   SdcMcp *const b = stage.addMcp(mol, offset, second);
                                   stage.join({a, b});
                               }};
    };
    pair("As close as they may be", {47.1, 0}, {46, 32});
    pair("A usual distance", {58, 0}, {46, 32});
    pair("As far as they are placed", {66, 0}, {46, 32});
    pair("Slanting", {52, 40}, {46, 32});
    pair("Of different size", {52, -14}, {24, 18});
    pair("Overlapping", {30, 12}, {46, 32});
    page.figures +=
        Figure{"A chain", [](Stage &stage) {
                   SdcMol *const mol = stage.addMol("M", blue);
                   QList<SdcMcp *> chain;
                   for (int i = 0; i < 4; ++i)
                       chain += stage.addMcp(mol, {i * 34.0, i % 2 ? 22.0 : 0.0}, {28, 22});
                   stage.join(chain);
               }};
    page.figures +=
        Figure{"A branch", [](Stage &stage) {
                   SdcMol *const mol = stage.addMol("M", blue);
                   SdcMcp *const hub = stage.addMcp(mol, {}, {34, 34});
                   for (const QPointF &at : {QPointF(-42, -18), QPointF(42, -18), QPointF(0, 42)})
                       stage.join({hub, stage.addMcp(mol, at, {28, 22})});
               }};
    page.figures += Figure{"A ring", [](Stage &stage) {
                               SdcMol *const mol = stage.addMol("M", blue);
                               QList<SdcMcp *> ring;
                               for (const QPointF &at : {QPointF(-24, -20), QPointF(24, -20),
                                        QPointF(24, 20), QPointF(-24, 20)})
                                   ring += stage.addMcp(mol, at, {32, 24});
                               ring += ring.first();
                               stage.join(ring);
                           }};
    return page;
}

} // namespace

QList<Page> bondPages()
{
    return {bondsPage(), backbonesPage()};
}
