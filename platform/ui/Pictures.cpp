#include "platform/ui/Pictures.h"

#include "foundation/Paths.h"
#include "platform/base/NativePath.h"

#include <QBitmap>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>

#include <png.h>

namespace Pictures {

namespace {

/// A decoder may need several times its picture's size; a stranger's file of some bytes can claim any.
constexpr qint64 c_nMaxPixels = qint64{64} * 1000 * 1000;

QString FileOf(const QString& strSystemDataFolder, const QString& strBelow) {
    return Platform::ToNative(strSystemDataFolder + QStringLiteral("\\Images\\") + strBelow);
}

/// The same file for a screen of twice the fineness, if there is one and the file too.
QString FineFile(const QString& strFile) {
    const auto* pApp = qGuiApp;
    if (!pApp || pApp->devicePixelRatio() <= 1.0)
        return {};
    const qsizetype nDot = strFile.lastIndexOf(u'.');
    const QString strFine = strFile.left(nDot) + QStringLiteral("@2x") + strFile.mid(nDot);
    return QFileInfo::exists(strFine) ? strFine : QString();
}

/// The start shows delivered pictures, and the toolkit's reader would load all of its format plug-ins with
/// their libraries for the first of them.
QImage ReadPng(const QString& strFile) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&png, QFile::encodeName(strFile).constData()) == 0)
        return {};
    const bool bClear = (png.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    png.format = bClear ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    QImage image(QSize(static_cast<int>(png.width), static_cast<int>(png.height)),
                 bClear ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    const bool bRead =
        !image.isNull() && png_image_finish_read(&png, nullptr, image.bits(),
                                                 static_cast<png_int_32>(image.bytesPerLine()), nullptr) != 0;
    png_image_free(&png);
    return bRead ? image : QImage();
}

QPixmap Load(const QString& strFile, bool bWhiteIsClear) {
    QImage image = strFile.endsWith(QLatin1String(".png")) ? ReadPng(strFile) : QImage(strFile);
    if (image.isNull())
        return {};
    // A mask is laid on by pixels, and the reader knows the names too.
    image.setDevicePixelRatio(1.0);
    if (bWhiteIsClear) {
        const QImage mask = image.convertToFormat(QImage::Format_RGB32)
                                .createMaskFromColor(qRgb(255, 255, 255), Qt::MaskOutColor);
        image.convertTo(QImage::Format_ARGB32);
        image.setAlphaChannel(mask.convertToFormat(QImage::Format_Grayscale8));
    }
    // Which of the two files it is stands in its name alone.
    image.setDevicePixelRatio(strFile.contains(QLatin1String("@2x.")) ? 2.0 : 1.0);
    return QPixmap::fromImage(image);
}

void Add(QIcon& icon, const QString& strFile, bool bWhiteIsClear, std::initializer_list<QIcon::Mode> modes) {
    for (const QString& strEach : {strFile, FineFile(strFile)}) {
        const QPixmap pixmap = strEach.isEmpty() ? QPixmap() : Load(strEach, bWhiteIsClear);
        if (pixmap.isNull())
            continue;
        for (const QIcon::Mode mode : modes)
            icon.addPixmap(pixmap, mode);
    }
}

} // namespace

QPixmap Resource(const QString& strSystemDataFolder, int nId) {
    const QString strFile = FileOf(strSystemDataFolder, QStringLiteral("Resource\\") + QString::number(nId) +
                                                            QStringLiteral(".png"));
    const QString strFine = FineFile(strFile);
    return Load(strFine.isEmpty() ? strFile : strFine, false);
}

QIcon ResourceIcon(const QString& strSystemDataFolder, int nId) {
    QIcon icon;
    Add(icon,
        FileOf(strSystemDataFolder,
               QStringLiteral("Resource\\") + QString::number(nId) + QStringLiteral(".png")),
        false, {QIcon::Normal, QIcon::Selected});
    return icon;
}

QIcon ProgramIcon(const QString& strSystemDataFolder) {
    QIcon icon;
    for (const int nSize : {16, 32, 48, 256}) {
        const QPixmap pixmap =
            Load(FileOf(strSystemDataFolder, QStringLiteral("Resource\\128-%1.png").arg(nSize)), false);
        if (!pixmap.isNull())
            icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon ToolbarIcon(const QString& strSystemDataFolder, int nId) {
    const auto file = [&](QLatin1String strKind) {
        return FileOf(strSystemDataFolder, QStringLiteral("Resource\\Toolbar\\") + QString::number(nId) +
                                               strKind + QStringLiteral(".png"));
    };
    QIcon icon;
    Add(icon, file(QLatin1String("")), false, {QIcon::Normal});
    Add(icon, file(QLatin1String("-hot")), false, {QIcon::Active});
    Add(icon, file(QLatin1String("-disabled")), false, {QIcon::Disabled});
    return icon;
}

QIcon EditorIcon(const QString& strSystemDataFolder, const QString& strName) {
    QIcon icon;
    Add(icon, FileOf(strSystemDataFolder, QStringLiteral("HtmlEditorToolBarImgs\\") + strName), true,
        {QIcon::Normal});
    return icon;
}

QImage FittedImage(const QString& strPath, const QSize& room, qreal dRatio) {
    if (!Torvane::File::IsFile(strPath))
        return {};
    QImageReader reader(Platform::ToNative(strPath));
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize full = reader.size();
    if (full.isEmpty() || qint64(full.width()) * full.height() > c_nMaxPixels)
        return {};
    // The reader scales first and turns then.
    const bool bTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize place = bTurned ? room.transposed() : room;
    const bool bTooLarge = full.width() > place.width() || full.height() > place.height();
    const QSize shown = bTooLarge ? full.scaled(place, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)) : full;
    const QSize fine = (QSizeF(shown) * dRatio).toSize();
    if (fine.width() < full.width())
        reader.setScaledSize(fine);
    QImage picture = reader.read();
    if (!picture.isNull())
        picture.setDevicePixelRatio(qreal(picture.width()) / (bTurned ? shown.height() : shown.width()));
    return picture;
}

QPixmap Fitted(const QString& strPath, const QSize& room, qreal dRatio) {
    return QPixmap::fromImage(FittedImage(strPath, room, dRatio));
}

} // namespace Pictures
