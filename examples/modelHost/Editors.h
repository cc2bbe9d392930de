#pragma once

#include <zelDb/ZelDbSqliteModel.h>
#include <zelModelSupport/graphics/ZelScene.h>
#include <zelModelSupport/graphics/ZelSceneState.h>

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

class Sdc;

/// One record under edit: its scene, its data component, and the steps back and forth.
class Editor : public QObject
{
    Q_OBJECT
public:
    ~Editor() override;

    /// An editor for records of that tag ("mol", "cpx", "mli", "cai"); null for any other.
    static std::unique_ptr<Editor> create(const QString &tag, ZelDbSqliteModel *db);

    ZelScene *scene() const { return m_scene.get(); }
    Sdc *sdc() const { return m_sdc.get(); }
    /// Shows a stored record; an empty id leaves the scene empty for a new one.
    bool open(const QString &psiimId);
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
    virtual bool write() = 0;

    ZelDbSqliteModel *m_db;

private:
    void step(QList<ZelSceneState> *from, QList<ZelSceneState> *to);

    std::unique_ptr<Sdc> m_sdc;
    std::unique_ptr<ZelScene> m_scene; // dies before what it draws
    QList<ZelSceneState> m_undo;
    QList<ZelSceneState> m_redo;
    bool m_isChanged = false;
};
