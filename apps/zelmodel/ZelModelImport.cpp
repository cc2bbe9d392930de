#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelExchange/import/ZelBnglImport.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr qsizetype LongestName = 40; // of a file, in a line of progress

int runImport(ZelModelRun &run)
{
    const QString model = run.argument(0);
    const QString source = run.argument(1);
    if (model == QLatin1String(":memory:"))
        return run.misuse(QStringLiteral("A model in memory would be gone at once; name a file."));
    if (ZelModelRun::isDatabase(source)) {
        return run.fail(QLatin1String("'%1' is a model, or another database, and no file of the "
                                      "BioNetGen language; the model comes first, then the file.")
                            .arg(source));
    }
    const bool isNew = !QFileInfo::exists(model) && !QFileInfo(model).isSymLink();
    run.watchInterrupt();
    // A new model is made in place: whatever happens then, the file goes again.
    if (!(isNew ? run.file().create(model) : run.file().open(model)))
        return run.fail(run.file().errorText());
    ZelBnglImport importer(&run.db());
    importer.setProgress([&run, &source](int done, int total) {
        return run.advance(QLatin1String("Importing ")
                + ZelModelText::shown(QFileInfo(source).fileName().left(LongestName)),
            done, total);
    });
    const bool imported = importer.importFile(source);
    if (!imported) {
        run.file().close();
        if (isNew)
            QFile::remove(model);
        if (ZelModelRun::isInterrupted()) {
            return run.fail(isNew
                    ? QLatin1String("Interrupted; '%1' was not made.").arg(model)
                    : QLatin1String("Interrupted; '%1' is as it was before.").arg(model));
        }
        return run.fail(QLatin1String("'%1' was not imported, and %2: %3")
                            .arg(source,
                                isNew ? QLatin1String("'%1' not made").arg(model)
                                      : QLatin1String("'%1' is as it was before").arg(model),
                                importer.report().error));
    }
    const ZelImportReport &report = importer.report();
    run.setDone(QLatin1String("'%1' is imported all the same").arg(source));
    run.clearProgress();
    if (run.isSet("json"))
        run.printJson(QJsonDocument::fromJson(report.toJson()).object());
    else if (!run.isSet("quiet"))
        run.print(ZelModelText::shownLines(report.toText().trimmed()));
    return report.losses.isEmpty() ? ZelModelRun::AllWell : ZelModelRun::Findings;
}

constexpr ZelModelOption options[] = {
    {"json", nullptr, "Write the report for a script."},
    {"quiet", nullptr, "Write no report.", 'q'},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel import model.zel egfr.bngl", "Make a model of what the file describes."},
    {"zelmodel import --json model.zel egfr.bngl > report.json",
        "The same, with the report for a script."},
};

} // namespace

constexpr ZelModelCommand importCommand = {"import", "<model> <file>", 2, 2,
    "bring a file of the BioNetGen language into a model",
    "Reads a model (.bngl) or a generated network (.net) and draws all its molecules and species. "
    "A model file that does not exist is made. The import is all or nothing: after an error, or "
    "Ctrl-C, the model file is as it was before."
    "\n\n"
    "The report names everything that a model cannot say in its own terms, with line and reason; "
    "the exit code is then 3. What is kept untranslated stands whole in the model: 'zelmodel list "
    "model.zel untranslated'.",
    options, examples, true, runImport};
