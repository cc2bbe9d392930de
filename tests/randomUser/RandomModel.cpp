#include "RandomModel.h"

#include "RandomDice.h"
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

#include <memory>

namespace C = ZelDbColumn;

namespace {

using TableColumn = QPair<QString, QString>;

QList<TableColumn> damagedColumns()
{
    QList<TableColumn> columns;
    for (const char *entry :
        {"mol graphicsInfo", "mol color", "mcp mol", "mcp posIndex", "mcpState mcp", "bst mcp",
            "bst posIndex", "cpx graphicsInfo", "cpx molCode", "cpa cpx", "cpa stateCode",
            "cpxMol mol", "cpxMol position", "cpxBstBst bst1", "cpxBstBst molPos2",
            "mli graphicsInfo", "mliBstBst bst1", "mliBstBst molPos2", "cai bst1",
            "cai graphicsInfo", "cad sourceCpa", "trn fromCpa", "pdn productCpa", "deg cpa"}) {
        const QStringList words = QString::fromLatin1(entry).split(u' ');
        columns.append({words.at(0), words.at(1)});
    }
    return columns;
}

QStringList damagedValues()
{
    QStringList values;
    for (const char *value :
        {"''", "'none99'", "'mol1'", "'cpx1'", "7", "'<schema><mol'", "'1*P(-);Q;1*P(0);;;'",
            "'<schema><cpx posIndex=\"0\"><boundingRect x=\"1e9\" y=\"nan\" w=\"0\" "
            "h=\"-4\"/></cpx></schema>'"})
        values.append(QString::fromLatin1(value));
    return values;
}

/// Without the library, which would refuse.
bool execute(const QString &statement)
{
    const QStringList names = QSqlDatabase::connectionNames();
    QSqlQuery query(QSqlDatabase::database(names.value(0)));
    return query.exec(statement);
}

} // namespace

RandomModel::RandomModel()
{
    m_file.create(":memory:");
    addMolecules();
    addComplexes();
    addInteraction();
    addAssociation();
    addReactions();
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

void RandomModel::damage(RandomDice *dice)
{
    if (m_damaged)
        return;
    execute("PRAGMA foreign_keys = OFF"); // has no effect once it is a transaction
    m_damaged = execute("SAVEPOINT damage");
    if (!m_damaged)
        m_fault = QStringLiteral("the model cannot be damaged");
    for (int i = 1 + dice->below(3); i > 0; --i) {
        const auto [table, column] = dice->anyOf(damagedColumns());
        const QString row = QStringLiteral(" WHERE rowid = (SELECT rowid FROM %1 ORDER BY rowid "
                                           "LIMIT 1 OFFSET %2)")
                                .arg(table)
                                .arg(dice->below(4));
        if (dice->chance(40))
            execute(QLatin1String("DELETE FROM ") + table + row);
        else // refused where it would break a rule of the table
            execute(QStringLiteral("UPDATE %1 SET %2 = %3")
                        .arg(table, column, dice->anyOf(damagedValues()))
                + (dice->chance(70) ? row : QString()));
    }
}

void RandomModel::mend()
{
    if (!m_damaged)
        return;
    execute("ROLLBACK TO damage");
    execute("RELEASE damage");
    execute("PRAGMA foreign_keys = ON");
    m_damaged = false;
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

void RandomModel::addComplexes()
{
    const QStringList mols = ids("mol");
    for (int i = 0; i < 3; ++i) {
        ZelSceneCpx scene;
        scene.setZelDbSqliteModel(&m_db);
        SdcMol *before = nullptr;
        for (int k = 0; k <= i; ++k) {
            SdcMol *const mol =
                scene.addMolFromDb(mols.at(k), {120.0 * static_cast<double>(k), 0.0});
            if (before)
                scene.drawBond(before->getListSdcBst().last(), mol->getListSdcBst().first());
            before = mol;
        }
        SdcCpx *const cpx = scene.getSdcCpx();
        if (!cpx->saveToDbCpx() || !cpx->saveToDbCpa())
            m_fault = QStringLiteral("a complex cannot be saved");
        note("cpx", cpx->getPsiimId());
        note("cpa", cpx->getProperty(SdcProperty::CpaPsiimId));
    }
}

void RandomModel::addInteraction()
{
    const QStringList mols = ids("mol");
    ZelSceneMli scene;
    scene.setZelDbSqliteModel(&m_db);
    SdcMol *const first = scene.addMolFromDb(mols.at(0), {-100.0, 0.0});
    SdcMol *const second = scene.addMolFromDb(mols.at(2), {100.0, 0.0});
    scene.drawBond(first->getListSdcBst().first(), second->getListSdcBst().first());
    SdcMli *const mli = scene.getSdcMli();
    mli->setProperty(SdcProperty::AssociationRate, "0.1");
    mli->setProperty(SdcProperty::DissociationRate, "0.2");
    if (!mli->saveToDb())
        m_fault = QStringLiteral("an interaction cannot be saved");
    note("mli", mli->getPsiimId());
}

// The first complex binds the second one by the last of its sites.
void RandomModel::addAssociation()
{
    const QStringList cpas = ids("cpa");
    ZelSceneCpx joined;
    joined.setZelDbSqliteModel(&m_db);
    joined.addCpaFromDb(cpas.at(0), {-100.0, 0.0});
    joined.addCpaFromDb(cpas.at(1), {100.0, 0.0});
    const auto join = [](ZelSceneEditing *scene) {
        const QList<SdcMol *> mols = scene->getSdc()->getListSdcMol();
        scene->drawBond(mols.first()->getListSdcBst().first(), mols.last()->getListSdcBst().last());
    };
    join(&joined);
    if (!joined.getSdcCpx()->saveToDbCpx() || !joined.getSdcCpx()->saveToDbCpa())
        m_fault = QStringLiteral("a result cannot be saved");
    ZelSceneCxi scene;
    scene.setZelDbSqliteModel(&m_db);
    scene.addCpaFromDb(cpas.at(0), {-100.0, 0.0});
    scene.addCpaFromDb(cpas.at(1), {100.0, 0.0});
    join(&scene);
    scene.getCurrentBond()->setResultCpxAliasPsiimId(
        joined.getSdcCpx()->getProperty(SdcProperty::CpaPsiimId));
    if (!scene.getSdcCxi()->saveToDb())
        m_fault = QStringLiteral("an association cannot be saved");
    note("cai", scene.getCurrentBond()->getPsiimId());
}

// The library does not ask here whether the complexes make sense.
void RandomModel::addReactions()
{
    const QStringList cpas = ids("cpa");
    const auto add = [this](const char *tag, const auto &insert, ZelDbRecord record) {
        const QString psiimId = QLatin1String(tag) + u'1';
        record.insert(C::PsiimId, psiimId);
        if (!(m_db.*insert)(record))
            m_fault = m_db.errorText();
        note(QString::fromLatin1(tag), psiimId);
    };
    add("cad", &ZelDbSqliteModel::cadInsert,
        {{C::CadSourceCpa, cpas.at(2)}, {C::CadResultCpa1, cpas.at(0)},
            {C::CadResultCpa2, cpas.at(1)}});
    add("trn", &ZelDbSqliteModel::trnInsert,
        {{C::TrnFromCpa, cpas.at(0)}, {C::TrnToCpa, cpas.at(1)}});
    add("pdn", &ZelDbSqliteModel::pdnInsert,
        {{C::PdnSourceCpa, cpas.at(1)}, {C::PdnProductCpa, cpas.at(0)}});
    add("deg", &ZelDbSqliteModel::degInsert, {{C::DegradationCpa, cpas.at(2)}});
}

void RandomModel::note(const QString &tag, const QString &psiimId)
{
    if (psiimId.isEmpty() && m_fault.isEmpty())
        m_fault = QLatin1String("no ") + tag;
    m_ids[tag].append(psiimId);
}
