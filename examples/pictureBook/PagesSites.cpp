#include "Pages.h"
#include "Stage.h"

#include <zelModelSupport/graphics/ZelEllipseItemBst.h>
#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelRectItemMcpSticky.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBst.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

namespace {

const QColor blue("#cfe3f5");
const QColor orange("#d95f02");

Page numbersPage()
{
    Page page{"sites-numbers", "Binding sites and their numbers",
        "Sites lie on the rim and are numbered over their molecule. The number takes the largest "
        "type that fits the site.",
        4, 3.0, {}};
    for (const double diameter : {8.0, 12.0, 20.0}) {
        for (const char *number : {"7", "42", "128", "1000"}) {
            page.figures += Figure{
                QString("%1, site %2 units wide").arg(number).arg(diameter), [=](Stage &stage) {
                    SdcMcp *const mcp = stage.addMcp({}, {50, 34}, blue);
                    itemOf(stage.addBst(mcp, 60, diameter))->setLabel(number);
                }};
        }
    }
    page.figures += Figure{"A new component", [](Stage &stage) {
                               stage.addBst(stage.addMcp({}, {50, 34}), 60);
                           }};
    page.figures += Figure{"A dark molecule", [](Stage &stage) {
                               stage.addBst(stage.addMcp({}, {50, 34}, QColor("#2b3a67")), 60);
                           }};
    page.figures += Figure{"Sites that touch", [](Stage &stage) {
                               SdcMcp *const mcp = stage.addMcp({}, {50, 34}, blue);
                               for (const double angle : {115.0, 65.0, 28.0})
                                   stage.addBst(mcp, angle);
                           }};
    page.figures += Figure{"Numbers over two components", [](Stage &stage) {
                               SdcMol *const mol = stage.addMol("M", blue);
                               SdcMcp *const a = stage.addMcp(mol, {-19, 0}, {30, 34});
                               SdcMcp *const b = stage.addMcp(mol, {19, 0}, {30, 34});
                               stage.join({a, b});
                               stage.addBst(a, 110);
                               stage.addBst(a, 250);
                               stage.addBst(b, 70);
                               stage.addBst(b, 290);
                           }};
    return page;
}

Page statusPage()
{
    Page page{"sites-status", "Binding statuses",
        "A mark shows what a pattern demands of a site: grey for Bound, a white disc for Unbound, "
        "a "
        "dotted ring for Don't Care. Rows: white, light, strong and dark molecules.",
        4, 4.2, {}};
    const struct
    {
        const char *name;
        const char *color;
    } colors[] = {{"white", "#ffffff"}, {"light blue", "#cfe3f5"}, {"orange", "#f4a261"},
        {"navy", "#2b3a67"}};
    for (const auto &entry : colors) {
        const QColor color(entry.color);
        const auto figure = [&](const QString &status, int value) {
            page.figures += Figure{QString("%1 on %2").arg(status, entry.name), [=](Stage &stage) {
                                       SdcMcp *const mcp = stage.addMcp({}, {36, 24}, color);
                                       SdcBst *const bst = stage.addBst(mcp, 60);
                                       if (value == 0)
                                           return;
                                       bst->setBindingStatus(BindingStatusType(value));
                                       itemOf(bst)->updateBindStatusDisplay(true);
                                   }};
        };
        figure("Not displayed", 0);
        figure("Bound", BindingStatusBound);
        figure("Unbound", BindingStatusUnbound);
        figure("Don't Care", BindingStatusUnspecified);
    }
    return page;
}

Page limitedPage()
{
    Page page{"sites-rims", "Limited and always highlighted sites",
        "A dotted rim says that a site may not be edited freely. A ring inside the rim stays "
        "whatever else is highlighted.",
        3, 4.0, {}};
    const struct
    {
        const char *name;
        const char *color;
    } colors[] = {{"white", "#ffffff"}, {"light blue", "#cfe3f5"}, {"navy", "#2b3a67"}};
    const auto row = [&](const QString &what, double diameter, const auto &change) {
        for (const auto &entry : colors) {
            const QColor color(entry.color);
            page.figures += Figure{what + ", " + entry.name, [=](Stage &stage) {
                                       SdcMcp *const mcp = stage.addMcp({}, {44, 28}, color);
                                       SdcBst *const bst = stage.addBst(mcp, 60, diameter);
                                       change(itemOf(bst));
                                   }};
        }
    };
    row("Limited", 12.0, [](ZelEllipseItemBst *item) { item->setAsLimited(true); });
    row("Always highlighted", 12.0,
        [](ZelEllipseItemBst *item) { item->setAlwaysHighlight(true); });
    row("Always highlighted, large", 20.0,
        [](ZelEllipseItemBst *item) { item->setAlwaysHighlight(true); });
    row("Ring and halo", 12.0, [](ZelEllipseItemBst *item) {
        item->setAlwaysHighlight(true);
        item->setHighlight(true);
    });
    return page;
}

Page haloPage()
{
    Page page{"halos", "Highlighted items",
        "A soft halo in the highlight colour surrounds what is selected.", 3, 3.0, {}};
    page.figures += Figure{"A component", [](Stage &stage) {
                               SdcMcp *const mcp = stage.addMcp({}, {64, 44}, blue);
                               stage.addBst(mcp, 60);
                               itemOf(mcp)->setHighlight(true);
                           }};
    page.figures += Figure{"A site", [](Stage &stage) {
                               SdcMcp *const mcp = stage.addMcp({}, {64, 44}, blue);
                               itemOf(stage.addBst(mcp, 60))->setHighlight(true);
                           }};
    page.figures += Figure{"A feature", [](Stage &stage) {
                               SdcMcp *const mcp = stage.addMcp({}, {64, 44}, blue);
                               stage.addFeature(mcp, "A", orange);
                               stage.addFeature(mcp, "B", orange)->setHighlightItem(true);
                           }};
    page.figures += Figure{"A small component", [](Stage &stage) {
                               itemOf(stage.addMcp({}, {24, 16}, blue))->setHighlight(true);
                           }};
    page.figures += Figure{"A dark component", [](Stage &stage) {
                               SdcMcp *const mcp = stage.addMcp({}, {64, 44}, QColor("#2b3a67"));
                               stage.addBst(mcp, 60);
                               itemOf(mcp)->setHighlight(true);
                           }};
    page.figures += Figure{"A whole molecule", [](Stage &stage) {
                               SdcMol *const mol = stage.addMol("M", blue);
                               SdcMcp *const a = stage.addMcp(mol, {-24, 0}, {36, 40});
                               SdcMcp *const b = stage.addMcp(mol, {24, 0}, {36, 40});
                               stage.join({a, b});
                               stage.addBst(a, 120);
                               stage.addBst(b, 60);
                               stage.addFeature(b, "A", orange);
                               mol->setHighlight(true, true);
                           }};
    return page;
}

} // namespace

QList<Page> sitePages()
{
    return {numbersPage(), statusPage(), limitedPage(), haloPage()};
}
