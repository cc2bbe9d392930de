#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelContactMap.h"
#include "apps/zelmodel/ZelModelLookup.h"
#include "apps/zelmodel/ZelModelPicture.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr QSize DefaultSize(400, 300);
constexpr int LongestSide = 4000;
constexpr double LeastScale = 0.05;
constexpr double GreatestScale = 20.0;
constexpr double MostPixels = 100e6;
constexpr int ReactionCells = 5; // an upper bound of a picture's width

/// What the options ask for.
struct Wish
{
    QSize size = DefaultSize;
    double scale = 1.0;
    QColor background;
    QString format;
    QString output;
};

/// Empty when the options make sense, else what is wrong.
QString readWish(const ZelModelRun &run, Wish *wish)
{
    if (run.isSet("size")) {
        static const QRegularExpression pattern(QStringLiteral("\\A(\\d{1,5})x(\\d{1,5})\\z"));
        const QRegularExpressionMatch match = pattern.match(run.value("size"));
        wish->size = QSize(match.captured(1).toInt(), match.captured(2).toInt());
        if (!match.hasMatch() || wish->size.isEmpty() || wish->size.width() > LongestSide
            || wish->size.height() > LongestSide) {
            return QLatin1String("'%1' is no size; give width and height from 1 to %2, as 400x300.")
                .arg(run.value("size"), QString::number(LongestSide));
        }
    }
    if (run.isSet("scale")) {
        bool isNumber = false;
        wish->scale = run.value("scale").toDouble(&isNumber);
        if (!isNumber || !(wish->scale >= LeastScale && wish->scale <= GreatestScale)) {
            return QLatin1String("'%1' is no scale; give a number from 0.05 to 20.")
                .arg(run.value("scale"));
        }
    }
    if (run.isSet("background")) {
        const QString name = run.value("background");
        if (name != QLatin1String("transparent")) {
            wish->background = QColor(name);
            if (!wish->background.isValid()) {
                return QLatin1String(
                    "'%1' is no colour; give one as white, #ffeecc or transparent.")
                    .arg(name);
            }
        }
    }
    wish->output = run.value("output");
    if (wish->output.isEmpty())
        return QStringLiteral("Say with --output where the picture goes.");
    wish->format = run.isSet("format") ? run.value("format").toLower()
        : run.isSet("all")             ? QStringLiteral("svg")
                                       : QFileInfo(wish->output).suffix().toLower();
    if (wish->format != QLatin1String("png") && wish->format != QLatin1String("svg")
        && wish->format != QLatin1String("pdf")) {
        return QLatin1String("'%1' is no format of pictures; there are png, svg and pdf.")
            .arg(wish->format);
    }
    const double pixels =
        ReactionCells * wish->size.width() * wish->scale * wish->size.height() * wish->scale;
    if (wish->format == QLatin1String("png") && pixels > MostPixels)
        return QStringLiteral("The picture would be too large; give a smaller size or scale.");
    return {};
}

QByteArray content(const ZelModelDrawing &picture, const Wish &wish, const QString &title)
{
    if (wish.format == QLatin1String("png"))
        return picture.toPng(wish.scale, wish.background);
    return wish.format == QLatin1String("svg") ? picture.toSvg(wish.scale, wish.background, title)
                                               : picture.toPdf(wish.scale, wish.background, title);
}

int renderOne(ZelModelRun &run, const Wish &wish)
{
    ZelModelFound found;
    if (!ZelModelLookup::find(run, run.argument(1), true, &found))
        return ZelModelRun::Failed;
    const ZelModelPicture picture(&run.db(), found, wish.size);
    if (picture.isNull()) {
        return run.fail(QLatin1String("'%1' has nothing to draw; 'zelmodel check' says what is "
                                      "wrong with the model.")
                            .arg(found.record.value(ZelDbColumn::PsiimId)));
    }
    return run.writeFile(wish.output, content(picture, wish, found.kind->nameOf(found.record)))
        ? ZelModelRun::AllWell
        : ZelModelRun::Failed;
}

int renderContactMap(ZelModelRun &run, const Wish &wish)
{
    const ZelModelContactMap map(&run.db());
    if (map.isNull())
        return run.fail(QStringLiteral("The model has no molecules; there is nothing to draw."));
    const QSizeF size = QSizeF(map.size()) * wish.scale;
    if (wish.format == QLatin1String("png") && size.width() * size.height() > MostPixels)
        return run.fail(QStringLiteral("The picture would be too large; give a smaller scale."));
    const QString title =
        QLatin1String("Contact map of %1").arg(QFileInfo(run.argument(0)).fileName());
    if (!run.writeFile(wish.output, content(map, wish, title)))
        return ZelModelRun::Failed;
    if (map.missingCount() == 0)
        return ZelModelRun::AllWell;
    run.note(QLatin1String("%1 molecules or bonds cannot be drawn; 'zelmodel check' says what is "
                           "wrong with the model.")
                 .arg(QString::number(map.missingCount())));
    return ZelModelRun::Findings;
}

int renderAll(ZelModelRun &run, const Wish &wish)
{
    const ZelModelKind *const only = ZelModelKinds::find(run.value("kind"));
    if (run.isSet("kind") && (!only || !only->hasPicture())) {
        return run.misuse(QLatin1String("There are no pictures of '%1'.").arg(run.value("kind")));
    }
    const bool isNew = !QFileInfo::exists(wish.output);
    if (!QDir().mkpath(wish.output)) {
        return run.fail(
            QLatin1String("The folder '%1' cannot be made; choose another one.").arg(wish.output));
    }
    qint64 total = 0;
    int lastType = -1;
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        // Species and patterns are records of one type.
        if (kind.hasPicture() && (!only || only == &kind) && kind.type != lastType)
            total += run.db().countRecords(kind.type);
        lastType = kind.type;
    }
    qint64 done = 0;
    QStringList missing;
    bool isWritten = true;
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        if (!kind.hasPicture() || (only && only != &kind))
            continue;
        const bool read = kind.visit(run.db(), [&](const ZelDbRecord &record) {
            const QString id = record.value(ZelDbColumn::PsiimId);
            const ZelModelPicture picture(&run.db(), {&kind, record}, wish.size);
            if (picture.isNull()) {
                missing.append(id);
            } else {
                isWritten = run.writeFile(
                    QDir(wish.output).filePath(ZelModelText::fileName(id) + u'.' + wish.format),
                    content(picture, wish, kind.nameOf(record)));
            }
            return isWritten && run.advance(QStringLiteral("Drawing"), ++done, total);
        });
        if (!isWritten) {
            if (isNew)
                QDir().rmdir(wish.output); // unless it holds pictures that are whole
            return ZelModelRun::Failed;
        }
        if (ZelModelRun::isInterrupted()) {
            return run.fail(
                QLatin1String("Interrupted after %1 pictures; the model is as it was before.")
                    .arg(QString::number(done)));
        }
        if (!read)
            return run.fail(run.db().errorText());
    }
    if (missing.isEmpty())
        return ZelModelRun::AllWell;
    run.note(QLatin1String("%1 records have nothing to draw: %2.")
                 .arg(QString::number(missing.size()), missing.join(QLatin1String(", "))));
    return ZelModelRun::Findings;
}

int runRender(ZelModelRun &run)
{
    const bool all = run.isSet("all");
    const bool map = run.isSet("contact-map");
    if (int(all) + int(map) + int(!run.argument(1).isEmpty()) != 1)
        return run.misuse(QStringLiteral("Name one record, or say --all or --contact-map."));
    if (map && run.isSet("size")) {
        return run.misuse(QStringLiteral(
            "A contact map has the size that it needs; say with --scale how large it is drawn."));
    }
    if (run.isSet("kind") && !all)
        return run.misuse(QStringLiteral("A kind is for --all; leave it out for anything else."));
    Wish wish;
    if (const QString problem = readWish(run, &wish); !problem.isEmpty())
        return run.misuse(problem);
    if (!run.openModel(run.argument(0)) || !run.keepsModel(wish.output))
        return ZelModelRun::Failed;
    if (map)
        return renderContactMap(run, wish);
    if (all)
        run.watchInterrupt();
    return all ? renderAll(run, wish) : renderOne(run, wish);
}

constexpr ZelModelOption options[] = {
    {"output", "file", "The picture's file or, with --all, the folder for the pictures.", 'o'},
    {"all", nullptr, "Draw every record that has a picture, each into <id>.<format>.", 'a'},
    {"contact-map", nullptr,
        "Draw the whole model: every molecule once, and lines between the sites that may bind."},
    {"kind", "kind", "With --all: only records of this kind, such as species."},
    {"format", "format", "png, svg or pdf; else the file's suffix says so, and svg with --all."},
    {"size", "WxH",
        "Width and height, 400x300 if not given; in a reaction, of each of its species."},
    {"scale", "number", "Enlarges the whole by this factor."},
    {"background", "colour", "A name, #rrggbb, or transparent, which it is if not given."},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel render -o egfr.svg model.zel EGFR", "Draw a molecule."},
    {"zelmodel render -o r1.png --scale 2 --background white model.zel cai1",
        "Draw a reaction for a sharp screen."},
    {"zelmodel render --all --kind species --format pdf -o pictures model.zel",
        "Draw all species, each on a page of its own."},
    {"zelmodel render --contact-map -o map.svg model.zel",
        "Draw the model's molecules and what may bind what."},
};

} // namespace

constexpr ZelModelCommand renderCommand = {"render", "<model> [record]", 1, 2,
    "draw one record, all, or the whole model, as PNG, SVG or PDF",
    "Draws molecules, interactions, complexes, species, patterns and reactions as they are stored, "
    "or all molecules on one contact map. "
    "The same file gives the same pictures, byte for byte. A picture that exists is replaced once "
    "the new one is whole.",
    options, examples, true, runRender};
