// SPDX-License-Identifier: MIT
#include "PictureView.h"

#include <QPainter>

namespace quorvane {

PictureView::PictureView(QWidget* parent)
    : QWidget(parent)
{}

void PictureView::setPicture(const QImage& picture)
{
    m_picture = picture;
    update();
}

void PictureView::setFillsRoom(bool fillsRoom)
{
    m_fillsRoom = fillsRoom;
    update();
}

void PictureView::paintEvent(QPaintEvent*)
{
    if (m_picture.isNull()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QSizeF shown = QSizeF(m_picture.size()) / devicePixelRatioF();
    if (m_fillsRoom || shown.width() > width() || shown.height() > height()) {
        shown.scale(size(), Qt::KeepAspectRatio);
    }
    QRectF place(QPointF(), shown);
    place.moveCenter(QRectF(rect()).center());
    painter.drawImage(place, m_picture);
}

} // namespace quorvane
