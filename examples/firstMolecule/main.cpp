// Draws a molecule, stores it, reads it back into a scene, and shows it.
// Usage: firstMolecule <new model file> <picture to write>; a window opens where there is a
// display.
#include <zelDb/ZelDbSqlite.h>
#include <zelDb/ZelDbSqliteModel.h>
#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelSceneMol.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>
#include <zelShare/ZelShareGui.h>

#include <QApplication>
#include <QFile>
#include <QGraphicsView>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace {

struct Feature
{
    const char *name;
    const char *color;
};

struct Domain
{
    const char *name;
    QSizeF size;
    QList<double> siteAngles; ///< degrees, counter-clockwise from the right
    QList<Feature> features;
};

/// A receptor: its domains side by side, each with its features and binding sites.
void draw(SdcMol &receptor, ZelSceneMol &scene)
{
    const Domain domains[] = {{"ligand-binding", {104, 80}, {180, 90}, {}},
        {"transmembrane", {64, 36}, {270}, {}},
        {"kinase", {124, 88}, {40, -40, 255},
            {{"Y1", "#d95f02"}, {"Y2", "#1b9e77"}, {"Y3", "#7570b3"}}}};
    receptor.setProperty(SdcProperty::ShortName, "Receptor");
    ZelEllipseItemMcp *before = nullptr;
    for (const Domain &domain : domains) {
        const double left = before ? before->sceneBoundingRect().right() + 16.0 : 0.0;
        SdcMcp *const mcp = scene.addSdcMcp(
            &receptor, QRectF(QPointF(left, -domain.size.height() / 2.0), domain.size));
        mcp->setProperty(SdcProperty::ShortName, domain.name);
        ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
        for (const Feature &feature : domain.features)
            mcp->addTag(feature.name, feature.color);
        for (const double angle : domain.siteAngles) {
            QRectF place(0.0, 0.0, 14.0, 14.0);
            place.moveCenter(ZelShareGui::getAttachScenePoint(item, nullptr, angle));
            scene.addSdcBst(mcp, place);
        }
        if (before)
            scene.drawBackBones(before, item);
        before = item;
    }
    receptor.setProperty(SdcProperty::Color, "#cfe3f5");
    receptor.setMolColor("#cfe3f5");
}

int fail(const QString &text)
{
    std::fprintf(stderr, "firstMolecule: %s\n", qPrintable(text));
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 3)
        return fail("usage: firstMolecule <new model file> <picture to write>");
    const QString modelPath = QString::fromLocal8Bit(argv[1]);
    QFile::remove(modelPath);
    ZelDbSqlite database;
    if (!database.create(modelPath))
        return fail(database.errorText());
    ZelDbSqliteModel db(&database);
    QString id;
    {
        ZelSceneMol scene(nullptr);
        SdcMol receptor(&db);
        draw(receptor, scene);
        if (!receptor.saveToDb())
            return fail(db.errorText());
        id = receptor.getPsiimId();
    }

    ZelSceneMol scene(nullptr);
    SdcMol receptor(&db);
    if (!receptor.loadFromDb(id, &scene))
        return fail(db.errorText());
    receptor.setAllMcpFeatureValue(ComponentStateOn);
    const QRectF source = scene.itemsBoundingRect().adjusted(-10, -10, 10, 10);
    QImage image((source.size() * 2).toSize(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene.render(&painter, QRectF(), source);
    painter.end();
    if (!image.save(QString::fromLocal8Bit(argv[2])))
        return fail(QString("cannot write the picture %1").arg(argv[2]));
    std::printf("Stored %s in %s and drew it to %s\n", qPrintable(id), argv[1], argv[2]);
    if (QGuiApplication::platformName() == "offscreen")
        return 0;
    QGraphicsView view(&scene);
    view.setRenderHint(QPainter::Antialiasing);
    view.resize(800, 500);
    view.scale(1.8, 1.8);
    view.centerOn(source.center());
    view.show();
    return app.exec();
}
