#include "apps/zelmodel/ZelModelReportWriter.h"

#include "apps/zelmodel/ZelModelContactMap.h"
#include "apps/zelmodel/ZelModelReportFolder.h"
#include "apps/zelmodel/ZelModelReportPage.h"
#include "apps/zelmodel/ZelModelReportRecords.h"
#include "apps/zelmodel/ZelModelReportSearch.h"
#include "apps/zelmodel/ZelModelReportTable.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "zelDb/ZelDb.h"

#include <QFile>

#include <algorithm>

using zel::species::MoleculeTypes;

namespace {

constexpr char MapFile[] = "contact-map.svg";
constexpr char Legend[] =
    "Each large circle is a component of a molecule; dashed lines hold the components of a "
    "molecule "
    "together. The small circles are binding sites, numbered as in the list of molecules, and "
    "solid "
    "lines between them are bonds. A square is a state of its component, in the order of the list "
    "of molecules: filled when it is on, empty when it is off, pale with a dotted rim when a "
    "pattern leaves it open, and half filled where it may be either.";
constexpr int MostContacts = 200; // interactions that are listed on the first page, too

} // namespace

ZelModelReportWriter::ZelModelReportWriter(
    ZelModelRun *run, ZelModelReportFolder *folder, const QString &modelName)
    : m_run(*run), m_folder(*folder), m_details(run->db()), m_frame(m_places, modelName)
{
}

ZelModelReportWriter::~ZelModelReportWriter() = default;

QStringList ZelModelReportWriter::faulty() const
{
    return m_records ? m_records->faulty() : QStringList();
}

bool ZelModelReportWriter::write()
{
    const auto kinds = ZelModelKinds::all();
    if (!std::all_of(kinds.begin(), kinds.end(),
            [this](const ZelModelKind &kind) { return m_details.prepare(kind); })
        || !m_places.read(m_run.db(), m_details.catalog()) || !writeResources())
        return false;
    m_search = std::make_unique<ZelModelReportSearch>(&m_folder, m_places);
    m_records = std::make_unique<ZelModelReportRecords>(
        &m_run.db(), m_details, &m_places, &m_folder, m_search.get());
    const std::vector<ZelModelReportChapter> &chapters = m_places.chapters();
    return std::all_of(chapters.begin(), chapters.end(),
               [this](const ZelModelReportChapter &chapter) {
                   return chapter.isInline() || writeChapter(chapter);
               })
        && writeIndex() && m_search->finish();
}

bool ZelModelReportWriter::writeResources()
{
    for (const char *name : {"style.css", "search.js"}) {
        QFile file(QLatin1String(":/zelmodel/report/") + QLatin1String(name));
        if (!file.open(QIODevice::ReadOnly) || !m_folder.write(QLatin1String(name), file.readAll()))
            return false;
    }
    return true;
}

bool ZelModelReportWriter::visit(const ZelModelReportChapter &chapter,
    const std::function<bool(int, const ZelDbRecord &)> &visitor)
{
    bool goesOn = true;
    const bool isRead =
        std::all_of(chapter.kinds.begin(), chapter.kinds.end(), [&](const ZelModelKind *kind) {
            return goesOn && kind->visit(m_run.db(), [&](const ZelDbRecord &record) {
                const int place = m_places.find(kind->type, record.value(ZelDbColumn::PsiimId));
                if (place == ZelModelReportPlaces::None)
                    return true;
                goesOn = m_run.advance(QStringLiteral("Writing"), ++m_done, m_places.size())
                    && visitor(place, record);
                return goesOn;
            });
        });
    return isRead && goesOn;
}

bool ZelModelReportWriter::writeChapter(const ZelModelReportChapter &chapter)
{
    return visit(chapter, [&](int place, const ZelDbRecord &record) {
        return writeRecord(chapter, place, record);
    }) && endPart();
}

bool ZelModelReportWriter::writeRecord(
    const ZelModelReportChapter &chapter, int place, const ZelDbRecord &record)
{
    const ZelModelReportPlace &own = m_places.at(place);
    if ((!m_page || own.part != m_part) && !turnPage(chapter, own.part))
        return false;
    if (chapter.isTable) {
        m_table->write(place, record);
        return true;
    }
    const bool hasSections = chapter.kinds.size() > 1;
    if (hasSections && m_section != own.kind)
        beginSection(*own.kind);
    return m_records->write(m_page.get(), hasSections ? 3 : 2, place, record);
}

bool ZelModelReportWriter::turnPage(const ZelModelReportChapter &chapter, int part)
{
    if (!endPart())
        return false;
    m_page = std::make_unique<ZelModelReportPage>(&m_folder, chapter.pageName(part));
    m_chapter = &chapter;
    m_part = part;
    m_frame.beginPart(m_page.get(), chapter, part);
    if (chapter.isTable)
        m_table = std::make_unique<ZelModelReportTable>(
            m_page.get(), m_places, m_search.get(), *chapter.kinds.first());
    return true;
}

bool ZelModelReportWriter::endPart()
{
    if (!m_page)
        return true;
    m_table.reset();
    endSection();
    m_frame.endPart(m_page.get(), *m_chapter, m_part);
    const bool good = m_page->finish();
    m_page.reset();
    return good;
}

void ZelModelReportWriter::beginSection(const ZelModelKind &kind)
{
    endSection();
    m_section = &kind;
    QString title = QLatin1String(kind.name);
    title[0] = title.at(0).toUpper();
    m_page->open("section");
    m_page->heading(2, title);
}

void ZelModelReportWriter::endSection()
{
    if (m_section)
        m_page->close();
    m_section = nullptr;
}

bool ZelModelReportWriter::writeIndex()
{
    ZelModelReportPage page(&m_folder, QLatin1String(ZelModelReportFolder::IndexFile));
    m_frame.beginIndex(&page);
    writeCounts(&page);
    if (!writeMap(&page))
        return false;
    writeContacts(&page);
    for (const ZelModelReportChapter &chapter : m_places.chapters()) {
        if (chapter.count > 0 && chapter.isInline() && !writeTable(&page, chapter))
            return false;
    }
    m_frame.end(&page);
    return page.finish();
}

void ZelModelReportWriter::writeCounts(ZelModelReportPage *page)
{
    page->open("ul", "counts");
    for (const ZelModelReportChapter &chapter : m_places.chapters()) {
        if (chapter.count == 0)
            continue;
        page->open("li");
        page->open("a",
            {{"href",
                chapter.isInline() ? u'#' + QLatin1String(chapter.file) : chapter.pageName(0)}});
        page->element("strong", QString::number(chapter.count));
        page->text(u' ' + QLatin1String(chapter.title));
        page->close();
        page->close();
    }
    page->close();
    page->lineEnd();
}

bool ZelModelReportWriter::writeMap(ZelModelReportPage *page)
{
    const ZelModelContactMap map(&m_run.db());
    if (map.isNull())
        return true;
    const QString title = QStringLiteral("Contact map");
    const QString name =
        QLatin1String(ZelModelReportFolder::PictureFolder) + u'/' + QLatin1String(MapFile);
    page->open("section");
    page->heading(2, title);
    page->open("figure", "map");
    page->open("a", {{"href", name}});
    page->leaf("img",
        {{"src", name},
            {"alt",
                QStringLiteral("Drawing of all molecules, with a line between any two sites that "
                               "may bind; the table beneath says the same.")},
            {"width", QString::number(map.size().width())},
            {"height", QString::number(map.size().height())}});
    page->close();
    page->close();
    page->lineEnd();
    page->open("details", "legend");
    page->element("summary", QStringLiteral("How to read the drawings"));
    page->element("p", QLatin1String(Legend));
    page->close();
    page->close();
    page->lineEnd();
    return m_folder.write(name, map.toSvg(title));
}

/// Which site may bind which: what the contact map draws, as a text.
void ZelModelReportWriter::writeContacts(ZelModelReportPage *page)
{
    const std::vector<ZelModelReportChapter> &chapters = m_places.chapters();
    const bool isShort = std::any_of(chapters.begin(), chapters.end(), [](const auto &chapter) {
        return QLatin1String(chapter.file) == QLatin1String("interactions") && chapter.count > 0
            && chapter.count <= MostContacts;
    });
    if (!isShort)
        return;
    page->open("section", {{"id", QStringLiteral("contacts")}});
    page->heading(2, QStringLiteral("Which sites may bind"));
    page->open("table", "contacts");
    page->headRow({"Molecule", "Site", "May bind"});
    page->open("tbody");
    for (const MoleculeTypes::Mol &mol : m_details.catalog().mols())
        writeContactsOf(page, mol);
    page->close();
    page->close();
    page->close();
    page->lineEnd();
}

void ZelModelReportWriter::writeContactsOf(ZelModelReportPage *page, const MoleculeTypes::Mol &mol)
{
    const MoleculeTypes &catalog = m_details.catalog();
    for (const MoleculeTypes::Mcp &mcp : mol.mcps) {
        for (qsizetype i = 0; i < mcp.sites.size(); ++i) {
            const QList<ZelModelReportPartner> partners = m_places.partners(mcp.sites.at(i).id);
            if (partners.isEmpty())
                continue;
            page->open("tr");
            page->open("th", {{"scope", QStringLiteral("row")}});
            page->link(m_places.href(m_places.find(ZelDb::Mol, mol.id)), mol.name);
            page->close();
            page->open("td");
            page->name(mol.siteName(mcp.firstSite + static_cast<int>(i)));
            page->close();
            page->open("td");
            for (qsizetype p = 0; p < partners.size(); ++p) {
                if (p > 0)
                    page->text(QStringLiteral(", "));
                page->link(m_places.href(partners.at(p).interaction),
                    catalog.siteTitle(partners.at(p).site));
            }
            page->close();
            page->close();
            page->lineEnd();
        }
    }
}

bool ZelModelReportWriter::writeTable(
    ZelModelReportPage *page, const ZelModelReportChapter &chapter)
{
    page->open("section", {{"id", QLatin1String(chapter.file)}});
    page->heading(2, QLatin1String(chapter.title));
    if (*chapter.about)
        page->element("p", QLatin1String(chapter.about), "about");
    bool good = false;
    {
        ZelModelReportTable table(page, m_places, m_search.get(), *chapter.kinds.first());
        good = visit(chapter, [&table](int place, const ZelDbRecord &record) {
            table.write(place, record);
            return true;
        });
    }
    page->close();
    page->lineEnd();
    return good;
}
