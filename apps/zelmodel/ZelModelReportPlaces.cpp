#include "apps/zelmodel/ZelModelReportPlaces.h"

#include "apps/zelmodel/ZelModelReportFolder.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QRegularExpression>

#include <algorithm>

using zel::species::MoleculeTypes;

namespace {

namespace C = ZelDbColumn;

constexpr qsizetype LongestTitle = 200;

enum Chapter {
    Molecules,
    Interactions,
    Species,
    Patterns,
    Complexes,
    Reactions,
    Parameters,
    Observables,
    Seeds,
    Compartments,
    Untranslated,
    ChapterCount
};

/// Those that are referred to come before those that refer.
constexpr Chapter readingOrder[] = {Parameters, Compartments, Molecules, Interactions, Species,
    Patterns, Complexes, Reactions, Observables, Seeds, Untranslated};
static_assert(std::size(readingOrder) == ChapterCount);

std::vector<ZelModelReportChapter> makeChapters()
{
    static constexpr char notDrawnYet[] =
        "Complexes of which the model has no species and no pattern.";
    static constexpr char leftOpen[] =
        "What reactions ask of a species; a pattern leaves open what it does not say.";
    std::vector<ZelModelReportChapter> chapters = {{"molecules", "Molecules", "", false, {}},
        {"interactions", "Interactions", "Which sites may bind each other.", false, {}},
        {"species", "Species", "", false, {}}, {"patterns", "Patterns", leftOpen, false, {}},
        {"complexes", "Complexes", notDrawnYet, false, {}},
        {"reactions", "Reactions", "", false, {}}, {"parameters", "Parameters", "", true, {}},
        {"observables", "Observables", "", true, {}}, {"seeds", "Initial amounts", "", true, {}},
        {"compartments", "Compartments", "", true, {}},
        {"untranslated", "Not translated", "Kept as the imported file had it.", true, {}}};
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        const char *const file = kind.isReaction() ? chapters[Reactions].file : kind.name;
        for (ZelModelReportChapter &chapter : chapters) {
            if (QLatin1String(chapter.file) == QLatin1String(file))
                chapter.kinds.append(&kind);
        }
    }
    return chapters;
}

/// The id where it is one as the database gives them, else an escaped form of it that no other
/// record has and that needs no escaping in a link.
QString keyOf(const ZelModelKind &kind, const QString &id)
{
    static const QRegularExpression number(QStringLiteral("\\A[0-9]{1,18}\\z"));
    const QLatin1String word(kind.word);
    return id.startsWith(word) && number.match(id.sliced(word.size())).hasMatch()
        ? id
        : word + u'-' + ZelModelText::fileName(id).replace(u'%', u'=');
}

QPair<QString, QString> sortedPair(const QString &a, const QString &b)
{
    return a < b ? qMakePair(a, b) : qMakePair(b, a);
}

QString detailOf(const ZelModelKind &kind, const ZelDbRecord &record)
{
    const QString unit = record.value(C::Unit);
    const QString value = kind.type == ZelDb::Parameter ? record.value(C::ParameterValue)
        : kind.type == ZelDb::Seed                      ? record.value(C::SeedAmount)
                                                        : QString();
    return unit.isEmpty() || value.isEmpty() ? value : value + u' ' + unit;
}

/// The columns in which a rate or an amount stands, as a number or an expression.
constexpr int valueColumns[] = {C::AssociationRate, C::DissociationRate, C::Rate,
    C::DegradationRate, C::PdnM, C::PdnN, C::PdnK, C::PdnDelay, C::SeedAmount, C::CompartmentSize};

} // namespace

int ZelModelReportChapter::partCount() const
{
    return (count + ZelModelReportPlaces::PartLength - 1) / ZelModelReportPlaces::PartLength;
}

bool ZelModelReportChapter::isInline() const
{
    return isTable && count <= ZelModelReportPlaces::LongestInlineTable;
}

QString ZelModelReportChapter::pageName(int part) const
{
    if (isInline())
        return QLatin1String(ZelModelReportFolder::IndexFile);
    return QLatin1String(file) + (part > 0 ? u'-' + QString::number(part + 1) : QString())
        + QLatin1String(".html");
}

bool ZelModelReportPlaces::read(const ZelDbSqliteModel &db, const MoleculeTypes &catalog)
{
    m_chapters = makeChapters();
    if (!db.visitRecords(ZelDb::Cpx, {C::CpxMolCode}, [this](const ZelDbRecord &record) {
            m_molCodes.insert(record.value(C::PsiimId), record.value(C::CpxMolCode));
            return true;
        }))
        return false;
    for (const Chapter chapter : readingOrder) {
        if (!readChapter(db, chapter)
            || (chapter == Interactions && !readInteractions(db, catalog)))
            return false;
    }
    for (const int parameter : std::as_const(m_parameters))
        addNames(at(parameter).detail, parameter);
    m_molCodes.clear();
    m_shownComplexes.clear();
    return true;
}

bool ZelModelReportPlaces::readChapter(const ZelDbSqliteModel &db, int chapter)
{
    m_chapters[static_cast<std::size_t>(chapter)].first = size();
    const QList<const ZelModelKind *> kinds = m_chapters[static_cast<std::size_t>(chapter)].kinds;
    return std::all_of(kinds.begin(), kinds.end(), [&](const ZelModelKind *kind) {
        return kind->visit(db, [&](const ZelDbRecord &record) {
            // A complex that was drawn with its states is not drawn again without them.
            if (chapter != Complexes || !m_shownComplexes.contains(record.value(C::PsiimId)))
                add(*kind, record, chapter);
            return true;
        });
    });
}

void ZelModelReportPlaces::add(const ZelModelKind &kind, const ZelDbRecord &record, int chapter)
{
    const QString id = record.value(C::PsiimId);
    const QString name = kind.nameOf(record);
    ZelModelReportChapter &own = m_chapters[static_cast<std::size_t>(chapter)];
    ZelModelReportPlace place;
    place.kind = &kind;
    place.key = keyOf(kind, id);
    const int seeded = kind.type == ZelDb::Seed ? find(ZelDb::Cpa, record.value(C::SeedCpa)) : None;
    place.title = seeded != None
        ? QLatin1String("amount of ") + at(seeded).title
        : ZelModelText::shortened(name.isEmpty() ? id : name, LongestTitle);
    place.detail = detailOf(kind, record);
    place.chapter = chapter;
    place.part = own.count++ / PartLength;
    const int index = size();
    m_places.push_back(std::move(place));
    m_byId.insert(qMakePair(kind.type, id), index);
    if (kind.type == ZelDb::Parameter)
        m_parameters.insert(name, index);
    addUses(kind, record, index);
}

void ZelModelReportPlaces::addUses(const ZelModelKind &kind, const ZelDbRecord &record, int place)
{
    const auto addOnce = [place](std::vector<int> *list) {
        if (list->empty() || list->back() != place)
            list->push_back(place);
    };
    const QStringList reactants = ZelModelKinds::reactants(kind, record);
    for (const QString &alias : reactants) {
        if (const int used = find(ZelDb::Cpa, alias); used != None)
            addOnce(&m_places[static_cast<std::size_t>(used)].takers);
    }
    const QStringList products = ZelModelKinds::products(kind, record);
    for (const QString &alias : products) {
        if (const int used = find(ZelDb::Cpa, alias); used != None)
            addOnce(&m_places[static_cast<std::size_t>(used)].givers);
    }
    if (kind.type == ZelDb::Cai)
        use(interactionOf(record.value(C::Bst1), record.value(C::Bst2)), place);
    if (kind.type == ZelDb::Seed)
        use(find(ZelDb::Cpa, record.value(C::SeedCpa)), place);
    if (kind.type == ZelDb::Cpa || kind.type == ZelDb::Cpx) {
        const QString cpx =
            record.value(kind.type == ZelDb::Cpa ? int(C::CpaCpx) : int(C::PsiimId));
        m_shownComplexes.insert(cpx);
        const QStringList mols = m_molCodes.value(cpx).split(u';', Qt::SkipEmptyParts);
        for (const QString &mol : mols)
            use(find(ZelDb::Mol, mol), place);
    }
    for (const int column : valueColumns)
        addNames(record.value(column), place);
}

void ZelModelReportPlaces::use(int used, int user)
{
    if (used == None || used == user)
        return;
    std::vector<int> &users = m_places[static_cast<std::size_t>(used)].users;
    // A record's uses come one after the other.
    if (users.empty() || users.back() != user)
        users.push_back(user);
}

void ZelModelReportPlaces::addNames(const QString &expression, int place)
{
    static const QRegularExpression word(QStringLiteral("[A-Za-z_][A-Za-z0-9_]*"));
    if (expression.isEmpty())
        return;
    if (const int parameter = parameterNamed(expression); parameter != None) {
        use(parameter, place);
        return;
    }
    for (auto words = word.globalMatch(expression); words.hasNext();)
        use(parameterNamed(words.next().captured()), place);
}

bool ZelModelReportPlaces::readInteractions(
    const ZelDbSqliteModel &db, const MoleculeTypes &catalog)
{
    return db.visitRecords(ZelDb::Mli, {}, [&](const ZelDbRecord &record) {
        const QString id = record.value(C::PsiimId);
        const int place = find(ZelDb::Mli, id);
        const QList<QStringList> pairs = db.mliGetArrayBstBst(id);
        for (const QStringList &pair : pairs) {
            const QString bst1 = pair.value(3);
            const QString bst2 = pair.value(5);
            use(moleculeOf(catalog, bst1), place);
            use(moleculeOf(catalog, bst2), place);
            m_interactions.insert(sortedPair(bst1, bst2), place);
            m_partners[bst1].append({place, bst2});
            if (bst1 != bst2)
                m_partners[bst2].append({place, bst1});
        }
        return true;
    });
}

int ZelModelReportPlaces::moleculeOf(const MoleculeTypes &catalog, const QString &bst) const
{
    const MoleculeTypes::Site site = catalog.site(bst);
    return site.mol < 0 ? None
                        : find(ZelDb::Mol, catalog.mols()[static_cast<std::size_t>(site.mol)].id);
}

const ZelModelReportPlace &ZelModelReportPlaces::at(int place) const
{
    return m_places[static_cast<std::size_t>(place)];
}

int ZelModelReportPlaces::find(int type, const QString &id) const
{
    return m_byId.value(qMakePair(type, id), None);
}

int ZelModelReportPlaces::interactionOf(const QString &bst1, const QString &bst2) const
{
    return m_interactions.value(sortedPair(bst1, bst2), None);
}

QString ZelModelReportPlaces::href(int place) const
{
    const ZelModelReportPlace &there = at(place);
    return m_chapters[static_cast<std::size_t>(there.chapter)].pageName(there.part) + u'#'
        + there.key;
}

void ZelModelReportPlaces::setPicture(int place, const QSize &size)
{
    m_places[static_cast<std::size_t>(place)].picture = size;
}

void ZelModelReportPlaces::setDetail(int place, const QString &text)
{
    m_places[static_cast<std::size_t>(place)].detail = ZelModelText::shortened(text, LongestTitle);
}

QString ZelModelReportPlaces::pictureName(const ZelModelReportPlace &place)
{
    return QLatin1String(ZelModelReportFolder::PictureFolder) + u'/' + place.key
        + QLatin1String(".svg");
}
