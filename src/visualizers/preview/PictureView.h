// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QWidget>

namespace quorvane {

/// A picture in the middle, in its own size where that fits, else as large as the room allows. Main
/// thread.
class PictureView : public QWidget
{
    Q_OBJECT

public:
    explicit PictureView(QWidget* parent = nullptr);

    /// In device pixels; null for none.
    void setPicture(const QImage& picture);
    const QImage& picture() const { return m_picture; }
    /// Lets a small picture grow to the room as well.
    void setFillsRoom(bool fillsRoom);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_picture;
    bool m_fillsRoom = false;
};

} // namespace quorvane
