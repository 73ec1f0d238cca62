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
    if (mime.hasImage() && data.Files.isEmpty() && data.strText.trimmed().isEmpty())
        data.Picture = qvariant_cast<QImage>(mime.imageData());
    return data;
}

SPastedData SPastedData::FromClipboard() {
    const QMimeData* pMime = QGuiApplication::clipboard()->mimeData();
    return pMime ? FromMime(*pMime) : SPastedData();
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
