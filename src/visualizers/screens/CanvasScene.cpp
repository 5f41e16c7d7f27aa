// SPDX-License-Identifier: MIT
#include "CanvasScene.h"

#include "GrowthColors.h"
#include "HoverTooltip.h"
#include "LockedFlag.h"
#include "NodeColors.h"

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

QString itemLabel(const TooltipText& text)
{
    const QString label = text.title + QStringLiteral(", ") + text.detail;
    return text.note.isEmpty() ? label : QString(label + QStringLiteral(", ") + text.note);
}

Color SceneRequest::colorOf(const FileNode& node) const
{
    return growth ? growthColor(growth->stepOf(node)) : NodeColors::leafColor(node);
}

TooltipText CanvasScene::nodeText(const FileNode& node) const
{
    TooltipText text = hoverTooltipText(node);
    if (const SnapshotGrowth* const growth = m_request.growth.get()) {
        const Color mark = growthColor(growth->stepOf(node));
        text.note = sinceText(*growth, node);
        text.mark = QColor::fromRgbF(static_cast<float>(mark.r), static_cast<float>(mark.g),
                                     static_cast<float>(mark.b));
    }
    return text;
}

CanvasInk inkOn(const QColor& ground)
{
    constexpr int middle = 128;
    if (qGray(ground.rgb()) < middle) {
        return {QColor(0xEC, 0xEE, 0xF2), QColor(0xA8, 0xAE, 0xBA), QColor(0x91, 0x99, 0xA7)};
    }
    return {QColor(0x15, 0x17, 0x1C), QColor(0x48, 0x4E, 0x59), QColor(0x58, 0x60, 0x6C)};
}

CanvasRendering renderScene(ScenePointer scene, const CanvasStyle& style, const LockedFlag& stop)
{
    CanvasRendering rendering{std::move(scene), style, {}, {}};
    const QSize size = rendering.scene->request().size;
    rendering.bright = emptyPicture(size, style);
    if (rendering.bright.isNull()) {
        return rendering;
    }
    rendering.scene->paint(rendering.bright, style, false);
    if (!stop.get() && !rendering.scene->request().growth) {
        rendering.dimmed = emptyPicture(size, style);
        rendering.scene->paint(rendering.dimmed, style, true);
    }
    return rendering;
}

} // namespace quorvane
