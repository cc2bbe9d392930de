#include "Pages.h"
#include "Stage.h"

#include <zelModelSupport/graphics/ZelEllipseItemBst.h>
#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelLineItemBstBstCpx.h>
#include <zelModelSupport/graphics/ZelRectItemMcpSticky.h>
#include <zelModelSupport/graphics/ZelRectItemWithText.h>
#include <zelModelSupport/graphics/ZelTextItemLabelCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBst.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

#include <initializer_list>

namespace {

const QColor blue("#cfe3f5");
const QColor cream("#fdf0cf");
const QColor rose("#f7d9e3");
const QColor green("#d8eecb");
const QColor lilac("#e3dcf3");
const QColor orange("#d95f02");

struct Receptor
{
    SdcMol *mol;
    SdcBst *ligandSite;
    SdcBst *dimerSite;
    SdcBst *kinaseSite;
    SdcBst *adaptorSite;
};

/// A receptor that stands upright; side is -1 for the left one of a pair and 1 for the right one.
Receptor addReceptor(Stage &stage, double x, double side, const QColor &color)
{
    Receptor r{stage.addMol("Receptor", color), nullptr, nullptr, nullptr, nullptr};
    const auto angle = [side](double degrees) { return side > 0 ? degrees : 180.0 - degrees; };
    SdcMcp *const outer = stage.addMcp(r.mol, {x, -104}, {80, 64});
    SdcMcp *const middle = stage.addMcp(r.mol, {x, -36}, {30, 56});
    SdcMcp *const kinase = stage.addMcp(r.mol, {x, 36}, {80, 64});
    SdcMcp *const tail = stage.addMcp(r.mol, {x, 106}, {92, 48});
    stage.join({outer, middle, kinase, tail});
    r.ligandSite = stage.addBst(outer, angle(45));
    r.dimerSite = stage.addBst(outer, angle(180));
    r.kinaseSite = stage.addBst(kinase, angle(180));
    stage.addBst(kinase, angle(0));
    r.adaptorSite = stage.addBst(tail, angle(-25));
    stage.addFeature(kinase, "active", QColor("#1b9e77"));
    const int states[] = {ComponentStateOn, ComponentStateOn, ComponentStateOff};
    for (int i = 0; i < 3; ++i)
        stage.addFeature(tail, QString("Y%1").arg(i + 1), orange, states[i]);
    for (SdcMcp *mcp : {kinase, tail}) {
        mcp->setTagSize(12);
        mcp->setTagGap(6);
        itemOf(mcp)->updateLayoutOfListStateSticky(false);
    }
    return r;
}

/// Two receptors with their ligands, and the chain of adaptors at one tail.
void drawSignalling(Stage &stage)
{
    using Line = ZelLineItemBstBstCpx;
    using Bond = SdcBstBstCpx;
    const Receptor left = addReceptor(stage, -56, -1, blue);
    const Receptor right = addReceptor(stage, 56, 1, blue);
    QList<SdcMol *> mols{left.mol, right.mol};
    QList<Bond *> bonds;
    const auto bind = [&](SdcBst *a, SdcBst *b) {
        bonds += stage.addBond<Line, Bond>(a, b)->getSdcBstBstCpx();
    };
    bind(left.dimerSite, right.dimerSite);
    bind(left.kinaseSite, right.kinaseSite);
    for (const Receptor &receptor : {left, right}) {
        const double side = receptor.mol == left.mol ? -1.0 : 1.0;
        SdcMol *const ligand = stage.addMol("Ligand", rose);
        SdcMcp *const mcp = stage.addMcp(ligand, {side * 126, -164}, {52, 40});
        bind(receptor.ligandSite, stage.addBst(mcp, side > 0 ? 225 : -45));
        mols += ligand;
    }

    SdcMol *const adaptor = stage.addMol("Adaptor", cream);
    SdcMcp *const sh3n = stage.addMcp(adaptor, {170, 176}, {44, 36});
    SdcMcp *const sh2 = stage.addMcp(adaptor, {170, 124}, {54, 42});
    SdcMcp *const sh3c = stage.addMcp(adaptor, {226, 152}, {44, 36});
    stage.join({sh3n, sh2, sh3c});
    bind(right.adaptorSite, stage.addBst(sh2, 180));
    stage.addBst(sh3n, 200);
    stage.addBst(sh3c, -60);
    SdcBst *const c = stage.addBst(sh3c, 40);

    SdcMol *const exchanger = stage.addMol("Exchanger", green);
    SdcMcp *const proline = stage.addMcp(exchanger, {272, 96}, {70, 42});
    SdcMcp *const cdc = stage.addMcp(exchanger, {272, 38}, {72, 52});
    stage.join({proline, cdc});
    bind(c, stage.addBst(proline, -110));
    SdcBst *const ras = stage.addBst(cdc, 180);
    stage.addFeature(cdc, "S1", orange, ComponentStateDontCare);

    SdcMol *const gtpase = stage.addMol("GTPase", lilac);
    SdcMcp *const g = stage.addMcp(gtpase, {170, 38}, {70, 56});
    bind(ras, stage.addBst(g, 0));
    stage.addFeature(g, "GTP", QColor("#7570b3"));
    for (SdcMcp *mcp : {cdc, g}) {
        mcp->setTagSize(12);
        itemOf(mcp)->updateLayoutOfListStateSticky(false);
    }

    SdcMol *const scaffold = stage.addMol("Scaffold", cream);
    SdcMcp *const ptb = stage.addMcp(scaffold, {-170, 124}, {54, 42});
    SdcMcp *const ch = stage.addMcp(scaffold, {-226, 160}, {50, 36});
    stage.join({ptb, ch});
    bind(left.adaptorSite, stage.addBst(ptb, 0));
    stage.addFeature(ch, "Y1", orange);
    stage.addFeature(ch, "Y2", orange, ComponentStateOff);
    stage.addBst(ch, 150);

    SdcCpx *const cpx = stage.addCpx(
        "Active receptor", mols + QList<SdcMol *>{adaptor, exchanger, gtpase, scaffold});
    for (Bond *bond : std::as_const(bonds))
        cpx->addSdcBstBstCpx(bond);
}

Page coverPage()
{
    Page page{"cover", "The pictures of ZelModelSupport",
        "Each page shows one rule of the drawings.", 1, 1.5, {}};
    page.figures +=
        Figure{"An active pair of receptors in the membrane, with ligands and the chain "
               "that they have recruited",
            [](Stage &stage) {
                stage.addBand({-262, -62, 582, 52}, QColor("#f3f1ec"));
                drawSignalling(stage);
                const struct
                {
                    const char *name;
                    QPointF at;
                } names[] = {{"Ligand", {-126, -164}}, {"Ligand", {126, -164}},
                    {"Receptor", {-56, -104}}, {"Receptor", {56, -104}}, {"Scaffold", {-172, 124}},
                    {"Adaptor", {173, 124}}, {"Exchanger", {273, 95}}, {"GTPase", {170, 23}},
                    {"outside", {-238, -80}}, {"membrane", {-232, -36}}, {"inside", {-242, 8}}};
                for (const auto &name : names)
                    stage.addText(name.at, name.name);
            }};
    return page;
}

SdcMol *drawReceptor(Stage &stage, const QColor &color, bool upright)
{
    SdcMol *const mol = stage.addMol("Receptor", color);
    const auto at = [upright](
                        double along) { return upright ? QPointF(0, along) : QPointF(along, 0); };
    SdcMcp *const outer = stage.addMcp(mol, at(-88), {84, 66});
    SdcMcp *const middle = stage.addMcp(mol, at(0), upright ? QSizeF(36, 64) : QSizeF(64, 36));
    SdcMcp *const kinase = stage.addMcp(mol, at(94), {98, 72});
    stage.join({outer, middle, kinase});
    stage.addBst(outer, upright ? 90 : 180);
    stage.addBst(outer, upright ? 180 : 90);
    stage.addBst(middle, upright ? 0 : 270);
    stage.addBst(kinase, 30);
    stage.addBst(kinase, -30);
    stage.addBst(kinase, upright ? 180 : 270);
    stage.addFeature(kinase, "Y1", orange, ComponentStateOn);
    stage.addFeature(kinase, "Y2", orange, ComponentStateOff);
    stage.addFeature(kinase, "Y3", orange, ComponentStateDontCare);
    kinase->setTagSize(13);
    kinase->setTagGap(5);
    itemOf(kinase)->updateLayoutOfListStateSticky(false);
    return mol;
}

Page receptorPage()
{
    Page page{"receptor", "A whole receptor",
        "Three components with features and numbered sites: as a molecule, as a pattern with its "
        "binding statuses, and selected.",
        2, 1.5, {}};
    page.figures += Figure{"Lying", [](Stage &stage) { drawReceptor(stage, blue, false); }};
    page.figures +=
        Figure{"Lying, with binding statuses", [](Stage &stage) {
                   SdcMol *const mol = drawReceptor(stage, blue, false);
                   int i = 0;
                   for (SdcBst *bst : mol->getListSdcBst()) {
                       static constexpr BindingStatusType statuses[] = {
                           BindingStatusBound, BindingStatusUnbound, BindingStatusUnspecified};
                       bst->setBindingStatus(statuses[i++ % 3]);
                       itemOf(bst)->updateBindStatusDisplay(true);
                   }
               }};
    page.figures += Figure{"Standing", [](Stage &stage) { drawReceptor(stage, rose, true); }};
    page.figures += Figure{"Standing, selected, its middle part negated", [](Stage &stage) {
                               SdcMol *const mol = drawReceptor(stage, rose, true);
                               mol->setHighlight(true, true);
                               SdcMcp *const middle = mol->getSdcMcpAtIndex(1);
                               middle->setProperty(SdcProperty::Negation, "1");
                               middle->updateMcpNot();
                           }};
    return page;
}

Page coloursPage()
{
    Page page{"molecule-colours", "Molecules of every colour",
        "The number of a site is black or white, whichever reads better on the molecule's colour.",
        4, 2.0, {}};
    for (const char *name : {"#ffffff", "#fdf0cf", "#cfe3f5", "#d8eecb", "#ffd23f", "#f4a261",
             "#e76f51", "#8ab17d", "#2a9d8f", "#4169e1", "#7b2d8b", "#8b0000", "#264653", "#2b3a67",
             "#444444", "#000000"}) {
        const QColor color(name);
        page.figures += Figure{name, [color](Stage &stage) {
                                   SdcMol *const mol = stage.addMol("M", color);
                                   SdcMcp *const a = stage.addMcp(mol, {-24, 0}, {38, 40});
                                   SdcMcp *const b = stage.addMcp(mol, {24, 0}, {38, 40});
                                   stage.join({a, b});
                                   stage.addBst(a, 120);
                                   stage.addBst(b, 60);
                                   stage.addFeature(b, "P", orange);
                               }};
    }
    return page;
}

Figure namedMolecule(const QString &caption, const QString &name, const QColor &color)
{
    return {caption, [=](Stage &stage) {
                SdcMol *const mol = drawReceptor(stage, color, false);
                mol->setProperty(SdcProperty::ShortName, name);
                auto *const label = new ZelTextItemLabel;
                stage.scene().addItem(label);
                label->setSdc(mol);
            }};
}

Figure textPlate(const QString &caption, const QString &text, const QColor &color)
{
    return {caption, [=](Stage &stage) {
                auto *const plate = new ZelRectItemWithText(QRectF(0, 0, 180, 60));
                plate->setBrush(color);
                plate->setText(text);
                stage.scene().addItem(plate);
            }};
}

Page namesPage()
{
    Page page{"names", "Names over drawings",
        "The name of a molecule or complex lies over the centre of its drawing; a plate carries a "
        "text of its own.",
        2, 1.4, {}};
    page.figures += namedMolecule("A molecule's name", "EGFR", blue);
    page.figures += namedMolecule("A long name", "Epidermal growth factor receptor", blue);
    page.figures += namedMolecule("A name on a dark molecule", "Kinase", QColor("#2b3a67"));
    page.figures += Figure{"A complex's name", [](Stage &stage) {
                               SdcMol *const left = stage.addMol("Receptor", blue);
                               SdcMol *const right = stage.addMol("Ligand", rose);
                               SdcMcp *const a = stage.addMcp(left, {-60, 0}, {90, 70});
                               SdcMcp *const b = stage.addMcp(right, {64, 0}, {70, 56});
                               SdcBstBstCpx *const bond =
                                   stage
                                       .addBond<ZelLineItemBstBstCpx, SdcBstBstCpx>(
                                           stage.addBst(a, 0), stage.addBst(b, 180))
                                       ->getSdcBstBstCpx();
                               SdcCpx *const cpx = stage.addCpx("Ligand:Receptor", {left, right});
                               cpx->addSdcBstBstCpx(bond);
                               auto *const label = new ZelTextItemLabelCpx;
                               stage.scene().addItem(label);
                               label->setSdcCpx(cpx);
                           }};
    page.figures += textPlate("A plate", "Receptor", Qt::white);
    page.figures += textPlate("A plate whose text is too long", "Growth factor receptor", cream);
    return page;
}

Page indexCodesPage()
{
    Page page{"index-codes", "Index codes over molecules",
        "While molecules are matched with each other, each shows its number on a plate of its own "
        "hue.",
        3, 1.5, {}};
    const auto figure = [&page](const QString &caption, const QString &code, int count,
                            const QColor &color) {
        page.figures += Figure{caption, [=](Stage &stage) {
                                   SdcMol *const mol = stage.addMol("M", color);
                                   SdcMcp *const a = stage.addMcp(mol, {-42, 0}, {72, 52});
                                   SdcMcp *const b = stage.addMcp(mol, {42, 0}, {72, 52});
                                   stage.join({a, b});
                                   stage.addBst(a, 120);
                                   stage.addBst(b, 60);
                                   stage.addFeature(b, "P", orange);
                                   mol->showIndexCode(true, code, count);
                               }};
    };
    figure("0 of 3", "0", 3, blue);
    figure("1 of 3", "1", 3, blue);
    figure("2 of 3", "2", 3, blue);
    figure("11 of 12", "11", 12, Qt::white);
    figure("A dark molecule", "2", 7, QColor("#2b3a67"));
    page.figures += Figure{"A small molecule", [](Stage &stage) {
                               SdcMol *const mol = stage.addMol("M", blue);
                               stage.addBst(stage.addMcp(mol, {}, {34, 24}), 60);
                               mol->showIndexCode(true, "4", 6);
                           }};
    return page;
}

} // namespace

QList<Page> moleculePages()
{
    return {coverPage(), receptorPage(), coloursPage(), namesPage(), indexCodesPage()};
}
