#include "CommandStage.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace {

constexpr int Patience = 300000; // milliseconds, for a machine that does other things, too

} // namespace

QStringList CommandResult::lines() const
{
    return out.split(u'\n', Qt::SkipEmptyParts);
}

QJsonArray CommandResult::list() const
{
    return QJsonDocument::fromJson(out.toUtf8()).array();
}

QJsonObject CommandResult::object() const
{
    return QJsonDocument::fromJson(out.toUtf8()).object();
}

QStringList CommandStage::files() const
{
    return QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QByteArray CommandStage::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void CommandStage::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("no file");
}

CommandResult CommandStage::run(const QStringList &arguments) const
{
    return start(QStringLiteral(ZELMODEL_BINARY), arguments);
}

CommandResult CommandStage::shell(const QString &script) const
{
    return start(QStringLiteral("sh"), {QStringLiteral("-c"), script});
}

CommandResult CommandStage::start(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    process.setWorkingDirectory(m_dir.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("zelmodel"), QStringLiteral(ZELMODEL_BINARY));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(Patience) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError())};
}

bool CommandStage::importModel(const QString &name, const QByteArray &source) const
{
    write(QStringLiteral("source.bngl"), source);
    const int code = run({QStringLiteral("import"), name, QStringLiteral("source.bngl")}).code;
    return code == 0 || code == 3;
}

bool CommandStage::execute(const QString &name, const QStringList &statements) const
{
    bool good = false;
    {
        QSqlDatabase db =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("command stage"));
        db.setDatabaseName(path(name));
        good = db.open();
        for (const QString &statement : statements)
            good = good && QSqlQuery(db).exec(statement);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("command stage"));
    return good;
}

bool CommandStage::makeModelCalled(const QString &name, const QString &text) const
{
    if (!importModel(name,
            "begin molecule types\n A(b,s~U)\nend molecule types\n"
            "begin seed species\n A(b,s~U) 1\nend seed species\n"
            "begin parameters\n k 1\nend parameters\n"
            "begin reaction rules\n r: A(b) -> 0 k\nend reaction rules\n"))
        return false;
    ZelDbSqlite file;
    ZelDbSqliteModel db(&file);
    if (!file.open(path(name)))
        return false;
    ZelDbTransaction transaction(&file);
    const QString mcp = db.molGetListMcpPsiimId("mol1").first();
    const ZelDbRecord texts{
        {ZelDbColumn::ShortName, text}, {ZelDbColumn::Name, text}, {ZelDbColumn::Notes, text}};
    const auto of = [&texts](const QString &id) {
        ZelDbRecord record = texts;
        record.insert(ZelDbColumn::PsiimId, id);
        return record;
    };
    ZelDbRecord alias = of("cpa1");
    alias.insert(ZelDbColumn::CpaShortName, text);
    alias.remove(ZelDbColumn::ShortName);
    bool good = db.molInsert(of("mol1")) && db.mcpInsert(of(mcp)) && db.cpaInsert(alias)
        && db.degInsert(of("deg1")) && db.parInsert(of("par1")) && db.refInsert("mol", "mol1", text)
        && db.utrInsert({{ZelDbColumn::PsiimId, "utr1"}, {ZelDbColumn::SourceText, text},
            {ZelDbColumn::Reason, text}});
    return transaction.commit() && good;
}

QByteArray CommandStage::source()
{
    return "begin parameters\n kf 1\n kr 2\nend parameters\n"
           "begin molecule types\n A(b,s~U~P)\n B(a)\nend molecule types\n"
           "begin seed species\n A(b,s~U) 10\n B(a) 5\n A(b!1,s~P).B(a!1) 1\nend seed species\n"
           "begin observables\n Molecules Pairs A(b!1).B(a!1)\nend observables\n"
           "begin reaction rules\n"
           " bind: A(b) + B(a) <-> A(b!1).B(a!1) kf, kr\n"
           " mark: A(s~U) -> A(s~P) kf\n"
           "end reaction rules\n";
}
