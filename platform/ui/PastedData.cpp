#include "platform/ui/PastedData.h"

#include "platform/base/NativePath.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

SPastedData SPastedData::FromMime(const QMimeData& mime) {
    SPastedData data;
    const QList<QUrl> urls = mime.urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            data.Files.append(Platform::FromNative(url.toLocalFile()));
    }
    if (mime.hasHtml())
        data.strHtml = mime.html();
    if (mime.hasText())
        data.strText = mime.text();
    // Office programs offer a picture of every text as well.
    if (!mime.hasImage() || !data.Files.isEmpty() || !data.strText.trimmed().isEmpty())
        return data;
    // Taken as it is, it need be neither read nor made anew.
    data.PictureFile = mime.data(QStringLiteral("image/png"));
    if (!data.PictureFile.startsWith("\x89PNG\r\n\x1A\n")) {
        data.PictureFile.clear();
        data.Picture = qvariant_cast<QImage>(mime.imageData());
    }
    return data;
}

SPastedData SPastedData::FromClipboard() {
    const QMimeData* pMime = QGuiApplication::clipboard()->mimeData();
    return pMime ? FromMime(*pMime) : SPastedData();
}

QString SPastedData::HtmlOfClipboard() {
    const QMimeData* pMime = QGuiApplication::clipboard()->mimeData();
    return pMime && pMime->hasHtml() ? pMime->html() : QString();
}

SPastedData SPastedData::TextFromClipboard() {
    SPastedData data;
    data.strText = QGuiApplication::clipboard()->text();
    return data;
}

SPastedData SPastedData::FromSelection() {
    SPastedData data;
    data.strText = QGuiApplication::clipboard()->text(QClipboard::Selection);
    return data;
}
