// SPDX-License-Identifier: MIT
#include "ScreenPictures.h"

#include <QFile>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QStringList>

#include <leptonica/allheaders.h>
#include <libheif/heif.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

namespace quorvane {
namespace {

enum class Screen { large, middle, phone, cutOut };

struct Made
{
    const char* title;
    Screen screen;
    bool isDark;
    bool isGerman;
    const char* extension;
};

constexpr bool light = false;
constexpr bool dark = true;
constexpr bool english = false;
constexpr bool german = true;

constexpr std::array<Made, 40> made{{
    {"Quarterly Sales Report", Screen::large, light, english, "png"},
    {"Storage Growth by Quarter", Screen::large, light, english, "png"},
    {"Harbour Permit Renewal Form", Screen::large, light, english, "png"},
    {"Coastal Ferry Timetable", Screen::large, light, english, "jpg"},
    {"Autumn Release Checklist", Screen::large, light, english, "png"},
    {"Übersicht über größere Änderungen", Screen::large, light, german, "png"},
    {"Failed Build Log for Kestrel", Screen::large, dark, english, "png"},
    {"Iceland Contact Sheet", Screen::large, dark, english, "png"},
    {"Travel Expense Summary", Screen::large, dark, english, "jpg"},
    {"Rechnungen für das zweite Halbjahr", Screen::large, dark, german, "png"},
    {"Packing List for Northern Trip", Screen::middle, light, english, "png"},
    {"Energy Use per Household", Screen::middle, light, english, "png"},
    {"Walking Route along the Bay", Screen::middle, light, english, "png"},
    {"Kitchen Tile Samples", Screen::middle, light, english, "gif"},
    {"Backup Plan for Winter", Screen::middle, light, english, "tiff"},
    {"Network Settings Overview", Screen::middle, light, english, "jpeg"},
    {"Garden Planning Notes", Screen::middle, light, english, "tiff"},
    {"Train Ticket Booking", Screen::middle, light, english, "gif"},
    {"Einkaufsliste für das Wochenende", Screen::middle, light, german, "png"},
    {"Prüfbericht der Heizungsanlage", Screen::middle, light, german, "tiff"},
    {"Weekly Team Schedule", Screen::middle, dark, english, "png"},
    {"Server Memory Dashboard", Screen::middle, dark, english, "png"},
    {"Release Notes Draft", Screen::middle, dark, english, "tiff"},
    {"Database Migration Steps", Screen::middle, dark, english, "gif"},
    {"Photo Import Settings", Screen::middle, dark, english, "jpg"},
    {"Fahrplan der Straßenbahn", Screen::middle, dark, german, "png"},
    {"Kitchen Renovation Budget", Screen::phone, light, english, "heic"},
    {"Museum Opening Hours", Screen::phone, light, english, "heic"},
    {"Vaccination Appointment Details", Screen::phone, light, english, "heic"},
    {"Wegbeschreibung zum Bahnhof", Screen::phone, light, german, "heic"},
    {"Flight Boarding Pass", Screen::phone, dark, english, "heic"},
    {"Evening Weather Forecast", Screen::phone, dark, english, "heif"},
    {"Printer Queue Status", Screen::cutOut, light, english, "png"},
    {"Font Preview Window", Screen::cutOut, light, english, "png"},
    {"Calendar Sync Options", Screen::cutOut, light, english, "gif"},
    {"Anmeldung am Gerät", Screen::cutOut, light, german, "png"},
    {"Keyboard Layout Choices", Screen::cutOut, light, english, "jpg"},
    {"Wireless Signal Strength", Screen::cutOut, dark, english, "png"},
    {"Display Colour Profile", Screen::cutOut, dark, english, "png"},
    {"Lautstärke der Lautsprecher", Screen::cutOut, dark, german, "png"},
}};

QSize sizeOf(Screen screen)
{
    switch (screen) {
    case Screen::large:
        return {1920, 1080};
    case Screen::middle:
        return {1280, 800};
    case Screen::phone:
        return {750, 1334};
    case Screen::cutOut:
        break;
    }
    return {460, 240};
}

QStringList menusOf(bool isGerman)
{
    return isGerman ? QStringList{QStringLiteral("Datei"), QStringLiteral("Bearbeiten"),
                                  QStringLiteral("Ansicht"), QStringLiteral("Hilfe")}
                    : QStringList{QStringLiteral("File"), QStringLiteral("Edit"),
                                  QStringLiteral("View"), QStringLiteral("Help")};
}

QString proseOf(bool isGerman)
{
    return isGerman ? QStringLiteral(
                          "Alle Angaben wurden am Montag geprüft und an die zuständigen Stellen "
                          "weitergegeben. Rückfragen beantwortet das Büro im zweiten Stock "
                          "zwischen neun und zwölf Uhr. Änderungen gelten ab der nächsten Woche.")
                    : QStringLiteral(
                          "All entries were checked on Monday and passed on to the people in "
                          "charge. The office on the second floor answers questions between nine "
                          "and twelve. Changes take effect from next week on, unless somebody "
                          "objects before Friday evening.");
}

/// A window with a menu bar, its title and paragraphs of text.
QImage drawn(const ScreenPicture& picture)
{
    QImage image(picture.size, QImage::Format_RGB888);
    const QColor ground = picture.isDark ? QColor(0x1b, 0x1e, 0x24) : QColor(0xfb, 0xfb, 0xfc);
    const QColor words = picture.isDark ? QColor(0xe4, 0xe6, 0xea) : QColor(0x1e, 0x20, 0x24);
    const QColor bar = picture.isDark ? QColor(0x2a, 0x2e, 0x37) : QColor(0xe6, 0xe8, 0xec);
    image.fill(ground);
    QPainter painter(&image);
    painter.setPen(words);
    const bool isSmall = picture.size.height() < 400;
    const auto fontOf = [](int pixels, QFont::Weight weight) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(pixels);
        font.setWeight(weight);
        return font;
    };
    const int margin = isSmall ? 16 : 48;
    const int barHeight = isSmall ? 24 : 34;
    painter.fillRect(0, 0, picture.size.width(), barHeight, bar);
    painter.setFont(fontOf(isSmall ? 12 : 15, QFont::Normal));
    int x = margin;
    for (const QString& menu : menusOf(picture.isGerman)) {
        painter.drawText(QRect(x, 0, 200, barHeight), Qt::AlignLeft | Qt::AlignVCenter, menu);
        x += painter.fontMetrics().horizontalAdvance(menu) + 22;
    }
    painter.setFont(fontOf(isSmall ? 17 : 28, QFont::DemiBold));
    const int titleHeight = isSmall ? 40 : 80;
    painter.drawText(QRect(margin, barHeight, picture.size.width() - 2 * margin, titleHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, picture.title);
    painter.setFont(fontOf(isSmall ? 12 : 17, QFont::Normal));
    const int width = picture.size.width() - 2 * margin;
    int y = barHeight + titleHeight + margin / 2;
    const int maxParagraphs = 4;
    for (int i = 0; i < maxParagraphs; ++i) {
        const QRect area(margin, y, width, picture.size.height() - margin - y);
        QRect used;
        const QString prose = proseOf(picture.isGerman);
        used = painter.boundingRect(area, Qt::TextWordWrap, prose);
        if (used.bottom() > area.bottom()) {
            break;
        }
        painter.drawText(area, Qt::TextWordWrap, prose);
        y = used.bottom() + margin / 2;
    }
    return image;
}

struct DestroyPix
{
    void operator()(Pix* pixels) const { pixDestroy(&pixels); }
};

/// What Qt has no encoder for on every desktop.
bool writeWithLeptonica(const QImage& image, const char* path, int format)
{
    const std::unique_ptr<Pix, DestroyPix> pixels(pixCreate(image.width(), image.height(), 32));
    if (!pixels) {
        return false;
    }
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            pixSetRGBPixel(pixels.get(), x, y, qRed(pixel), qGreen(pixel), qBlue(pixel));
        }
    }
    setMsgSeverity(L_SEVERITY_NONE);
    return pixWrite(path, pixels.get(), format) == 0;
}

struct FreeHeif
{
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_encoder* encoder) const { heif_encoder_release(encoder); }
    void operator()(heif_image* image) const { heif_image_release(image); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
};

bool writeHeic(const QImage& image, const char* path)
{
    const std::unique_ptr<heif_context, FreeHeif> context(heif_context_alloc());
    heif_encoder* rawEncoder = nullptr;
    heif_image* rawImage = nullptr;
    if (heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &rawEncoder)
                .code != heif_error_Ok ||
        heif_image_create(image.width(), image.height(), heif_colorspace_RGB,
                          heif_chroma_interleaved_RGB, &rawImage)
                .code != heif_error_Ok) {
        return false;
    }
    const std::unique_ptr<heif_encoder, FreeHeif> encoder(rawEncoder);
    const std::unique_ptr<heif_image, FreeHeif> pixels(rawImage);
    constexpr int bitDepth = 8;
    if (heif_image_add_plane(rawImage, heif_channel_interleaved, image.width(), image.height(),
                             bitDepth)
            .code != heif_error_Ok) {
        return false;
    }
    int stride = 0;
    std::uint8_t* const rows = heif_image_get_plane(rawImage, heif_channel_interleaved, &stride);
    for (int y = 0; y < image.height(); ++y) {
        std::memcpy(rows + static_cast<std::ptrdiff_t>(y) * stride, image.constScanLine(y),
                    static_cast<std::size_t>(image.width()) * 3);
    }
    heif_image_handle* rawHandle = nullptr;
    if (heif_context_encode_image(context.get(), rawImage, rawEncoder, nullptr, &rawHandle).code !=
        heif_error_Ok) {
        return false;
    }
    const std::unique_ptr<heif_image_handle, FreeHeif> handle(rawHandle);
    return heif_context_write_to_file(context.get(), path).code == heif_error_Ok;
}

} // namespace

std::vector<ScreenPicture> screenPictures()
{
    std::vector<ScreenPicture> pictures;
    for (std::size_t i = 0; i < made.size(); ++i) {
        const Made& each = made[i];
        ScreenPicture picture;
        picture.fileName = QStringLiteral("Screenshot 2025-11-%1 at %2.%3")
                               .arg(static_cast<int>(i % 28) + 1, 2, 10, QLatin1Char('0'))
                               .arg(static_cast<int>(i), 2, 10, QLatin1Char('0'))
                               .arg(QLatin1String(each.extension));
        picture.title = QString::fromUtf8(each.title);
        picture.size = sizeOf(each.screen);
        picture.isDark = each.isDark;
        picture.isGerman = each.isGerman;
        pictures.push_back(std::move(picture));
    }
    return pictures;
}

bool writeScreenPicture(const ScreenPicture& picture, const FilePath& folder)
{
    const QImage image = drawn(picture);
    const std::string path = folder.appending(picture.fileName.toStdString()).bytes();
    if (picture.fileName.endsWith(QLatin1String(".tiff"))) {
        return writeWithLeptonica(image, path.c_str(), IFF_TIFF_LZW);
    }
    if (picture.fileName.endsWith(QLatin1String(".gif"))) {
        return writeWithLeptonica(image, path.c_str(), IFF_GIF);
    }
    if (picture.fileName.endsWith(QLatin1String(".heic")) ||
        picture.fileName.endsWith(QLatin1String(".heif"))) {
        return writeHeic(image, path.c_str());
    }
    constexpr int quality = 90;
    return image.save(QFile::decodeName(path.c_str()), nullptr, quality);
}

} // namespace quorvane
