#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelExchange/export/ZelBnglExport.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

int runExport(ZelModelRun &run)
{
    const QString target = run.argument(1);
    if (!run.openModel(run.argument(0)) || !run.keepsModel(target))
        return ZelModelRun::Failed;
    ZelBnglExport exporter(&run.db());
    const QByteArray text = exporter.exportText();
    if (text.isEmpty()) {
        return run.fail(
            QLatin1String("'%1' was not written: %2").arg(target, exporter.report().error));
    }
    if (!run.writeFile(target, text))
        return ZelModelRun::Failed;
    run.setDone(QLatin1String("'%1' is written all the same").arg(target));
    ZelExportReport report = exporter.report();
    report.fileName = target;
    if (run.isSet("json"))
        run.printJson(QJsonDocument::fromJson(report.toJson()).object());
    else if (!run.isSet("quiet"))
        run.print(ZelModelText::shownLines(report.toText().trimmed()));
    return report.notes.isEmpty() ? ZelModelRun::AllWell : ZelModelRun::Findings;
}

constexpr ZelModelOption options[] = {
    {"json", nullptr, "Write the report for a script."},
    {"quiet", nullptr, "Write no report.", 'q'},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel export model.zel egfr.bngl", "Write the model for other programs."},
    {"zelmodel export -q model.zel /dev/stdout | less", "Read it."},
};

} // namespace

constexpr ZelModelCommand exportCommand = {"export", "<model> <file>", 2, 2,
    "write a model as a file of the BioNetGen language",
    "Writes molecule types, species, rules, parameters, observables and compartments, and the "
    "items that were kept untranslated as they once came in. The report names everything that the "
    "language cannot say; the exit code is then 3. A file that exists is replaced once the new one "
    "is whole.",
    options, examples, false, runExport};
