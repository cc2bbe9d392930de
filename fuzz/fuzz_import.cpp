// Small files of the BioNetGen language into the model database: each one comes in whole, so that
// the database is sound, holds what the report counts and can be written as such a file again, or
// leaves nothing behind.
#include "FuzzModel.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/export/ZelBnglExport.h"
#include "zelExchange/import/ZelBnglImport.h"

namespace {

// What is larger takes its time without going other ways.
constexpr size_t MaxMolecules = 60;
constexpr size_t MaxComponents = 200;

ZelDbSqlite &database()
{
    static auto *const file = [] {
        auto *const made = new ZelDbSqlite; // outlives whatever the process does at its end
        require(made->create(QStringLiteral(":memory:")), "a database", made->errorText());
        return made;
    }();
    return *file;
}

qsizetype count(const ZelDbSqliteModel &db)
{
    return db.molGetListPsiimId().size() + db.cpxGetListPsiimId().size()
        + db.cpaGetListPsiimId().size() + db.caiGetListPsiimId().size()
        + db.parGetListPsiimId().size() + db.cmpGetListPsiimId().size()
        + db.utrGetListPsiimId().size();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const ZelBnglModel model = ZelBnglParser::parse(text, QStringLiteral("m.bngl"));
    if (!model.isValid() || model.molecules.size() > MaxMolecules
        || model.components.size() > MaxComponents)
        return 0;
    ZelDbSqliteModel db(&database());
    ZelDbTransaction transaction(&database()); // takes everything back at the end
    ZelBnglImport importer(&db);
    const ZelImportReport &report = importer.report();
    if (!importer.importModel(model)) {
        require(!report.error.isEmpty(), "a reason");
        require(count(db) == 0, "nothing left behind", QString::number(count(db)));
        return 0;
    }
    const QStringList faults = database().checkIntegrity();
    require(faults.isEmpty(), "a sound database", faults.join(u'\n'));
    const auto compare = [](const char *what, qsizetype stored, int reported) {
        require(stored == reported, what, QString::number(stored), QString::number(reported));
    };
    compare("molecules", db.molGetListPsiimId().size(), report.moleculeTypes);
    compare("complexes", db.cpxGetListPsiimId().size(), report.complexes);
    compare("aliases", db.cpaGetListPsiimId().size(), report.species + report.patterns);
    compare("associations", db.caiGetListPsiimId().size(), report.associations);
    compare("dissociations", db.cadGetListPsiimId().size(), report.dissociations);
    compare("untranslated items", db.utrGetListPsiimId().size(), report.untranslated());
    const QByteArray exported = ZelBnglExport(&db).exportText();
    const ZelBnglModel again = ZelBnglParser::parse(exported, QStringLiteral("m.bngl"));
    require(exported.isEmpty() || again.isValid(), "what was exported to be readable",
        again.errorTexts().join(u'\n'), QString::fromUtf8(exported));
    return 0;
}
