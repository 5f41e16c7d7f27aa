// SPDX-License-Identifier: MIT
#include "Symbols.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <cmath>
#include <memory>

// Declared outside the namespace: the macro names a function of the global one.
static void loadSymbolResource()
{
    Q_INIT_RESOURCE(quorvane_symbols);
}

namespace quorvane {
namespace {

const QDir& symbolFolder()
{
    static const QDir folder = [] {
        loadSymbolResource();
        return QDir(QStringLiteral(":/symbols"));
    }();
    return folder;
}

/// The drawing of a symbol, read once; null for an unknown name.
QSvgRenderer* renderer(const QString& name)
{
    static QHash<QString, std::shared_ptr<QSvgRenderer>> renderers;
    const auto known = renderers.constFind(name);
    if (known != renderers.cend()) {
        return known->get();
    }
    if (name.isEmpty()) {
        return nullptr;
    }
    QFile file(symbolFolder().filePath(name));
    std::shared_ptr<QSvgRenderer> drawing;
    if (file.open(QIODevice::ReadOnly)) {
        // Only the coverage counts; the colour is laid over it afterwards.
        const QByteArray text = file.readAll().replace("currentColor", "#000000");
        drawing = std::make_shared<QSvgRenderer>(text);
    }
    renderers.insert(name, drawing);
    return drawing.get();
}

QImage tintedImage(QSvgRenderer& drawing, int pixels, const QColor& color)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

class SymbolEngine : public QIconEngine
{
public:
    SymbolEngine(const QString& name, ThemeColor color)
        : m_name(name)
        , m_color(color)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        paintSymbol(*painter, m_name, rect, std::min(rect.width(), rect.height()), color(mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        // `size` is in device pixels here; the icon sets the ratio on what it gets.
        Q_UNUSED(scale)
        return symbolPixmap(m_name, std::min(size.width(), size.height()), color(mode), 1);
    }

    QIconEngine* clone() const override { return new SymbolEngine(m_name, m_color); }
    QString key() const override { return QStringLiteral("quorvane-symbol"); }
    bool isNull() override { return !hasSymbol(m_name); }

private:
    QColor color(QIcon::Mode mode) const
    {
        if (mode == QIcon::Disabled) {
            return themeColor(ThemeColor::textDisabled);
        }
        return themeColor(mode == QIcon::Selected ? ThemeColor::accentLabel : m_color);
    }

    QString m_name;
    ThemeColor m_color;
};

} // namespace

QStringList symbolNames()
{
    static const QStringList names = symbolFolder().entryList(QDir::Files, QDir::Name);
    return names;
}

bool hasSymbol(const QString& name)
{
    return renderer(name) != nullptr;
}

QIcon symbolIcon(const QString& name, ThemeColor color)
{
    return hasSymbol(name) ? QIcon(new SymbolEngine(name, color)) : QIcon();
}

QPixmap symbolPixmap(const QString& name, int side, const QColor& color, qreal devicePixelRatio)
{
    QSvgRenderer* drawing = renderer(name);
    const int pixels = static_cast<int>(std::ceil(side * devicePixelRatio));
    if (!drawing || pixels <= 0) {
        return {};
    }
    const QString key = QStringLiteral("symbol/%1/%2/%3").arg(name).arg(pixels).arg(color.rgba());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap::fromImage(tintedImage(*drawing, pixels, color));
        QPixmapCache::insert(key, pixmap);
    }
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

void paintSymbol(QPainter& painter, const QString& name, const QRectF& area, int side,
                 const QColor& color)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QPixmap pixmap = symbolPixmap(name, side, color, ratio);
    if (pixmap.isNull()) {
        return;
    }
    // On whole device pixels the picture is copied as it is and stays crisp.
    const QPointF corner = area.center() - QPointF(side, side) / 2;
    const QPointF mapped = painter.transform().map(corner) * ratio;
    const QPointF snapped = QPointF(std::round(mapped.x()), std::round(mapped.y())) - mapped;
    painter.drawPixmap(corner + snapped / ratio, pixmap);
}

} // namespace quorvane
