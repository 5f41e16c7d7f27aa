// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "LockedFlag.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <memory>
#include <string>

namespace quorvane {

/// Makes scenes of trees from text, without a canvas.
template<class Scene>
class SceneFixture : public ::testing::Test
{
protected:
    std::shared_ptr<const Scene> scene(const std::string& text, QSize size = {800, 600},
                                       SizeMode mode = SizeMode::logical)
    {
        m_tree = test::treeFromText(text);
        SceneRequest request;
        request.target = m_tree->rootPointer();
        request.isScanRoot = true;
        request.size = size;
        request.sizeMode = mode;
        const LockedFlag stop;
        return std::static_pointer_cast<const Scene>(Scene::make(request, stop));
    }

    static std::string nameAt(const CanvasScene& scene, double x, double y)
    {
        const std::optional<std::size_t> item = scene.itemAt(QPointF(x, y));
        return item ? std::string(scene.nodeOf(*item)->name()) : std::string("nothing");
    }

    std::size_t itemNamed(const CanvasScene& scene, const std::string& path)
    {
        return scene.itemOf(test::nodeAt(m_tree->root(), path)).value();
    }

    /// The whole picture, and what it is with one item below the pointer.
    static CanvasRendering render(const std::shared_ptr<const CanvasScene>& scene,
                                  const QColor& ground = Qt::black)
    {
        const LockedFlag stop;
        return renderScene(scene, {QFont(), ground, 1}, stop);
    }
    static QImage hover(const CanvasRendering& rendering, std::size_t item)
    {
        QImage picture = rendering.dimmed;
        QPainter painter(&picture);
        rendering.scene->restoreItem(painter, item, rendering.bright, rendering.dimmed);
        rendering.scene->paintHighlight(painter, item, CanvasScene::Highlight::hovered, Qt::blue);
        return picture;
    }

    std::shared_ptr<FileTree> m_tree;
};

} // namespace quorvane
