// SPDX-License-Identifier: MIT
#include "DrawingReader.h"

#include <QBuffer>
#include <QImageReader>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <zlib.h>

#include <utility>

namespace quorvane {
namespace {

/// Most characters that a name from the document type may stand for, and most bytes of a drawing
/// that has such names: each mention of one takes their room.
constexpr int maxEntityLength = 256;
constexpr qsizetype maxBytesWithEntities = 1024 * 1024;

/// What zlib needs to look for the head of a gzip file by itself.
constexpr int gzipWindow = 15 + 32;

/// The beginning of the packed bytes' contents, at most one byte beyond the bound.
QByteArray unpacked(QByteArray packed)
{
    z_stream stream{};
    if (inflateInit2(&stream, gzipWindow) != Z_OK) {
        return {};
    }
    QByteArray contents(maxDrawingBytes + 1, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(contents.data());
    stream.avail_out = static_cast<uInt>(contents.size());
    const int result = inflate(&stream, Z_FINISH);
    contents.truncate(static_cast<qsizetype>(stream.total_out));
    inflateEnd(&stream);
    return result == Z_STREAM_END || result == Z_BUF_ERROR ? contents : QByteArray();
}

/// Copies a drawing token by token.
class SelfContainedCopy
{
public:
    explicit SelfContainedCopy(const QByteArray& drawing)
        : m_size(drawing.size())
        , m_reader(drawing)
        , m_writer(&m_result)
    {
        m_reader.setNamespaceProcessing(false);
        m_reader.setEntityExpansionLimit(maxEntityLength);
    }

    QByteArray make()
    {
        while (!m_reader.atEnd()) {
            m_reader.readNext();
            if (m_reader.isDTD() && !m_reader.entityDeclarations().isEmpty() &&
                m_size > maxBytesWithEntities) {
                return {};
            }
            copyToken();
            if (m_result.size() > 2 * maxDrawingBytes) {
                return {};
            }
        }
        return m_reader.hasError() ? QByteArray() : m_result;
    }

private:
    void copyToken()
    {
        if (m_reader.isStartElement()) {
            copyElement(m_reader.qualifiedName().toString());
        } else if (m_reader.isEndElement()) {
            m_writer.writeEndElement();
        } else if (m_reader.isCharacters()) {
            m_writer.writeCharacters(m_reader.text().toString());
        }
    }

    /// Leaves out what refers to outside, with all that is in it; but a link, which is only text,
    /// and the whole drawing lose the reference alone.
    void copyElement(const QString& name)
    {
        if (!isWritable(name)) {
            m_reader.raiseError();
            return;
        }
        QXmlStreamAttributes kept;
        bool refersToOutside = false;
        for (const QXmlStreamAttribute& attribute : m_reader.attributes()) {
            if (!isWritable(attribute.qualifiedName())) {
                continue;
            }
            if (!isReference(attribute)) {
                kept.append(attribute);
            } else if (standsInside(attribute.value().trimmed())) {
                kept.append(attribute.qualifiedName().toString(),
                            attribute.value().trimmed().toString());
            } else {
                refersToOutside = true;
            }
        }
        if (refersToOutside && !isOnlyContainer(name)) {
            m_reader.skipCurrentElement();
            return;
        }
        m_writer.writeStartElement(name);
        for (const QXmlStreamAttribute& attribute : kept) {
            m_writer.writeAttribute(attribute.qualifiedName().toString(),
                                    attribute.value().toString());
        }
    }

    /// With one prefix at most, as the writer wants names.
    static bool isWritable(QStringView name) { return name.count(QLatin1Char(':')) <= 1; }

    static bool isOnlyContainer(const QString& name)
    {
        return name == QLatin1String("a") || name == QLatin1String("svg") ||
               name.endsWith(QLatin1String(":a")) || name.endsWith(QLatin1String(":svg"));
    }

    static bool isReference(const QXmlStreamAttribute& attribute)
    {
        const QStringView name = attribute.qualifiedName();
        return name == QLatin1String("href") || name.endsWith(QLatin1String(":href"));
    }

    bool standsInside(QStringView reference)
    {
        return reference.startsWith(QLatin1Char('#')) || isHeldPicture(reference);
    }

    /// Whether the reference itself holds a picture within the bounds, and none that has references
    /// of its own. It has to be whole: what the renderer cannot decode it takes for a file's name.
    bool isHeldPicture(QStringView reference)
    {
        const QLatin1String mark("base64,");
        const qsizetype begin = reference.lastIndexOf(mark);
        if (!reference.startsWith(QLatin1String("data:")) || begin < 0) {
            return false;
        }
        QByteArray bytes = QByteArray::fromBase64(reference.mid(begin + mark.size()).toLatin1());
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QImageReader picture(&buffer);
        const QSize size = picture.size();
        const QByteArray format = picture.format();
        if (!size.isValid() || format.isEmpty() || format.startsWith("svg")) {
            return false;
        }
        m_pixels += qint64{size.width()} * size.height();
        return m_pixels <= maxHeldPixels && !picture.read().isNull();
    }

    qsizetype m_size;
    QXmlStreamReader m_reader;
    QByteArray m_result;
    QXmlStreamWriter m_writer;
    qint64 m_pixels = 0;
};

} // namespace

QByteArray selfContained(const QByteArray& drawing)
{
    return SelfContainedCopy(drawing).make();
}

Picture readDrawing(QIODevice& device, const QSize& room)
{
    QByteArray bytes = device.read(maxDrawingBytes + 1);
    if (bytes.startsWith("\x1f\x8b")) {
        bytes = unpacked(std::move(bytes));
    }
    if (bytes.size() > maxDrawingBytes) {
        return {};
    }
    QByteArray drawing = selfContained(bytes);
    if (drawing.isEmpty()) {
        return {};
    }
    QBuffer buffer(&drawing);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "svg");
    const QSize size = reader.size();
    if (!size.isValid()) {
        return {};
    }
    reader.setScaledSize(size.scaled(room, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    return {fitted(reader.read(), room), size};
}

} // namespace quorvane
