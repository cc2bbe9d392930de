#pragma once

#include "support/ZelHands.h"
#include "support/ZelTest.h"
#include "support/ZelTree.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QImage>
#include <QPainter>

#include <memory>

/// A model in memory with molecules A (two components, features P and Q on the first, sites a1, a2
/// and a3) and B (one component, sites b1 and b2).
class EditingModel
{
public:
    EditingModel();

    ZelDbSqliteModel *db() { return &m_db; }
    QString molA() const { return m_molA; }
    QString molB() const { return m_molB; }

private:
    QString save(const QString &name, const QList<ZelTree::Mcp> &mcps, const QStringList &sites);

    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QString m_molA;
    QString m_molB;
};

/// A user who drags records onto the scene, too.
class Hands : public ZelHands
{
public:
    using ZelHands::ZelHands;

    /// Drags a record onto the view and lets it go; whether it was taken.
    bool drop(const QString &tagAndPsiimId, const QPointF &p);

    static QPointF centreOf(Sdc *sdc);
};

/// A site of a molecule by its short name.
SdcBst *siteOf(SdcMol *mol, const char *name);

/// A test of a scene that a user works on.
template <typename Scene>
class EditingTest : public ZelTest
{
protected:
    void init() override
    {
        ZelTest::init();
        m_model = std::make_unique<EditingModel>();
        m_scene = std::make_unique<Scene>();
        m_scene->setZelDbSqliteModel(m_model->db());
        m_user = std::make_unique<Hands>(m_scene.get());
    }

    void cleanup() override
    {
        m_user.reset();
        m_scene.reset();
        m_mols.clear();
        m_model.reset();
        ZelTest::cleanup();
    }

    void add(const QString &mol, const QPointF &p) { m_mols.append(m_scene->addMolFromDb(mol, p)); }
    /// An A on the left, a B on the right and another one below that.
    void addThree()
    {
        add(m_model->molA(), {-200.0, 0.0});
        add(m_model->molB(), {100.0, 0.0});
        add(m_model->molB(), {100.0, 150.0});
    }
    SdcBst *site(int mol, const char *name) { return siteOf(m_mols.at(mol), name); }

    QImage picture()
    {
        QImage image(1200, 600, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        m_scene->render(&painter, QRectF(), QRectF(-450.0, -300.0, 1200.0, 600.0));
        return image;
    }

    std::unique_ptr<EditingModel> m_model;
    std::unique_ptr<Scene> m_scene;
    std::unique_ptr<Hands> m_user;
    QList<SdcMol *> m_mols; // as they were added
};
