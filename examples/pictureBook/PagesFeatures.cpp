#include "Pages.h"
#include "Stage.h"

#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelRectItemMcpSticky.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>

#include <QStringList>

namespace {

const QColor orange("#d95f02");
const QColor teal("#1b9e77");
const QColor violet("#7570b3");
const QColor pink("#e7298a");
const QColor blue("#cfe3f5");

void setRow(SdcMcp *mcp, double size, double gap, int side = 0)
{
    mcp->setTagSize(size);
    mcp->setTagGap(gap);
    mcp->setTagDirectionCode(side);
    itemOf(mcp)->updateLayoutOfListStateSticky(false);
}

Figure stateFigure(const QString &name, int state, bool half, bool active)
{
    QStringList words{name};
    if (half)
        words.append("with half fill");
    if (!active)
        words.append("inactive");
    return {words.join(", "), [=](Stage &stage) {
                SdcMcp *const mcp = stage.addMcp({}, {56, 40}, blue);
                stage.addFeature(mcp, "P", orange, state, half)->setActive(active);
                setRow(mcp, 16, 2);
            }};
}

Page statesPage()
{
    Page page{"features-states", "Features and their states",
        "A feature is a small square on its component. Its fill shows its state: full for On, "
        "empty "
        "for Off, a dotted rim for Don't Care. Half filled and inactive squares belong to editors "
        "that offer a feature without deciding it.",
        3, 2.6, {}};
    for (const bool active : {true, false}) {
        for (const bool half : {false, true}) {
            page.figures += stateFigure("On", ComponentStateOn, half, active);
            page.figures += stateFigure("Off", ComponentStateOff, half, active);
            page.figures += stateFigure("Don't Care", ComponentStateDontCare, half, active);
        }
    }
    return page;
}

Page sidesPage()
{
    Page page{"features-sides", "The side of the features",
        "The side code of a component turns its row of features: the colours run orange, green, "
        "violet, pink from first to last.",
        3, 2.2, {}};
    const QStringList captions{"Side 0, as made: left to right", "Side 1: left to right",
        "Side 2: top to bottom", "Side 3: right to left", "Side 4: bottom to top"};
    for (int side = 0; side < captions.size(); ++side) {
        page.figures += Figure{captions.at(side), [side](Stage &stage) {
                                   SdcMcp *const mcp = stage.addMcp({}, {76, 76}, blue);
                                   stage.addFeature(mcp, "A", orange);
                                   stage.addFeature(mcp, "B", teal);
                                   stage.addFeature(mcp, "C", violet);
                                   stage.addFeature(mcp, "D", pink);
                                   setRow(mcp, 11, 3, side);
                               }};
    }
    page.figures += Figure{"A row too long for its component keeps its size", [](Stage &stage) {
                               SdcMcp *const mcp = stage.addMcp({}, {56, 76}, blue);
                               for (const QColor &color : {orange, teal, violet, pink})
                                   stage.addFeature(mcp, color.name(), color);
                               setRow(mcp, 16, 4, 3);
                           }};
    return page;
}

Page countsPage(const QString &name, const QString &title, const QSizeF &size, double zoom)
{
    Page page{name, title,
        QString("A fitted row takes the largest size at which it lies well inside its component, "
                "here %1 by %2 units.")
            .arg(size.width())
            .arg(size.height()),
        4, zoom, {}};
    for (int count = 1; count <= 12; ++count) {
        const QString caption = count == 1 ? "1 feature" : QString("%1 features").arg(count);
        page.figures +=
            Figure{caption, [=](Stage &stage) {
                       SdcMcp *const mcp = stage.addMcp({}, size, blue);
                       static constexpr int states[] = {
                           ComponentStateOn, ComponentStateOff, ComponentStateDontCare};
                       for (int i = 0; i < count; ++i)
                           stage.addFeature(mcp, QString::number(i), orange, states[i % 3]);
                       itemOf(mcp)->updateLayoutOfListStateSticky(true);
                   }};
    }
    return page;
}

Page coloursPage()
{
    Page page{"features-colours", "Features on molecules of every colour",
        "Each figure shows On, Off and Don't Care, side by side, in one colour.", 4, 2.2, {}};
    const struct
    {
        const char *feature;
        const char *molecule;
        const char *caption;
    } pairs[] = {{"#d95f02", "#ffffff", "Orange on white"},
        {"#1b9e77", "#fff4cc", "Green on cream"}, {"#7570b3", "#cfe3f5", "Violet on light blue"},
        {"#111111", "#f2c6d6", "Black on rose"}, {"#ffd23f", "#ffffff", "Yellow on white"},
        {"#c0c0c0", "#ffffff", "Light grey on white"}, {"#ffd23f", "#2b3a67", "Yellow on navy"},
        {"#d95f02", "#222222", "Orange on black"}};
    for (const auto &pair : pairs) {
        const QColor feature(pair.feature);
        const QColor molecule(pair.molecule);
        page.figures += Figure{pair.caption, [=](Stage &stage) {
                                   SdcMcp *const mcp = stage.addMcp({}, {76, 48}, molecule);
                                   stage.addFeature(mcp, "A", feature, ComponentStateOn);
                                   stage.addFeature(mcp, "B", feature, ComponentStateOff);
                                   stage.addFeature(mcp, "C", feature, ComponentStateDontCare);
                                   setRow(mcp, 14, 4);
                               }};
    }
    return page;
}

Page negationPage()
{
    Page page{"negation", "Negated components",
        "Two strokes cross a component that must not be in the state shown. They reach over the "
        "component and all its features.",
        3, 2.2, {}};
    const auto figure = [&page](const QString &caption, const QSizeF &size, const QColor &color,
                            int features, double featureSize, int side) {
        page.figures += Figure{caption, [=](Stage &stage) {
                                   SdcMcp *const mcp = stage.addMcp({}, size, color);
                                   for (int i = 0; i < features; ++i)
                                       stage.addFeature(mcp, QString::number(i), orange);
                                   if (features > 0)
                                       setRow(mcp, featureSize, 3, side);
                                   mcp->setProperty(SdcProperty::Negation, "1");
                                   mcp->updateMcpNot();
                               }};
    };
    figure("Without features", {70, 50}, Qt::white, 0, 0, 0);
    figure("With features", {84, 56}, blue, 3, 14, 0);
    figure("Features beyond the rim", {40, 44}, blue, 4, 14, 0);
    figure("Upright row", {56, 76}, blue, 3, 14, 2);
    figure("Small", {22, 16}, blue, 1, 8, 0);
    figure("Dark", {84, 56}, QColor("#2b3a67"), 3, 14, 0);
    return page;
}

} // namespace

QList<Page> featurePages()
{
    return {statesPage(), sidesPage(),
        countsPage("features-large", "One to twelve features, large component", {92, 66}, 2.0),
        countsPage("features-small", "One to twelve features, small component", {40, 26}, 3.4),
        coloursPage(), negationPage()};
}
