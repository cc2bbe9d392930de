#include "zelDb/DbFixture.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

namespace {

/// A connection that knows nothing of the library.
template <typename Use>
bool withDatabase(const QString &path, Use use)
{
    const QString name = QStringLiteral("fixture");
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        ok = db.open() && use(db);
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}

} // namespace

DbFixture::DbFixture() : path(dir.filePath(QStringLiteral("model.zel")))
{
    if (!db.create(path))
        qFatal("%s", qPrintable(db.errorText()));
}

QStringList DbFixture::texts(const ZelDbRecord &record, std::initializer_list<int> columns)
{
    QStringList list;
    for (const int column : columns)
        list.append(record.value(column, QStringLiteral("-")));
    return list;
}

bool DbFixture::execute(const QStringList &statements)
{
    db.close();
    return execute(path, statements);
}

bool DbFixture::execute(const QString &path, const QStringList &statements)
{
    return withDatabase(path, [&](QSqlDatabase &raw) {
        for (const QString &statement : statements) {
            QSqlQuery query(raw);
            if (!query.exec(statement)) {
                qWarning("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
                return false;
            }
        }
        return true;
    });
}

QStringList DbFixture::dump(const QString &path)
{
    QStringList lines;
    withDatabase(path, [&](QSqlDatabase &raw) {
        QStringList tables = raw.tables(QSql::Tables);
        tables.sort();
        for (const QString &table : tables) {
            QSqlQuery query(raw);
            query.exec(QLatin1String("SELECT * FROM %1 ORDER BY 1, 2").arg(table));
            while (query.next()) {
                QString line = table;
                for (int i = 0; i < query.record().count(); ++i)
                    line += u'|' + query.value(i).toString();
                lines.append(line);
            }
        }
        return true;
    });
    return lines;
}

bool DbFixture::addComplex()
{
    const auto text = [](const char *s) { return QString::fromLatin1(s); };
    const auto owned = [&](const char *id, const char *owner, int position) {
        return ZelDbRecord{{C::PsiimId, text(id)}, {C::OwnerPsiimId, text(owner)},
            {C::ShortName, text(id) + text(" name")}, {C::PosIndex, QString::number(position)}};
    };
    ZelDbTransaction transaction(&db);
    model.molInsert({{C::PsiimId, text("mol1")}, {C::ShortName, text("A")}});
    model.molInsert({{C::PsiimId, text("mol2")}, {C::ShortName, text("B")}});
    model.mcpInsert(owned("mcp1", "mol1", 0));
    model.mcpInsert(owned("mcp2", "mol1", 1));
    model.mcpInsert(owned("mcp3", "mol2", 0));
    model.mcpInsertState(text("mcp1"), text("P"), text("#ff0000"), 0);
    model.mcpInsertState(text("mcp1"), text("Q"), text("#00ff00"), 1);
    model.bstInsert(owned("bst1", "mcp1", 0));
    model.bstInsert(owned("bst2", "mcp2", 0));
    model.bstInsert(owned("bst3", "mcp3", 0));
    model.molInsertMcpMcp(text("mol1"), 0, 1);
    model.mliInsert({{C::PsiimId, text("mli1")}, {C::ShortName, text("A-B")},
        {C::Bst1, text("bst1")}, {C::Bst2, text("bst3")}});
    model.cpxInsert(
        text("cpx1"), text("A.B"), {}, {}, {}, text("finger"), {}, text("mol1;mol2"), text("0"));
    model.cpxInsertMol(text("cpx1"), text("mol1"), text("0"));
    model.cpxInsertMol(text("cpx1"), text("mol2"), text("1"));
    model.cpxInsertBstBst(text("cpx1"), text("0"), text("bst1"), text("1"), text("bst3"), {});
    return transaction.commit();
}

bool DbFixture::addReactions()
{
    const auto text = [](const char *s) { return QString::fromLatin1(s); };
    ZelDbTransaction transaction(&db);
    for (int i = 1; i <= 3; ++i) {
        const QString number = QString::number(i);
        model.cpaInsert(text("cpa") + number, text("cpx1"), {}, text("<cpx/>") + number,
            text("alias") + number);
    }
    model.caiInsert({{C::PsiimId, text("cai1")}, {C::ShortName, text("bind")},
        {C::CaiCpa1, text("cpa1")}, {C::CaiCpa2, text("cpa2")}, {C::CaiResultCpa, text("cpa3")},
        {C::Bst1, text("bst2")}, {C::MolPos1, text("0")}, {C::Bst2, text("bst2")},
        {C::MolPos2, text("1")}, {C::Geometry, text("3D")}, {C::BindingType, text("cis")},
        {C::AssociationRate, text("0.5")}});
    model.cadInsert({{C::PsiimId, text("cad1")}, {C::CadSourceCpa, text("cpa3")},
        {C::CadResultCpa1, text("cpa1")}, {C::CadResultCpa2, text("cpa2")}});
    model.trnInsert({{C::PsiimId, text("trn1")}, {C::TrnFromCpa, text("cpa1")},
        {C::TrnToCpa, text("cpa2")}, {C::Rate, text("1e-3")}});
    model.pdnInsert({{C::PsiimId, text("pdn1")}, {C::PdnSourceCpa, text("cpa1")},
        {C::PdnProductCpa, text("cpa3")}, {C::PdnDelay, text("2")}});
    model.degInsert({{C::PsiimId, text("deg1")}, {C::DegradationCpa, text("cpa2")},
        {C::DegradationRate, text("0.25")}});
    model.sedInsert(
        {{C::PsiimId, text("sed1")}, {C::SeedCpa, text("cpa2")}, {C::SeedAmount, text("100")}});
    return transaction.commit();
}
