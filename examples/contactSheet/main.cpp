// Draws all that a model holds on sheets: its molecules, species and reactions with their names.
// Usage: contactSheet <model.zel or model.bngl> <out.png>; a model that needs more than one sheet
// goes on in out-2.png and so on. Needs no display.
#include <zelDb/ZelDbSqlite.h>
#include <zelDb/ZelDbSqliteModel.h>
#include <zelDb/ZelDbTypes.h>
#include <zelExchange/import/ZelBnglImport.h>
#include <zelModelSupport/support/zgs.h>

#include <QApplication>
#include <QFileInfo>
#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QStandardItem>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

namespace {

constexpr QSize SheetSize(1500, 1600);
constexpr QSize SpeciesSize(270, 180);
constexpr QSize ReactantSize(174, 116);
constexpr int Margin = 24;
constexpr int CaptionHeight = 34;
constexpr int HeadingHeight = 40;

/// Pictures with captions in rows, on as many sheets as they need.
class Sheets
{
public:
    explicit Sheets(QString path) : m_path(std::move(path)) { begin(); }

    void addHeading(const QString &text)
    {
        endRow();
        makeRoom(HeadingHeight + SpeciesSize.height());
        QFont font;
        font.setPixelSize(20);
        font.setBold(true);
        m_painter.setFont(font);
        m_painter.setPen(Qt::black);
        m_painter.drawText(QRect(Margin, m_y, SheetSize.width(), HeadingHeight),
            Qt::AlignLeft | Qt::AlignVCenter, text);
        m_y += HeadingHeight;
    }

    void add(const QPixmap &picture, const QString &caption)
    {
        if (m_x + picture.width() > SheetSize.width() - Margin)
            endRow();
        makeRoom(picture.height() + CaptionHeight);
        m_painter.setPen(QColor(0xdf, 0xe2, 0xe6));
        m_painter.drawRect(QRect(QPoint(m_x, m_y), picture.size()));
        m_painter.drawPixmap(m_x, m_y, picture);
        QFont font;
        font.setPixelSize(12);
        m_painter.setFont(font);
        m_painter.setPen(Qt::black);
        const QString text =
            QFontMetrics(font).elidedText(caption, Qt::ElideMiddle, 2 * picture.width() - 40);
        m_painter.drawText(
            QRect(m_x, m_y + picture.height() + 2, picture.width(), CaptionHeight - 2),
            Qt::AlignHCenter | Qt::AlignTop | Qt::TextWrapAnywhere, text);
        m_x += picture.width() + Margin / 2;
        m_rowHeight = std::max(m_rowHeight, picture.height() + CaptionHeight + Margin / 2);
    }

    /// Writes what is left; false when some sheet could not be written.
    bool finish()
    {
        endRow();
        save();
        return m_isWritten;
    }

    QString path() const
    {
        const QFileInfo info(m_path);
        return m_count == 1
            ? m_path
            : QString("%1/%2-%3.png").arg(info.path(), info.completeBaseName()).arg(m_count);
    }

private:
    void begin()
    {
        m_image = QImage(SheetSize, QImage::Format_RGB32);
        m_image.fill(Qt::white);
        m_painter.begin(&m_image);
        ++m_count;
        m_y = Margin;
    }

    void save()
    {
        m_painter.end();
        const QRect used(0, 0, SheetSize.width(), std::min(m_y + Margin, SheetSize.height()));
        m_isWritten = m_image.copy(used).save(path()) && m_isWritten;
    }

    void endRow()
    {
        m_x = Margin;
        m_y += std::exchange(m_rowHeight, 0);
    }

    void makeRoom(int height)
    {
        if (m_y + height <= SheetSize.height() - Margin)
            return;
        endRow();
        save();
        begin();
    }

    QString m_path;
    QImage m_image;
    QPainter m_painter;
    int m_count = 0;
    int m_x = Margin;
    int m_y = Margin;
    int m_rowHeight = 0;
    bool m_isWritten = true;
};

QString descriptionOf(const QString &psiimId, int kind, ZelDbSqliteModel *db)
{
    const std::unique_ptr<QStandardItem> item(
        zgs::createItem(db, ReactantSize, {}, psiimId, kind, false, {}, false, {}, nullptr, {}));
    return item->text();
}

/// The molecule's name, and its components with their states: what the pictures show as circles in
/// this order.
QString contentsOf(const QString &molPsiimId, const ZelDbSqliteModel *db)
{
    QStringList components;
    for (const QString &id : db->molGetListMcpPsiimId(molPsiimId)) {
        const QStringList states = db->mcpGetOrderedStateNames(id);
        const QString name = db->mcpGetHashInfo(id).value(ZelDbColumn::ShortName);
        components += states.isEmpty() ? name : name + ": " + states.join(" or ");
    }
    const QString name = db->molGetHashInfo(molPsiimId).value(ZelDbColumn::ShortName);
    return components.isEmpty() ? name : name + " (" + components.join(", ") + ')';
}

void draw(Sheets *sheets, ZelDbSqliteModel *db)
{
    sheets->addHeading("Molecules");
    for (const QString &id : db->molGetListPsiimId())
        sheets->add(
            zgs::getPixMapFromSdcPsiimId(id, zgs::PictureMol, SpeciesSize, db), contentsOf(id, db));
    sheets->addHeading("Species");
    for (const QString &id : db->cpaGetListPsiimId())
        sheets->add(zgs::getPixMapFromSdcPsiimId(id, zgs::PictureCpa, SpeciesSize, db),
            descriptionOf(id, zgs::ListedCpa, db));

    QHash<QString, QPixmap> pictures;
    const auto addReactions = [&](const char *heading, const QStringList &ids, auto picture,
                                  auto describe) {
        if (!ids.isEmpty())
            sheets->addHeading(heading);
        for (const QString &id : ids)
            sheets->add(picture(id, ReactantSize, db, &pictures), describe(id));
    };
    const auto asListed = [db](int kind) {
        return [db, kind](const QString &id) { return descriptionOf(id, kind, db); };
    };
    addReactions("Associations", db->caiGetListPsiimId(), zgs::getPixMapForAssociation,
        asListed(zgs::ListedCai));
    addReactions("Dissociations", db->cadGetListPsiimId(), zgs::getPixMapForDissociation,
        asListed(zgs::ListedCad));
    addReactions("Transformations", db->trnGetListPsiimId(), zgs::getPixMapForTransformation,
        asListed(zgs::ListedTrn));
    addReactions("Productions", db->pdnGetListPsiimId(), zgs::getPixMapForProduction,
        asListed(zgs::ListedPdn));
    addReactions("Degradations", db->degGetListPsiimId(), zgs::getPixMapForDegradation,
        [&](const QString &id) {
            const std::unique_ptr<QStandardItem> item(
                zgs::createDegradationItem(db, ReactantSize, id, false, {}, &pictures));
            return item->text();
        });
}

int fail(const QString &text)
{
    std::fprintf(stderr, "contactSheet: %s\n", qPrintable(text));
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: contactSheet <model.zel or model.bngl> <out.png>\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setFont(QFont("DejaVu Sans", 9)); // the same sheets on every machine
    const QString source = QString::fromLocal8Bit(argv[1]);
    ZelDbSqlite file;
    ZelDbSqliteModel db(&file);
    if (source.endsWith(".bngl") || source.endsWith(".net")) {
        ZelBnglImport importer(&db);
        if (!file.create(":memory:"))
            return fail(file.errorText());
        if (!importer.importFile(source))
            return fail(importer.report().error);
        std::printf("%s", qPrintable(importer.report().toText()));
    } else if (!file.openReadOnly(source)) {
        return fail(file.errorText());
    }
    Sheets sheets(QString::fromLocal8Bit(argv[2]));
    draw(&sheets, &db);
    if (!sheets.finish())
        return fail(QString("cannot write %1: check that its folder exists and may be written to.")
                        .arg(sheets.path()));
    return 0;
}
