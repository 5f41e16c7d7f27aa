// SPDX-License-Identifier: MIT
#include "CanvasScene.h"

#include "LockedFlag.h"

#include <utility>

namespace quorvane {
namespace {

QImage emptyPicture(const QSize& size, const CanvasStyle& style)
{
    QImage picture((QSizeF(size) * style.devicePixelRatio).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(style.devicePixelRatio);
    picture.fill(style.ground);
    return picture;
}

} // namespace

CanvasRendering renderScene(ScenePointer scene, const CanvasStyle& style, const LockedFlag& stop)
{
    CanvasRendering rendering{std::move(scene), style, {}, {}};
    const QSize size = rendering.scene->request().size;
    rendering.bright = emptyPicture(size, style);
    if (rendering.bright.isNull()) {
        return rendering;
    }
    rendering.scene->paint(rendering.bright, style, false);
    if (!stop.get()) {
        rendering.dimmed = emptyPicture(size, style);
        rendering.scene->paint(rendering.dimmed, style, true);
    }
    return rendering;
}

} // namespace quorvane
