#include "companions/docexport/ui/PictureFiles.h"

#include "companions/docexport/Texts.h"
#include "foundation/Exceptions.h"
#include "office/OutputFile.h"
#include "platform/base/Process.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>

using namespace Qt::StringLiterals;

namespace {

/// Sharp on paper: twice what a sheet is wide, at 150 dots an inch.
constexpr int c_nMaxPixels = 2000;
constexpr int c_nJpegQuality = 88;
/// A drawing has lines that are seen at twice the screen's dots.
constexpr int c_nDrawingZoom = 2;
constexpr qint64 c_nDrawingMs = 20'000;
constexpr quint64 c_nDrawingBytes = quint64{1} << 30;

/// Any picture that came so far could be read.
void Check(bool bWritten, const QString& strTarget, qint64 nBytes) {
    if (bWritten)
        return;
    // What there is of it takes room that it would have filled.
    QFile::remove(strTarget);
    const bool bRoom = Torvane::Office::HasRoom(QFileInfo(strTarget).path(), nBytes);
    throw Torvane::CRunException(DocText::c_strCannotWrite.arg(strTarget, bRoom ? DocText::c_strNoPermission
                                                                                : DocText::c_strDiskFull));
}

bool IsDrawing(const QString& strPath) {
    const QString strEnding = QFileInfo(strPath).suffix().toLower();
    return strEnding == "svg"_L1 || strEnding == "svgz"_L1;
}

} // namespace

std::optional<ReadyPicture> CPictureFiles::Take(const QString& strPath) {
    if (const auto it = m_taken.constFind(strPath); it != m_taken.constEnd())
        return *it;
    return *m_taken.insert(strPath, Make(strPath, u"picture%1"_s.arg(m_taken.size() + 1)));
}

std::optional<ReadyPicture> CPictureFiles::Make(const QString& strPath, const QString& strName) const {
    QImageReader reader(strPath);
    // What a picture is its bytes say, whatever its name.
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (IsDrawing(strPath))
        return MakeDrawing(strPath, strName);
    // Drawings may name other files, and are drawn by reading those.
    if (format.isEmpty() || format == "svg" || format == "svgz" || format == "pdf")
        return std::nullopt;
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    const bool bPhotograph = format == "jpeg" || format == "jpg";
    const bool bKept = bPhotograph || format == "png" || format == "gif";
    const bool bLarge = qMax(image.width(), image.height()) > c_nMaxPixels;
    const bool bTurned = reader.transformation() != QImageIOHandler::TransformationNone;
    const QByteArray ending = bPhotograph ? "jpg" : format == "gif" && !bLarge ? "gif" : "png";
    const ReadyPicture picture{strName + u'.' + QString::fromLatin1(ending), image.width(), image.height()};
    const QString strTarget = m_strFolder + u'/' + picture.Name;
    if (bKept && !bLarge && !bTurned) {
        Check(QFile::copy(strPath, strTarget), strTarget, QFileInfo(strPath).size());
        return picture;
    }
    const QImage fitting =
        bLarge ? image.scaled(c_nMaxPixels, c_nMaxPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation)
               : image;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!fitting.save(&buffer, bPhotograph ? "JPG" : "PNG", bPhotograph ? c_nJpegQuality : -1))
        return std::nullopt;
    Check(Torvane::Office::WriteBytes(strTarget, bytes), strTarget, bytes.size());
    return picture;
}

/// A drawing is a stranger's, too: the program that draws it has bounds, and reads no file but those beside
/// the drawing and none of the net.
std::optional<ReadyPicture> CPictureFiles::MakeDrawing(const QString& strPath, const QString& strName) const {
    const QString strProgram = Platform::FindSystemProgram(u"rsvg-convert"_s);
    if (strProgram.isEmpty())
        return std::nullopt;
    const ReadyPicture picture{strName + u".png"_s};
    const QString strTarget = m_strFolder + u'/' + picture.Name;
    QElapsedTimer time;
    time.start();
    const QString strZoom = QString::number(c_nDrawingZoom);
    Platform::RunGroup({strProgram,
                        {u"--zoom"_s, strZoom, u"--format"_s, u"png"_s, u"--output"_s, strTarget, strPath},
                        {},
                        c_nDrawingBytes,
                        c_nDrawingBytes},
                       [&time] { return !time.hasExpired(c_nDrawingMs); });
    const QImage image(strTarget);
    if (image.isNull()) {
        QFile::remove(strTarget);
        return std::nullopt;
    }
    if (qMax(image.width(), image.height()) > c_nMaxPixels) {
        const QImage fitting =
            image.scaled(c_nMaxPixels, c_nMaxPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        Check(fitting.save(strTarget, "PNG"), strTarget, image.sizeInBytes());
    }
    return ReadyPicture{picture.Name, qMax(1, image.width() / c_nDrawingZoom),
                        qMax(1, image.height() / c_nDrawingZoom)};
}
