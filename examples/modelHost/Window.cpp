#include "Window.h"

#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelGraphicsViewZoom.h>
#include <zelModelSupport/graphics/ZelSceneMol.h>
#include <zelModelSupport/graphics/scene/ZelSceneEditing.h>
#include <zelModelSupport/support/ZelDialogs.h>
#include <zelModelSupport/support/zgs.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBst.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMli.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

#include <QCloseEvent>
#include <QDockWidget>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>

#include <algorithm>

namespace {

constexpr QSize PictureSize(60, 36); // leaves room for the texts

/// Entries can be dragged onto the scenes.
class EntryModel : public QStandardItemModel
{
public:
    using QStandardItemModel::QStandardItemModel;

    QStringList mimeTypes() const override { return {ZelSceneEditing::getPsiimIdMimeType()}; }
    QMimeData *mimeData(const QModelIndexList &indexes) const override
    {
        const QString entry = indexes.value(0).data(Qt::UserRole).toString();
        return entry.isEmpty() ? nullptr : ZelSceneEditing::createPsiimIdMimeData(entry);
    }
};

/// Says in the status bar what the library says in boxes.
class StatusDialogs : public ZelDialogs
{
public:
    explicit StatusDialogs(QStatusBar *bar) : m_bar(bar) { }

    void tellRefusal(const QString &reason) override { m_bar->showMessage(reason); }

private:
    QStatusBar *m_bar;
};

/// A view that keeps the editor whose scene it shows.
class EditorView : public ZelGraphicsViewZoom
{
public:
    explicit EditorView(std::unique_ptr<Editor> editor) : m_editor(std::move(editor))
    {
        setScene(m_editor->scene());
        setAcceptDrops(true);
    }

    /// Shows all that is drawn, at twice its size at most.
    void showAll()
    {
        ZelGraphicsViewZoom::showAll(
            scene()->itemsBoundingRect().adjusted(-20.0, -20.0, 20.0, 20.0));
    }

    ~EditorView() override { setScene(nullptr); }

    Editor *editor() const { return m_editor.get(); }

private:
    std::unique_ptr<Editor> m_editor;
};

} // namespace

Window::Window(ZelDbSqliteModel *db)
    : m_db(db), m_dialogs(std::make_unique<StatusDialogs>(statusBar())),
      m_entries(new EntryModel(this)), m_tree(new QTreeView), m_tabs(new QTabWidget)
{
    ZelDialogs::setCurrent(m_dialogs.get());
    m_tree->setModel(m_entries);
    m_tree->setHeaderHidden(true);
    // As wide as the widest picture, so that none is scaled.
    m_tree->setIconSize(QSize(
        3 * PictureSize.width() + 2 * zgs::getOperatorWidth(PictureSize), PictureSize.height()));
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tree->setDragEnabled(true);
    connect(m_tree, &QTreeView::doubleClicked, this, &Window::openIndex);
    auto *const dock = new QDockWidget(tr("Entries"));
    dock->setWidget(m_tree);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    m_tabs->setTabsClosable(true);
    connect(m_tabs, &QTabWidget::tabCloseRequested, this, &Window::closeTab);
    setCentralWidget(m_tabs);
    makeToolBar();
    fillEntries();
    resize(1200, 700);
    resizeDocks({dock}, {400}, Qt::Horizontal);
    statusBar()->showMessage(tr("Double-click an entry to edit it; drag entries onto a scene."));
}

Window::~Window() = default;

void Window::openEntry(const QString &tag, const QString &psiimId)
{
    for (int i = 0; i < m_tabs->count() && !psiimId.isEmpty(); ++i) {
        const Editor *const open = static_cast<EditorView *>(m_tabs->widget(i))->editor();
        if (open->tag() == tag && open->recordId() == psiimId) {
            m_tabs->setCurrentIndex(i);
            return;
        }
    }
    std::unique_ptr<Editor> editor = Editor::create(tag, m_db);
    if (!editor)
        return;
    if (!editor->open(psiimId))
        statusBar()->showMessage(tr("Parts of %1 are missing.").arg(psiimId));
    connect(editor.get(), &Editor::changed, this, &Window::updateTabs);
    connect(editor.get(), &Editor::changed, statusBar(), &QStatusBar::clearMessage);
    connect(editor->scene(), &ZelScene::signal_refused, statusBar(),
        [this](const QString &reason) { statusBar()->showMessage(reason); });
    auto *const view = new EditorView(std::move(editor));
    m_tabs->setCurrentIndex(m_tabs->addTab(view, QString()));
    QTimer::singleShot(0, view, [view] { view->showAll(); }); // its size is known by then
    updateTabs();
}

void Window::openFirstEntries()
{
    for (const auto &[tag, ids] : {std::pair(QStringLiteral("mol"), m_db->molGetListPsiimId()),
             std::pair(QStringLiteral("mli"), m_db->mliGetListPsiimId()),
             std::pair(QStringLiteral("cai"), m_db->caiGetListPsiimId()),
             std::pair(QStringLiteral("cpa"), m_db->cpaGetListPsiimId())}) {
        if (!ids.isEmpty())
            openEntry(tag, ids.first());
    }
}

void Window::closeEvent(QCloseEvent *event)
{
    while (m_tabs->count() > 0) {
        const int before = m_tabs->count();
        closeTab(before - 1);
        if (m_tabs->count() == before) {
            event->ignore();
            return;
        }
    }
}

void Window::fillEntries()
{
    m_entries->clear();
    m_pictures.clear();
    addEntries(tr("Molecules"), m_db->molGetListPsiimId(), zgs::ListedMol);
    addEntries(tr("Molecule interactions"), m_db->mliGetListPsiimId(), zgs::ListedMli);
    addEntries(tr("Species"), m_db->cpaGetListPsiimId(), zgs::ListedCpa);
    addEntries(tr("Associations"), m_db->caiGetListPsiimId(), zgs::ListedCai);
    addEntries(tr("Dissociations"), m_db->cadGetListPsiimId(), zgs::ListedCad);
    addEntries(tr("Transformations"), m_db->trnGetListPsiimId(), zgs::ListedTrn);
    addEntries(tr("Productions"), m_db->pdnGetListPsiimId(), zgs::ListedPdn);
    m_tree->expandAll();
}

void Window::addEntries(const QString &title, const QStringList &ids, int kind)
{
    auto *const group = new QStandardItem(title);
    for (const QString &id : ids)
        group->appendRow(zgs::createItem(m_db, PictureSize, QString(), id, kind, false, QString(),
            true, QStringList(), &m_pictures, QStringList()));
    m_entries->appendRow(group);
}

void Window::openIndex(const QModelIndex &index)
{
    const QStringList entry = index.data(Qt::UserRole).toString().split(u';');
    if (entry.size() == 2)
        openEntry(entry.first(), entry.last());
}

void Window::makeToolBar()
{
    QToolBar *const bar = addToolBar(tr("Edit"));
    const std::pair<QString, QString> kinds[] = {{tr("New molecule"), QStringLiteral("mol")},
        {tr("New complex"), QStringLiteral("cpa")}, {tr("New interaction"), QStringLiteral("mli")},
        {tr("New association"), QStringLiteral("cai")}};
    for (const auto &[text, tag] : kinds)
        bar->addAction(text, this, [this, tag] { openEntry(tag, QString()); });
    bar->addSeparator();
    bar->addAction(tr("Add component"), this, &Window::addComponent);
    bar->addAction(tr("Add site"), this, &Window::addSite);
    bar->addAction(tr("Add feature"), this, &Window::addFeature);
    bar->addAction(tr("Rates"), this, &Window::editRates);
    bar->addSeparator();
    bar->addAction(tr("Undo"), QKeySequence::Undo, this, [this] {
        if (Editor *editor = currentEditor())
            editor->undo();
    });
    bar->addAction(tr("Redo"), QKeySequence::Redo, this, [this] {
        if (Editor *editor = currentEditor())
            editor->redo();
    });
    bar->addAction(tr("Save"), QKeySequence::Save, this, &Window::save);
}

Editor *Window::currentEditor() const
{
    auto *const view = static_cast<EditorView *>(m_tabs->currentWidget());
    return view ? view->editor() : nullptr;
}

void Window::save()
{
    Editor *const editor = currentEditor();
    if (!editor)
        return;
    editor->prepare();
    if (!askName(editor))
        return;
    // Without rates it cannot be saved; without a bond they would be asked for in vain.
    SdcMli *const mli = editor->sdc()->toSdcMli();
    if (mli && !mli->canSave() && !mli->getListSdcBstBstMli().isEmpty())
        editRates();
    const QString reason = editor->save();
    if (!reason.isEmpty()) {
        QMessageBox::warning(this, tr("Save"), reason);
        return;
    }
    fillEntries();
    statusBar()->showMessage(tr("Saved as %1.").arg(editor->recordId()));
}

bool Window::askName(Editor *editor)
{
    Sdc *const sdc = editor->sdc();
    QString holder = editor->nameHolder();
    while (!holder.isEmpty() || sdc->getProperty(SdcProperty::ShortName).isEmpty()) {
        const QString name = sdc->getProperty(SdcProperty::ShortName);
        bool ok = false;
        const QString answer = QInputDialog::getText(this, tr("Save"),
            holder.isEmpty() ? tr("Short name:")
                             : tr("%1 is called '%2' already. Short name:").arg(holder, name),
            QLineEdit::Normal, name, &ok)
                                   .trimmed();
        if (!ok)
            return false;
        sdc->setProperty(SdcProperty::ShortName, answer);
        holder = editor->nameHolder();
        if (answer.isEmpty() && editor->tag() != QLatin1String("mol"))
            break; // it gets a default one
    }
    return true;
}

void Window::editRates()
{
    Editor *const editor = currentEditor();
    Sdc *const rated = editor ? editor->rated() : nullptr;
    if (!rated) {
        statusBar()->showMessage(tr("Only interactions and associations with a bond have rates."));
        return;
    }
    const ZelScene::Change change(editor->scene());
    for (const auto &[key, label] :
        {std::pair(SdcProperty::AssociationRate, tr("Association rate:")),
            std::pair(SdcProperty::DissociationRate, tr("Dissociation rate:"))}) {
        bool ok = false;
        const QString rate = QInputDialog::getText(
            this, tr("Rates"), label, QLineEdit::Normal, rated->getProperty(key), &ok);
        if (!ok)
            return;
        rated->setProperty(key, rate.trimmed());
    }
}

void Window::closeTab(int index)
{
    auto *const view = static_cast<EditorView *>(m_tabs->widget(index));
    if (view->editor()->isChanged()
        && QMessageBox::question(this, tr("Close"), tr("Close without saving the changes?"))
            != QMessageBox::Yes)
        return;
    m_tabs->removeTab(index);
    delete view;
}

void Window::updateTabs()
{
    for (int i = 0; i < m_tabs->count(); ++i) {
        const Editor *const editor = static_cast<EditorView *>(m_tabs->widget(i))->editor();
        const QString name = editor->sdc()->getProperty(SdcProperty::ShortName);
        m_tabs->setTabText(i,
            (name.isEmpty() ? editor->sdc()->getSdcName() : name)
                + (editor->isChanged() ? QStringLiteral(" *") : QString()));
    }
}

void Window::addComponent()
{
    Editor *const editor = currentEditor();
    SdcMol *const mol = editor ? editor->sdc()->toSdcMol() : nullptr;
    if (!mol)
        return;
    const QString name = QInputDialog::getText(this, tr("Add component"), tr("Short name:"));
    if (!mol->isUniqueMcpName(name, nullptr))
        return;
    const ZelScene::Change change(editor->scene());
    const QList<SdcMcp *> components = mol->getListSdcMcp();
    QGraphicsEllipseItem shape(QRectF(-30.0, -20.0, 60.0, 40.0));
    shape.setBrush(components.isEmpty() ? mol->getMolDefaultColor() : mol->getMolColor());
    if (SdcMcp *mcp =
            editor->scene()->addSdcMcp(&shape, components.isEmpty() ? nullptr : components.last()))
        mcp->setProperty(SdcProperty::ShortName, name);
}

void Window::addSite()
{
    Editor *const editor = currentEditor();
    SdcMol *const mol = editor ? editor->sdc()->toSdcMol() : nullptr;
    if (!mol || mol->getListSdcMcp().isEmpty())
        return;
    const ZelScene::Change change(editor->scene());
    if (SdcBst *bst = editor->scene()->addSdcBst(mol->getListSdcMcp().last()))
        bst->setProperty(SdcProperty::ShortName, bst->bstGetDefaultName(true));
}

void Window::addFeature()
{
    Editor *const editor = currentEditor();
    SdcMol *const mol = editor ? editor->sdc()->toSdcMol() : nullptr;
    if (!mol || mol->getListSdcMcp().isEmpty())
        return;
    SdcMcp *const mcp = mol->getListSdcMcp().last();
    const QString name = QInputDialog::getText(this, tr("Add feature"), tr("Name:"));
    if (!mcp->isUniqueTag(name, nullptr))
        return;
    const ZelScene::Change change(editor->scene());
    mcp->addTag(name, QStringLiteral("#336699"));
}
