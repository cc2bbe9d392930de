// Draws a molecule, stores it, reads it back into a scene, and shows it.
// Usage: firstMolecule <new model file> <picture to write>; a window opens where there is a
// display.
#include <zelDb/ZelDbSqlite.h>
#include <zelDb/ZelDbSqliteModel.h>
#include <zelModelSupport/graphics/ZelEllipseItemBst.h>
#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelSceneMol.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBst.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

#include <QApplication>
#include <QFile>
#include <QGraphicsView>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace {

/// A receptor of three domains: name, features and number of binding sites of each.
void draw(SdcMol &receptor, ZelSceneMol &scene, ZelDbSqliteModel *db)
{
    const struct
    {
        const char *name;
        QStringList features;
        int sites;
    } domains[] = {
        {"ligand-binding", {}, 1}, {"transmembrane", {}, 1}, {"kinase", {"Y1", "Y2", "Y3"}, 3}};
    receptor.setProperty(SdcProperty::ShortName, "Receptor");
    ZelEllipseItemMcp *before = nullptr;
    for (const auto &domain : domains) {
        const QRectF place(before ? before->pos().x() + 60.0 : 0.0, -35.0, 96.0, 70.0);
        ZelEllipseItemMcp *const item = scene.addMcp(place);
        auto *const mcp = new SdcMcp(db);
        mcp->setProperty(SdcProperty::ShortName, domain.name);
        item->setSdcMcp(mcp);
        receptor.addSdcMcp(mcp);
        for (const QString &feature : domain.features)
            mcp->addTag(feature, "#d95f02");
        for (int i = 0; i < domain.sites; ++i) {
            auto *const bst = new SdcBst(db);
            scene.addBst(item)->setSdcBst(bst);
            mcp->addSdcBst(bst);
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
        draw(receptor, scene, &db);
        if (!receptor.saveToDb())
            return fail(db.errorText());
        id = receptor.getPsiimId();
    }

    ZelSceneMol scene(nullptr);
    SdcMol receptor(&db);
    if (!receptor.loadFromDb(id, &scene))
        return fail(db.errorText());
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
    view.show();
    return app.exec();
}
