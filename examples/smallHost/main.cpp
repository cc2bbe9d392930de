// Shows the molecules of a model file side by side. Usage: smallHost <model file>
#include <zelDb/ZelDbSqlite.h>
#include <zelDb/ZelDbSqliteModel.h>
#include <zelModelSupport/graphics/ZelScene.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

#include <QApplication>
#include <QGraphicsView>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    ZelDbSqlite file;
    if (argc != 2 || !file.openReadOnly(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "smallHost: %s\n",
            argc != 2 ? "usage: smallHost <model file>" : qPrintable(file.errorText()));
        return 1;
    }
    ZelDbSqliteModel db(&file);
    ZelScene scene(nullptr);
    QObject molecules; // owns them; the scene owns what draws them
    for (const QString &id : db.molGetListPsiimId()) {
        auto *const molecule = new SdcMol(&db, &molecules);
        const double right = scene.getSceneRectForAllItems().right();
        if (!molecule->loadFromDb(id, &scene))
            continue;
        const QPointF beside(right + 30.0 - molecule->getSdcScenePos().x(), 0.0);
        scene.moveListSdcMcps(molecule->getListSdcMcp(), beside);
        std::printf("%s\n", qPrintable(molecule->getDisplayName(true, false)));
    }
    QGraphicsView view(&scene);
    view.show();
    return QGuiApplication::platformName() == QLatin1String("offscreen") ? 0 : app.exec();
}
