#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

class QMimeData;

/// What somebody wants to put into a page, in the forms in which its source offers it.
struct SPastedData {
    QString strHtml;
    QString strText;
    /// Of this machine, as paths in backslash form.
    QStringList Files;
    /// A picture: as a file that its source has made of it, or else as it shows.
    QByteArray PictureFile;
    QImage Picture;

    /// Of the clipboard. A picture that comes along with words is left where it is.
    static SPastedData FromClipboard();
    /// The markup of the clipboard; empty for none.
    static QString HtmlOfClipboard();
    /// Its text alone.
    static SPastedData TextFromClipboard();
    /// Of what was marked last in any window, on platforms that paste it with the middle button: its text.
    static SPastedData FromSelection();
    static SPastedData FromMime(const QMimeData& mime);
};
