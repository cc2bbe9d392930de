#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelReportFolder.h"
#include "apps/zelmodel/ZelModelReportWriter.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"

#include <QFileInfo>

namespace {

/// Why a report that was begun is not there.
int failUnfinished(ZelModelRun &run, const ZelModelReportFolder &folder, bool replaces)
{
    const QString target = run.value("output");
    const QString outcome = replaces
        ? QLatin1String("the report in '%1' is as it was before").arg(target)
        : QLatin1String("'%1' was not written").arg(target);
    if (ZelModelRun::isInterrupted())
        return run.fail(QLatin1String("Interrupted; %1.").arg(outcome));
    const QString reason = folder.errorText().isEmpty() ? run.db().errorText() : folder.errorText();
    return run.fail(QLatin1String("%1 Nothing has changed: %2.").arg(reason, outcome));
}

int runReport(ZelModelRun &run)
{
    const QString target = run.value("output");
    if (target.isEmpty())
        return run.misuse(QStringLiteral("Say with --output which folder the report goes to."));
    if (!run.openModel(run.argument(0)) || !run.keepsModel(target))
        return ZelModelRun::Failed;
    const bool replaces = QFileInfo::exists(target);
    ZelModelReportFolder folder;
    if (!folder.begin(target))
        return run.fail(folder.errorText());
    run.watchInterrupt();
    ZelModelReportWriter writer(&run, &folder, QFileInfo(run.argument(0)).fileName());
    if (!writer.write() || ZelModelRun::isInterrupted() || !folder.publish())
        return failUnfinished(run, folder, replaces);
    run.clearProgress();
    run.setDone(QLatin1String("the report is in '%1' all the same").arg(target));
    if (!run.isSet("quiet"))
        run.print(ZelModelText::shown(folder.indexPath()));
    const QStringList faulty = writer.faulty();
    if (faulty.isEmpty())
        return ZelModelRun::AllWell;
    run.note(QLatin1String("%1 records could not be drawn whole: %2; 'zelmodel check' says more.")
                 .arg(QString::number(faulty.size()), faulty.join(QLatin1String(", "))));
    return ZelModelRun::Findings;
}

constexpr ZelModelOption options[] = {
    {"output", "folder", "The report's folder; an older report there is replaced.", 'o'},
    {"quiet", nullptr, "Do not say where the report is.", 'q'},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel report -o report model.zel", "Write the report, then open report/index.html."},
    {"zip -r report.zip report", "Pack it for a colleague."},
};

} // namespace

constexpr ZelModelCommand reportCommand = {"report", "<model>", 1, 1,
    "write the model as pages for a browser",
    "Writes a folder with pages that show all of a model: molecules, interactions, species, "
    "patterns and reactions with their pictures, and what else the model holds. Any browser opens "
    "its index.html, from a disk or a server, on a phone or for printing; nothing is loaded from "
    "elsewhere."
    "\n\n"
    "The folder is put in place once it is whole. It may be new, empty, or an older report, which "
    "it then replaces. The exit code is 3 when a record could not be drawn whole.",
    options, examples, true, runReport};
