#include "Pages.h"
#include "Stage.h"

#include <zelDb/ZelDbSqlite.h>
#include <zelDb/ZelDbSqliteModel.h>
#include <zelModelSupport/graphics/ZelEllipseItemBst.h>
#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelRectItemMcpSticky.h>
#include <zelModelSupport/graphics/ZelSceneMli.h>
#include <zelModelSupport/support/zgs.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBst.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMli.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

#include <QGraphicsPixmapItem>
#include <QPixmap>

#include <memory>
#include <utility>

namespace C = ZelDbColumn;

namespace {

constexpr double Fineness = 4.0; // pixels of a picture for each of the page's

/// A model in memory with a receptor, its ligand and what happens to them.
class Model
{
public:
    Model()
    {
        m_file.create(":memory:");
        const QString ligand = store("Ligand", "#f7d9e3", {{{0, 0}, {40, 40}}}, {0.0});
        const QString receptor = store(
            "Receptor", "#cfe3f5", {{{90, -6}, {60, 44}}, {{156, 10}, {50, 60}}}, {180.0, 270.0});
        const QString free = alias({ligand}, false);
        const QString idle = alias({receptor}, false);
        const QString active = alias({receptor}, true);
        const QString bound = alias({ligand, receptor}, false);
        records = {{"Molecule", zgs::PictureMol, receptor},
            {"Molecule interaction, the first third of its place", zgs::PictureMli,
                interaction(ligand, receptor)},
            {"Complex species", zgs::PictureCpx, db.cpaGetCpxPsiimId(bound)},
            {"Complex in its states", zgs::PictureCpa, active}};
        db.caiInsert({{C::PsiimId, "cai1"}, {C::CaiCpa1, free}, {C::CaiCpa2, idle},
            {C::CaiResultCpa, bound}});
        db.cadInsert({{C::PsiimId, "cad1"}, {C::CadSourceCpa, bound}, {C::CadResultCpa1, free},
            {C::CadResultCpa2, idle}});
        db.trnInsert({{C::PsiimId, "trn1"}, {C::TrnFromCpa, idle}, {C::TrnToCpa, active}});
        db.pdnInsert({{C::PsiimId, "pdn1"}, {C::PdnSourceCpa, active}, {C::PdnProductCpa, free}});
        db.pdnInsert({{C::PsiimId, "pdn2"}, {C::PdnProductCpa, free}});
        db.degInsert({{C::PsiimId, "deg1"}, {C::DegradationCpa, bound}});
    }

private:
    QString store(const QString &name, const QColor &color,
        const QList<QPair<QPointF, QSizeF>> &mcps, const QList<double> &siteAngles)
    {
        ZelSceneMol scene;
        SdcMol mol(&db);
        mol.setProperty(SdcProperty::ShortName, name);
        mol.setProperty(SdcProperty::Color, color.name());
        ZelEllipseItemMcp *before = nullptr;
        for (qsizetype i = 0; i < mcps.size(); ++i) {
            QRectF rect(QPointF(), mcps.at(i).second);
            rect.moveCenter(mcps.at(i).first);
            SdcMcp *const mcp = scene.addSdcMcp(&mol, rect);
            ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
            scene.moveItemToAngle(
                scene.addSdcBst(mcp)->getZelEllipseItemBst(), item, siteAngles.at(i));
            if (before) {
                scene.drawBackBones(before, item);
                mcp->addTag("P", "#f4a261");
            }
            before = item;
        }
        mol.setMolColor(color.name());
        mol.saveToDb();
        return mol.getPsiimId();
    }

    /// Stores that the first sites of two molecules may bind.
    QString interaction(const QString &first, const QString &second)
    {
        ZelSceneMli scene;
        scene.setZelDbSqliteModel(&db);
        SdcMol *const left = scene.addMolFromDb(first, QPointF(-70.0, 0.0));
        SdcMol *const right = scene.addMolFromDb(second, QPointF(70.0, 0.0));
        scene.drawBond(left->getListSdcBst().first(), right->getListSdcBst().first());
        scene.getSdcMli()->setProperty(SdcProperty::AssociationRate, "0.1");
        scene.getSdcMli()->setProperty(SdcProperty::DissociationRate, "0.2");
        scene.getSdcMli()->saveToDb();
        return scene.getSdcMli()->getPsiimId();
    }

    /// Stores the molecules, the first sites bonded, and their states.
    QString alias(const QStringList &mols, bool on)
    {
        ZelSceneMol scene;
        SdcCpx cpx(&db);
        for (const QString &id : mols) {
            auto *const mol = new SdcMol(&db);
            mol->loadFromDb(id, &scene);
            cpx.addSdcChild(mol, true);
            for (SdcMcp *mcp : mol->getListSdcMcp()) {
                for (ZelRectItemMcpSticky *sticky : mcp->getListSticky())
                    sticky->setStateType(on ? ComponentStateOn : ComponentStateOff, false);
                mcp->updateStatePropertyFromSticky();
            }
        }
        const QList<SdcBst *> sites = cpx.getListSdcBst();
        if (mols.size() > 1)
            scene.addSdcBstBstCpx(&cpx, sites.at(0), sites.at(1));
        const QString stored = db.cpxGetPsiimIdFromFingerPrint(cpx.getCpxFingerPrint());
        if (stored.isEmpty())
            cpx.saveToDbCpx();
        else
            cpx.setProperty(SdcProperty::PsiimId, stored);
        cpx.saveToDbCpa();
        return cpx.getProperty(SdcProperty::CpaPsiimId);
    }

    ZelDbSqlite m_file;

public:
    struct Record
    {
        QString caption;
        int kind;
        QString psiimId;
    };

    ZelDbSqliteModel db{&m_file};
    QList<Record> records; // one of each kind that has a picture of its own
};

/// Two figures of a picture, at 100 and at 60 pixels.
template <typename Draw>
QList<Figure> figuresOf(const QString &caption, Draw draw)
{
    QList<Figure> figures;
    for (const QSize size : {QSize(100, 60), QSize(60, 36)}) {
        figures += Figure{caption, [=](Stage &stage) {
                              QPixmap picture = draw(size * Fineness);
                              picture.setDevicePixelRatio(Fineness);
                              auto *const item = new QGraphicsPixmapItem(picture);
                              item->setTransformationMode(Qt::SmoothTransformation);
                              stage.scene().addItem(item);
                          }};
    }
    return figures;
}

} // namespace

QList<Page> reactionPages()
{
    const auto model = std::make_shared<Model>();
    Page records{"records", "Records in lists", "Each kind at 100 and at 60 pixels.", 2, 1.0, {}};
    for (const Model::Record &record : std::as_const(model->records)) {
        records.figures += figuresOf(record.caption, [=](const QSize &size) {
            return zgs::getPixMapFromSdcPsiimId(record.psiimId, record.kind, size, &model->db);
        });
    }
    Page reactions{"reactions", "Reactions in lists",
        "Each species in a place of its own, with signs between them: at 100 and at 60 pixels.", 2,
        1.0, {}};
    const auto add = [&](const QString &caption, auto function, const QString &id) {
        reactions.figures += figuresOf(
            caption, [=](const QSize &size) { return function(id, size, &model->db, nullptr); });
    };
    add("Association", zgs::getPixMapForAssociation, "cai1");
    add("Dissociation", zgs::getPixMapForDissociation, "cad1");
    add("Transformation", zgs::getPixMapForTransformation, "trn1");
    add("Production", zgs::getPixMapForProduction, "pdn1");
    add("Production from nothing", zgs::getPixMapForProduction, "pdn2");
    add("Degradation", zgs::getPixMapForDegradation, "deg1");
    return {records, reactions};
}
