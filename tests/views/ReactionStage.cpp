#include "ReactionStage.h"

#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

namespace C = ZelDbColumn;

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

ReactionStage::ReactionStage()
{
    if (!file.create(dir.filePath(text("model.zel"))))
        qFatal("%s", qPrintable(file.errorText()));
    ZelDbTransaction transaction(&file);
    molL = storeMolecule(text("L"), Yellow, 1);
    molR = storeMolecule(text("R"), Blue, 2);
    cpaL = storeAlias({molL}, false, text("L"));
    cpaR = storeAlias({molR}, false, text("R"));
    cpaRp = storeAlias({molR}, true, text("Rp"));
    cpaLR = storeAlias({molL, molR}, false, text("LR"));
    cpxLR = db.cpaGetCpxPsiimId(cpaLR);

    const auto named = [](const char *id, const char *name, ZelDbRecord columns) {
        columns.insert(C::PsiimId, text(id));
        columns.insert(C::ShortName, text(name));
        return columns;
    };
    db.caiInsert(named("cai1", "bind",
        {{C::CaiCpa1, cpaL}, {C::CaiCpa2, cpaR}, {C::CaiResultCpa, cpaLR},
            {C::AssociationRate, text("0.001")}, {C::Geometry, text("3D")}}));
    db.cadInsert(named("cad1", "part",
        {{C::CadSourceCpa, cpaLR}, {C::CadResultCpa1, cpaL}, {C::CadResultCpa2, cpaR},
            {C::DissociationRate, text("2")}}));
    db.trnInsert(named(
        "trn1", "switch", {{C::TrnFromCpa, cpaR}, {C::TrnToCpa, cpaRp}, {C::Rate, text("1")}}));
    db.pdnInsert(named("pdn1", "make",
        {{C::PdnSourceCpa, cpaR}, {C::PdnProductCpa, cpaL}, {C::PdnM, text("1")},
            {C::PdnN, text("2")}, {C::PdnK, text("0.5")}}));
    db.degInsert(
        named("deg1", "decay", {{C::DegradationCpa, cpaL}, {C::DegradationRate, text("0.25")}}));
    if (!transaction.commit())
        qFatal("%s", qPrintable(db.errorText()));
}

bool ReactionStage::execute(const QStringList &statements)
{
    const QString path = file.path();
    file.close();
    bool good = true;
    {
        QSqlDatabase raw = QSqlDatabase::addDatabase(text("QSQLITE"), text("stage"));
        raw.setDatabaseName(path);
        good = raw.open();
        for (const QString &statement : statements) {
            QSqlQuery query(raw);
            good = good && query.exec(statement);
            if (!good)
                qWarning("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
        }
    }
    QSqlDatabase::removeDatabase(text("stage"));
    return file.open(path) && good;
}

int ReactionStage::ink(const QPixmap &picture, const QRect &part)
{
    const QImage image = picture.toImage().copy(part);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    }
    return count;
}

bool ReactionStage::hasColor(const QPixmap &picture, const QRect &part, const QColor &color)
{
    const QImage image = picture.toImage().copy(part);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color.rgba())
                return true;
        }
    }
    return false;
}

QString ReactionStage::storeMolecule(const QString &name, QRgb color, int components)
{
    ZelScene scene;
    const QStringList features = components > 1 ? QStringList{text("P")} : QStringList();
    QList<ZelTree::Mcp> mcps{{text("out"), {}, 1}};
    if (components > 1)
        mcps.append({text("in"), features, 1});
    const std::unique_ptr<SdcMol> mol(ZelTree::molecule(&db, name, mcps, &scene));
    mol->setMolColor(QColor(color).name());
    mol->setProperty(SdcProperty::Color, QColor(color).name());
    return mol->saveToDb() ? mol->getPsiimId() : QString();
}

QString ReactionStage::storeAlias(const QStringList &mols, bool featureOff, const QString &name)
{
    ZelScene scene;
    SdcCpx cpx(&db);
    for (qsizetype i = 0; i < mols.size(); ++i) {
        auto *const mol = new SdcMol(&db);
        mol->loadFromDb(mols.at(i), &scene);
        scene.moveListSdcMcps(mol->getListSdcMcp(), QPointF(0.0, 70.0 * double(i)));
        cpx.addSdcChild(mol, true);
        for (SdcMcp *mcp : mol->getListSdcMcp()) {
            for (ZelRectItemMcpSticky *sticky : mcp->getListSticky())
                sticky->setStateType(featureOff ? ComponentStateOff : ComponentStateOn, false);
            mcp->updateStatePropertyFromSticky();
        }
    }
    const QList<SdcBst *> sites = cpx.getListSdcBst();
    if (mols.size() > 1)
        scene.addSdcBstBstCpx(&cpx, sites.at(0), sites.at(1));
    const QString stored = db.cpxGetPsiimIdFromFingerPrint(cpx.getCpxFingerPrint());
    if (stored.isEmpty()) {
        cpx.setProperty(SdcProperty::ShortName, name);
        cpx.saveToDbCpx();
    } else {
        cpx.setProperty(SdcProperty::PsiimId, stored);
    }
    cpx.setProperty(SdcProperty::CpaShortName, name);
    return cpx.saveToDbCpa() ? cpx.getProperty(SdcProperty::CpaPsiimId) : QString();
}
