#include "companions/docexport/ui/PictureFiles.h"

#include "companions/docexport/Texts.h"
#include "foundation/Exceptions.h"
#include "office/OutputFile.h"
#include "platform/base/FileCalls.h"
#include "platform/base/Process.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>

#include <algorithm>
#include <cerrno>

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
    throw Torvane::CRunException(
        DocText::c_strCannotWrite.arg(strTarget, Platform::SystemErrorText(bRoom ? EACCES : ENOSPC)));
}

/// What a file is its bytes say; packed ones, which say nothing, and those that begin with long remarks go by
/// their name.
bool IsDrawing(const QString& strPath, const QByteArray& format) {
    if (!format.isEmpty())
        return format == "svg" || format == "svgz";
    constexpr qint64 c_nLook = 4096;
    QFile file(strPath);
    if (file.open(QIODevice::ReadOnly) && file.read(c_nLook).contains("<svg"))
        return true;
    const QString strEnding = QFileInfo(strPath).suffix().toLower();
    return strEnding == "svg"_L1 || strEnding == "svgz"_L1;
}

bool IsTransparent(const QImage& image) {
    if (!image.hasAlphaChannel())
        return false;
    const QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < alpha.height(); ++y) {
        const uchar* pLine = alpha.constScanLine(y);
        if (std::any_of(pLine, pLine + alpha.width(), [](uchar n) { return n > 0; }))
            return false;
    }
    return true;
}

} // namespace

TakenPicture CPictureFiles::Take(const QString& strPath, const std::function<bool()>& mayGoOn) {
    if (const auto it = m_taken.constFind(strPath); it != m_taken.constEnd())
        return *it;
    TakenPicture taken = Make(strPath, u"picture%1"_s.arg(m_taken.size() + 1), mayGoOn);
    // Another page may have time for it.
    if (taken.Picture || mayGoOn())
        m_taken.insert(strPath, taken);
    return taken;
}

TakenPicture CPictureFiles::Make(const QString& strPath, const QString& strName,
                                 const std::function<bool()>& mayGoOn) const {
    QImageReader reader(strPath);
    // What a picture is its bytes say, whatever its name.
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (IsDrawing(strPath, format))
        return MakeDrawing(strPath, strName, mayGoOn);
    if (format.isEmpty() || format == "pdf")
        return TakenPicture(std::nullopt);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return TakenPicture(std::nullopt);
    const bool bPhotograph = format == "jpeg" || format == "jpg";
    const bool bKept = bPhotograph || format == "png" || format == "gif";
    const bool bLarge = qMax(image.width(), image.height()) > c_nMaxPixels;
    const bool bTurned = reader.transformation() != QImageIOHandler::TransformationNone;
    const QByteArray ending = bPhotograph ? "jpg" : format == "gif" && !bLarge ? "gif" : "png";
    const ReadyPicture picture{strName + u'.' + QString::fromLatin1(ending), image.width(), image.height()};
    const QString strTarget = m_strFolder + u'/' + picture.Name;
    if (bKept && !bLarge && !bTurned) {
        Check(QFile::copy(strPath, strTarget), strTarget, QFileInfo(strPath).size());
        return TakenPicture(picture);
    }
    const QImage fitting =
        bLarge ? image.scaled(c_nMaxPixels, c_nMaxPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation)
               : image;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!fitting.save(&buffer, bPhotograph ? "JPG" : "PNG", bPhotograph ? c_nJpegQuality : -1))
        return TakenPicture(std::nullopt);
    Check(Torvane::Office::WriteBytes(strTarget, bytes), strTarget, bytes.size());
    return TakenPicture(picture);
}

/// A drawing is a stranger's, too: the program that draws it has bounds, and reads no file but those beside
/// the drawing and none of the net.
TakenPicture CPictureFiles::MakeDrawing(const QString& strPath, const QString& strName,
                                        const std::function<bool()>& mayGoOn) const {
    const QString strProgram = Platform::FindSystemProgram(u"rsvg-convert"_s);
    if (strProgram.isEmpty())
        return {std::nullopt, DocText::c_strNoteNoDrawer};
    if (!mayGoOn())
        return {std::nullopt, DocText::c_strNoteSlowDrawing};
    const ReadyPicture picture{strName + u".png"_s};
    const QString strTarget = m_strFolder + u'/' + picture.Name;
    QElapsedTimer time;
    time.start();
    const QString strZoom = QString::number(c_nDrawingZoom);
    const auto eEnd = Platform::RunGroup(
        {strProgram,
         {u"--zoom"_s, strZoom, u"--format"_s, u"png"_s, u"--output"_s, strTarget, strPath},
         {},
         c_nDrawingBytes,
         c_nDrawingBytes},
        [&] { return mayGoOn() && !time.hasExpired(c_nDrawingMs); });
    const QImage image(strTarget);
    const bool bStopped = eEnd == Platform::EProgramEnd::Stopped;
    if (bStopped || image.isNull() || IsTransparent(image)) {
        QFile::remove(strTarget);
        return {std::nullopt, bStopped         ? DocText::c_strNoteSlowDrawing
                              : image.isNull() ? DocText::c_strNoteBadPicture
                                               : DocText::c_strNoteEmptyDrawing};
    }
    if (qMax(image.width(), image.height()) > c_nMaxPixels) {
        const QImage fitting =
            image.scaled(c_nMaxPixels, c_nMaxPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        Check(fitting.save(strTarget, "PNG"), strTarget, image.sizeInBytes());
    }
    return TakenPicture(ReadyPicture{picture.Name, qMax(1, image.width() / c_nDrawingZoom),
                                     qMax(1, image.height() / c_nDrawingZoom)});
}
