#include "RandomModel.h"

#include "apps/zelmodel/ZelModelCheck.h"
#include "support/ZelTest.h"
#include "support/ZelTree.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

#include <memory>

namespace {

QSqlDatabase connection()
{
    return QSqlDatabase::database(QSqlDatabase::connectionNames().value(0));
}

} // namespace

RandomModel::RandomModel()
{
    m_file.create(":memory:");
    addMolecules();
    addComplexes();
    addInteractions();
    ZelTest::takeDebugLines();
}

RandomModel::~RandomModel() = default;

QStringList RandomModel::records(const QStringList &tags) const
{
    QStringList list;
    for (const QString &tag : tags) {
        for (const QString &psiimId : ids(tag))
            list.append(tag + u';' + psiimId);
    }
    return list;
}

QMap<QString, QMap<QString, QString>> RandomModel::rows() const
{
    QMap<QString, QMap<QString, QString>> rows;
    for (const char *table : {"mol", "mcp", "mcpState", "bst", "mli", "cpx", "cpa", "cai", "cad"}) {
        QSqlQuery query(QLatin1String("SELECT * FROM ") + QLatin1String(table), connection());
        while (query.next()) {
            const QSqlRecord record = query.record();
            QMap<QString, QString> &row = rows[record.value("psiimId").toString()];
            for (int i = 0; i < record.count(); ++i)
                row.insert(record.fieldName(i), record.value(i).toString());
            row.remove("graphicsInfo");
        }
    }
    return rows;
}

QStringList RandomModel::findings()
{
    QList<ZelModelFinding> found;
    QStringList texts;
    if (!checkModel(m_file, m_db, &found))
        texts.append(QLatin1String("integrity: ") + m_db.errorText());
    for (const ZelModelFinding &finding : std::as_const(found))
        texts.append(QLatin1String(finding.check) + QLatin1String(": ") + finding.text);
    return texts;
}

void RandomModel::addMolecules()
{
    for (int i = 0; i < 3; ++i) {
        QList<ZelTree::Mcp> mcps;
        for (int k = 0; k <= i; ++k)
            mcps.append({QStringLiteral("c%1").arg(k), {"P", "Q"}, 1 + (i + k) % 3});
        ZelScene drawing;
        const std::unique_ptr<SdcMol> mol(
            ZelTree::molecule(&m_db, QStringLiteral("M%1").arg(i), mcps, &drawing));
        if (!mol->saveToDb())
            m_fault = m_db.errorText();
        note("mol", mol->getPsiimId());
    }
}

// Side by side, each joined to the one before by sites that are free.
void RandomModel::draw(ZelSceneEditing *scene, const QStringList &records)
{
    scene->setZelDbSqliteModel(&m_db);
    SdcBst *last = nullptr;
    for (const QString &record : records) {
        scene->addRecordFromDb(
            record.section(u';', 0, 0), record.section(u';', 1), {last ? 120.0 : -120.0, 0.0});
        QList<SdcBst *> sites = scene->getSdc()->getListSdcMol().last()->getListSdcBst();
        sites.removeIf([](SdcBst *site) { return site->isInCpxBinding(); });
        if (last)
            scene->drawBond(last, sites.first());
        last = sites.last();
    }
}

void RandomModel::addComplexes()
{
    const QStringList mols = records({"mol"});
    for (const QStringList &parts : {mols.mid(0, 1), mols.mid(0, 2), mols, mols.mid(1, 1),
             QStringList{"cpa;cpa1", "cpa;cpa2"}}) {
        ZelSceneCpx scene;
        draw(&scene, parts);
        SdcCpx *const cpx = scene.getSdcCpx();
        if (parts == mols.mid(1, 1)) // bound to something
            cpx->getListSdcBst().first()->setBindingStatus(BindingStatusBound);
        if (!cpx->saveToDbCpx() || !cpx->saveToDbCpa())
            m_fault = cpx->getRefusal();
        note("cpx", cpx->getPsiimId());
        note("cpa", cpx->getProperty(SdcProperty::CpaPsiimId));
    }
}

void RandomModel::addInteractions()
{
    for (const QStringList &parts : {QStringList{"mol;mol1", "mol;mol2"},
             QStringList{"mol;mol2", "mol;mol3"}, QStringList{"mol;mol1", "mol;mol3"}}) {
        ZelSceneMli scene;
        draw(&scene, parts);
        SdcMli *const mli = scene.getSdcMli();
        mli->setProperty(SdcProperty::AssociationRate, "0.1");
        mli->setProperty(SdcProperty::DissociationRate, "0.2");
        if (!mli->saveToDb())
            m_fault = mli->getRefusal();
        note("mli", mli->getPsiimId());
    }
    ZelSceneCxi cxiScene;
    draw(&cxiScene, {"cpa;cpa1", "cpa;cpa2"});
    cxiScene.getCurrentBond()->setResultCpxAliasPsiimId(ids("cpa").last());
    if (!cxiScene.getSdcCxi()->saveToDb())
        m_fault = cxiScene.getSdcCxi()->getRefusal();
    note("cai", cxiScene.getCurrentBond()->getPsiimId());
}

void RandomModel::note(const QString &tag, const QString &psiimId)
{
    if (psiimId.isEmpty() && m_fault.isEmpty())
        m_fault = QLatin1String("no ") + tag;
    m_ids[tag].append(psiimId);
}
