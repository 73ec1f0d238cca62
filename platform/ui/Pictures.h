#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QString>

/// The delivered pictures, from the system data folder (backslash form, no trailing backslash). A file that
/// is missing gives an empty picture. A file "…@2x" beside a picture is used on fine screens.
namespace Pictures {

/// Images\Resource\<id>.png
QPixmap Resource(const QString& strSystemDataFolder, int nId);
/// The same in a selected line as in any other.
QIcon ResourceIcon(const QString& strSystemDataFolder, int nId);

/// Images\Resource\128-<size>.png: the program's icon in all of its sizes.
QIcon ProgramIcon(const QString& strSystemDataFolder);

/// Images\Resource\Toolbar\<id>.png, with "<id>-hot" under the mouse and "<id>-disabled" where there is one.
QIcon ToolbarIcon(const QString& strSystemDataFolder, int nId);

/// Images\HtmlEditorToolBarImgs\<name>, a bitmap in which white is transparent. The name comes with its
/// ending.
QIcon EditorIcon(const QString& strSystemDataFolder, const QString& strName);

/// A picture from anywhere, fitted into a room of logical pixels on a screen of this fineness: its
/// proportions stay, it is never enlarged, and it stands as its camera was held. strPath is in backslash
/// form; what the picture is stands in its bytes, whatever its ending. It is decoded no finer than it is
/// shown, and one that would take too much memory for that is refused. Empty when there is none or it can't
/// be read.
QPixmap Fitted(const QString& strPath, const QSize& room, qreal dRatio);
/// The same beside the interface thread, for which a large picture takes too long.
QImage FittedImage(const QString& strPath, const QSize& room, qreal dRatio);

} // namespace Pictures
