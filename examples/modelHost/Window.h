#pragma once

#include "Editors.h"

#include <QHash>
#include <QMainWindow>
#include <QPixmap>

#include <memory>

class QMimeData;
class QModelIndex;
class QStandardItem;
class QStandardItemModel;
class QTabWidget;
class QTreeView;
class ZelDialogs;

/// The entries of a model at the left, the editors of those that were opened in tabs.
class Window : public QMainWindow
{
    Q_OBJECT
public:
    explicit Window(ZelDbSqliteModel *db);
    ~Window() override;

    void openEntry(const QString &tag, const QString &psiimId);
    /// The first entry of each kind, for a picture of what there is.
    void openFirstEntries();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void fillEntries();
    void addEntries(const QString &title, const QStringList &ids, int kind);
    void openIndex(const QModelIndex &index);
    void makeToolBar();
    Editor *currentEditor() const;
    void save();
    /// Asks for the short name until nobody else has it; false when the user gave up.
    bool askName(Editor *editor);
    void editRates();
    void closeTab(int index);
    void updateTabs();

    // What only molecules have
    void addComponent();
    void addSite();
    void addFeature();

    ZelDbSqliteModel *m_db;
    std::unique_ptr<ZelDialogs> m_dialogs;
    QStandardItemModel *m_entries;
    QTreeView *m_tree;
    QTabWidget *m_tabs;
    QHash<QString, QPixmap> m_pictures;
};
