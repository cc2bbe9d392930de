#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelRun.h"

namespace {

int runCreate(ZelModelRun &run)
{
    if (run.argument(0) == QLatin1String(":memory:"))
        return run.misuse(QStringLiteral("A model in memory would be gone at once; name a file."));
    // Nobody is kept waiting, and nothing half made is left.
    run.watchInterrupt();
    return run.file().create(run.argument(0)) ? ZelModelRun::AllWell
                                              : run.fail(run.file().errorText());
}

constexpr ZelModelExample examples[] = {
    {"zelmodel create model.zel", "Make an empty model, to be filled by an editor or an import."},
};

} // namespace

constexpr ZelModelCommand createCommand = {"create", "<model>", 1, 1, "make an empty model file",
    "Makes a new model file that holds nothing yet. A file that exists is never touched.", {},
    examples, false, runCreate};
