#pragma once

#include <zelDb/ZelDbSqliteModel.h>
#include <zelModelSupport/graphics/ZelScene.h>
#include <zelModelSupport/graphics/scene/ZelSceneState.h>
#include <zelModelSupport/zelModelSupportDataComponent/Sdc.h>

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

/// One record under edit: its scene, its data component, and the steps back and forth.
class Editor : public QObject
{
    Q_OBJECT
public:
    ~Editor() override;

    /// An editor for records of that tag ("mol", "cpa", "mli", "cai"); null for any other.
    static std::unique_ptr<Editor> create(const QString &tag, ZelDbSqliteModel *db);

    ZelScene *scene() const { return m_scene.get(); }
    Sdc *sdc() const { return m_sdc.get(); }
    /// Shows a stored record; an empty id leaves the scene empty for a new one.
    bool open(const QString &psiimId);
    /// The tag and the id of the record that it shows; the id is empty before the first save.
    QString tag() const { return m_tag; }
    QString recordId() const { return m_sdc->getProperty(m_idKey); }
    /// What has the rates of the record: an interaction, or the bond that is shown of it. Null
    /// where there are none.
    virtual Sdc *rated() const { return nullptr; }
    /// Before anything is asked for a save: what was drawn may be stored already.
    virtual void prepare() { }
    /// The record that has its short name already; empty when there is none.
    QString nameHolder();
    /// Writes it in one transaction; an empty text, or why nothing was written.
    QString save();
    bool isChanged() const { return m_isChanged; }

    void undo();
    void redo();

signals:
    void changed();

protected:
    Editor(ZelDbSqliteModel *db, std::unique_ptr<ZelScene> scene, std::unique_ptr<Sdc> sdc);

    virtual bool load(const QString &psiimId) = 0;
    /// Why write() would refuse it, as far as that can be asked before the file is locked.
    virtual QString refusal() { return {}; }
    virtual bool write() = 0;

    ZelDbSqliteModel *m_db;

private:
    void step(QList<ZelSceneState> *from, QList<ZelSceneState> *to);

    QString m_tag;
    int m_idKey = SdcProperty::PsiimId;
    std::unique_ptr<Sdc> m_sdc;
    std::unique_ptr<ZelScene> m_scene; // dies before what it draws
    QList<ZelSceneState> m_undo;
    QList<ZelSceneState> m_redo;
    bool m_isChanged = false;
};
